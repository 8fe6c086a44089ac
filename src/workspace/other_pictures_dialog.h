#pragma once

#include <utility>

#include "widgets/form_dialog.h"
#include "workspace/other_pictures_form.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace graphize {

/// The window FRM_OtherPictures: the list with what came of each picture, and what can be done with
/// it.
class OtherPicturesDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit OtherPicturesDialog(QWidget* parent);
  void Render(const OtherPicturesForm& form);
  /// The first and the last row that are in sight; the first is the larger where none is.
  std::pair<int, int> ShownRows() const;
  /// Of many pictures many are seen.
  QSize sizeHint() const override;

 signals:
  void AddPressed();
  void RemovePressed();
  void RunPressed();
  /// Comes while the command runs that RunPressed has begun.
  void StopPressed();
  void NextPressed();
  void OpenPressed();
  void Selected(int picture);

 private:
  void RenderList(const OtherPicturesForm& form);

  QLabel* calibrated_;
  QTreeWidget* list_;
  QLabel* hint_;
  QProgressBar* progress_;
  QPushButton* add_;
  QPushButton* remove_;
  QPushButton* run_;
  QPushButton* next_;
  QPushButton* open_;
  QPushButton* stop_;
  int changes_ = -1;
};

}  // namespace graphize
