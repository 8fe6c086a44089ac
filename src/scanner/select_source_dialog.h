#pragma once

#include "scanner/source_form.h"
#include "widgets/form_dialog.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;

namespace graphize {

/// The window FRM_SelectSource: the list of scanners.
class SelectSourceDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit SelectSourceDialog(QWidget* parent);
  void Render(const SourceForm& form);

 signals:
  void SourceSelected(int index);
  void LookPressed(bool network);
  void SelectPressed();

 private:
  void RenderList(const SourceForm& form);

  QTreeWidget* list_;
  QCheckBox* network_;
  QPushButton* refresh_;
  QPushButton* select_;
  QLabel* hint_;
  std::vector<std::string> shown_;  // names in the list
};

}  // namespace graphize
