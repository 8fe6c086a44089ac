#pragma once

#include <array>

#include "data/export_form.h"
#include "widgets/form_dialog.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace graphize {

/// The window Export: format and shape of the table.
class ExportDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit ExportDialog(QWidget* parent);
  void Render(const ExportForm& form);

 signals:
  void FormatChosen(int format);
  void CommonXChosen(bool on);
  void XGridTyped(const std::string& text);
  void AllCurvesSwitched(bool on);
  void ErrorsSwitched(bool on);
  void PixelErrorsSwitched(bool on);
  void ExportPressed();

 private:
  QWidget* MakeFormat();
  QWidget* MakeTable();

  std::array<QRadioButton*, kExportFormats> format_{};
  std::array<QRadioButton*, 2> table_{};  // blocks, common X
  QLineEdit* xGrid_;
  QCheckBox* allCurves_;
  QCheckBox* errors_;
  QCheckBox* pixelErrors_;
  QLabel* hint_;
};

}  // namespace graphize
