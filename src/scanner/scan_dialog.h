#pragma once

#include "scanner/scan_form.h"
#include "widgets/form_dialog.h"

class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QProgressBar;
class QPushButton;

namespace graphize {

class ScanAreaView;

/// The window FRM_Scan: what the open scanner is to scan.
class ScanDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit ScanDialog(QWidget* parent);
  void Render(const ScanForm& form);

 signals:
  void SettingsChosen(const ScanSettings& settings);
  void ResolutionTyped(const std::string& text);
  void PreviewPressed();
  void ScanPressed();

 private:
  QWidget* MakeChoices();
  QWidget* MakeArea();
  void RenderChoices(const ScanForm& form);
  void RenderArea(const ScanForm& form);
  void RenderWork(const ScanForm& form);
  void ChooseArea(PageArea area);

  ScanAbilities can_;
  QFormLayout* choices_;
  QLabel* device_;
  QComboBox* paperSource_;
  QComboBox* mode_;
  QComboBox* depth_;
  QComboBox* resolution_;
  QWidget* areaFrame_;
  QDoubleSpinBox* left_;
  QDoubleSpinBox* top_;
  QDoubleSpinBox* width_;
  QDoubleSpinBox* height_;
  ScanAreaView* view_;
  QLabel* size_;
  QLabel* hint_;
  QProgressBar* progress_;
  QWidget* settings_;
  QPushButton* preview_;
  QPushButton* scan_;
  QPushButton* cancel_;
};

}  // namespace graphize
