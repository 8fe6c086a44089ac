#pragma once

#include <vector>

#include "calibration/transform.h"
#include "capture/point_store.h"

namespace graphize {

/// The size of one pixel at a row of the list, in graph units of its two columns.
using RowError = PixelSize;

/// Whether the list's rows are places on a picture whose axes are known.
bool HasRowErrors(const PointStore& store, const AxisCalibration& calibration);

/// One element for each row of the list, in its order. Only where HasRowErrors.
std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration);

}  // namespace graphize
