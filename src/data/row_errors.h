#pragma once

#include <string>
#include <vector>

#include "calibration/transform.h"
#include "capture/point_store.h"
#include "data/number_format.h"

namespace graphize {

/// The size of one pixel at a row of the list, in graph units of its two columns.
using RowError = PixelSize;

/// Whether the list's rows are places on a picture whose axes are known.
bool HasRowErrors(const PointStore& store, const AxisCalibration& calibration);

/// At a row with these two numbers, of a list whose rows are places or exchanged ones.
RowError RowErrorAt(PointStore::Rows rows, const AxisCalibration& calibration, float x, float y);

/// One element for each row of the list, in its order. Only where HasRowErrors.
std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration);

/// What a data file in these formats hides: the columns in which, somewhere in the list, the last
/// digit is worth more than one pixel, with the decimals that would show it. Empty when there is
/// none, or where the rows are no places on the picture.
std::string HiddenDigits(const PointStore& store, const AxisCalibration& calibration,
                         const Settings& settings, const NumberFormats& formats);

}  // namespace graphize
