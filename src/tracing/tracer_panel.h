#pragma once

#include <QGroupBox>

#include "tracing/tracer_control.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QSlider;

namespace graphize {

class UpDown;

/// "Tracer Control": increments and checked points of the tracers, and the size of blockers and
/// eraser.
class TracerPanel : public QGroupBox {
  Q_OBJECT
 public:
  TracerPanel(int largestBlock, QWidget* parent = nullptr);
  /// As wide as the longest captions of any trace type; once styles are set.
  void ReserveCaptions();
  void Render(const TracerControl& control, int blockSize);

 signals:
  void XIncrementTyped(const std::string& text);
  void YIncrementTyped(const std::string& text);
  void XIncrementStepped(int step);
  void YIncrementStepped(int step);
  void CenterSwitched(bool on);
  void AboveSwitched(bool on);
  void BelowSwitched(bool on);
  void BlockSizeChosen(int size);

 private:
  QGridLayout* grid_;
  QLineEdit* xRange_;
  QLineEdit* yRange_;
  UpDown* xSteps_;
  UpDown* ySteps_;
  QCheckBox* center_;
  QCheckBox* above_;
  QCheckBox* below_;
  QSlider* blockSize_;
  QLabel* blockSizeShown_;
};

}  // namespace graphize
