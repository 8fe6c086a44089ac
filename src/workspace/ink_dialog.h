#pragma once

#include <vector>

#include "widgets/form_dialog.h"
#include "workspace/ink_form.h"

class QGridLayout;
class QLabel;
class QToolButton;

namespace graphize {

class ToleranceSlider;

/// The window FRM_Ink: an ink is chosen among the swatches or by a click on the picture, which
/// stays within reach, and what counts as it is shown there.
class InkDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit InkDialog(QWidget* parent);
  void Render(const InkForm& form);
  /// Whether the slider is held: it is not where the user wants it yet.
  bool IsSliding() const;

 signals:
  void SwatchChosen(int index);
  void ToleranceChosen(int percent);
  void AcceptPressed();
  void ShowColoursPressed();

 private:
  QToolButton* MakeSwatch(const PictureInk& ink, int index);

  QGridLayout* swatchesAt_;
  std::vector<QToolButton*> swatches_;
  QLabel* chosen_;
  QLabel* ink_;
  ToleranceSlider* tolerance_;
  QPushButton* accept_;
  QPushButton* showColours_;
};

}  // namespace graphize
