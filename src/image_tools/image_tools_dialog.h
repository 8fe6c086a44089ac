#pragma once

#include <array>

#include "image_tools/image_tools.h"
#include "widgets/form_dialog.h"

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSlider;

namespace graphize {

/// The window FRM_ImageTools: one of eight tools, its amount, process, undo and return.
class ImageToolsDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit ImageToolsDialog(QWidget* parent);
  void Render(const ImageToolsForm& form);

 signals:
  void ToolChosen(int tool);
  void AmountMoved(int amount);
  void ProcessPressed();
  void UndoPressed();

 private:
  QWidget* MakeTools();
  QWidget* MakeAmount();
  void RenderBusy(bool busy);

  std::array<QRadioButton*, kPictureTools> toolOption_{};
  QGroupBox* tools_ = nullptr;
  QGroupBox* amountFrame_ = nullptr;
  QSlider* toolAmount_ = nullptr;
  QLabel* min_ = nullptr;
  QLabel* max_ = nullptr;
  QLabel* amount_ = nullptr;
  QLabel* hint_ = nullptr;
  QPushButton* process_ = nullptr;
  QPushButton* undo_ = nullptr;
  QPushButton* return_ = nullptr;
  bool busy_ = false;
  QWidget* focusBeforeBusy_ = nullptr;
};

}  // namespace graphize
