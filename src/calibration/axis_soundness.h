#pragma once

#include "calibration/axis_calibration.h"

namespace graphize {

/// Whether angle and lengths are those that the axis points give, to four digits, and the values
/// numbers: of axes that were read from a file.
bool FitsItsPoints(const AxisCalibration& axes);

}  // namespace graphize
