#pragma once

#include <QGroupBox>

#include "settings/settings.h"
#include "tracing/tracer_control.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QSlider;
class QSpinBox;

namespace graphize {

class UpDown;

/// "Tracer Control": the settings that are changed most, increments and checked points of the
/// tracers, and the size of blockers and eraser.
class TracerPanel : public QGroupBox {
  Q_OBJECT
 public:
  TracerPanel(int largestBlock, QWidget* parent = nullptr);
  /// As wide as the longest captions of any trace type; once styles are set.
  void ReserveCaptions();
  void Render(const TracerControl& control, const Settings& settings, int blockSize);

 signals:
  void XIncrementTyped(const std::string& text);
  void YIncrementTyped(const std::string& text);
  void XIncrementStepped(int step);
  void YIncrementStepped(int step);
  void CenterSwitched(bool on);
  void AboveSwitched(bool on);
  void BelowSwitched(bool on);
  void InsideAxesSwitched(bool on);
  void TraceTypeChosen(int type);
  void SnapChosen(int mode);
  void ThresholdChosen(int level);
  void BlockSizeChosen(int size);

 private:
  void MakeBoxes();
  /// The wheel scrolls the panel and changes nothing.
  bool eventFilter(QObject* watched, QEvent* event) override;

  QComboBox* traceType_;
  QComboBox* snap_;
  QSpinBox* threshold_;
  QGridLayout* grid_;
  QLineEdit* xRange_;
  QLineEdit* yRange_;
  UpDown* xSteps_;
  UpDown* ySteps_;
  QCheckBox* center_;
  QCheckBox* above_;
  QCheckBox* below_;
  QCheckBox* insideAxes_;
  QSlider* blockSize_;
  QLabel* blockSizeShown_;
};

}  // namespace graphize
