#pragma once

#include <QGroupBox>
#include <array>

#include "calibration/axis_calibration.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace graphize {

/// "Axis Definitions": three rows of pixel labels, value boxes and "Redefine" buttons, the log
/// switches and the instruction to the user.
class AxisPanelWidget : public QGroupBox {
  Q_OBJECT
 public:
  explicit AxisPanelWidget(QWidget* parent = nullptr);

  void Render(const AxisPanel& panel, const AxisCalibration& calibration);
  /// Gives the value box the focus when it can take it.
  void Focus(FocusTarget target);

 signals:
  void ReDefinePressed(int row);
  void XTyped(int row, const std::string& text);
  void YTyped(int row, const std::string& text);
  void XLogSwitched(bool on);
  void YLogSwitched(bool on);
  void OriginYFocused();

 private:
  struct Row {
    QLabel* XPixel;
    QLabel* YPixel;
    QLineEdit* X;
    QLineEdit* Y;
    QPushButton* ReDefine;
  };
  Row MakeRow(int row, const QString& caption, QGridLayout* grid);

  std::array<Row, 3> rows_;
  QCheckBox* xLog_;
  QCheckBox* yLog_;
  QLabel* angle_;
  QLabel* tips_;
  QLabel* liveX_;
  QLabel* liveY_;
};

}  // namespace graphize
