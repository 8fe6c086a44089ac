#pragma once

#include "data/sample_form.h"
#include "widgets/form_dialog.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QWidget;

namespace graphize {

/// The window Sample: number and range of the new points.
class SampleDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit SampleDialog(QWidget* parent);
  void Render(const SampleForm& form);

 signals:
  void StepsTyped(const std::string& text);
  void StepsLeft();
  void dXTyped(const std::string& text);
  void CalculatePressed();
  void MinXTyped(const std::string& text);
  void MaxXTyped(const std::string& text);
  void XLogSwitched(bool on);
  void YLogSwitched(bool on);
  void ReSamplePressed();

 private:
  void showEvent(QShowEvent* event) override;
  QWidget* MakeSpacing();
  QWidget* MakeRange();

  QLineEdit* steps_;
  QLineEdit* dX_;
  QLineEdit* minX_;
  QLineEdit* maxX_;
  QLineEdit* minY_;
  QLineEdit* maxY_;
  QCheckBox* xLog_;
  QCheckBox* yLog_;
  QLabel* hint_;
};

}  // namespace graphize
