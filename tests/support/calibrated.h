#pragma once

#include <array>

#include "calibration/axis_calibration.h"

namespace graphize::test {

/// A reference point: pixel column, pixel row counted upward, graph values.
struct AxisPoint {
  int Column, RowUp;
  const char* X;
  const char* Y;
};

/// The calibration that three accepted clicks give.
AxisCalibration Calibrate(const std::array<AxisPoint, 3>& points, bool xLog = false,
                          bool yLog = false);

/// Upright and linear, one graph unit per pixel: (column, row upward) reads as itself.
AxisCalibration PixelCalibration();

}  // namespace graphize::test
