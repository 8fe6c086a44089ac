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

/// What is written as a row's error.
enum class ErrorKind {
  Standard,  // the standard uncertainty where it is known, else the size of a pixel
  Pixel      // the size of a pixel
};

/// Standard uncertainties of the two columns at a place, of Y at this X and of X at this Y: across
/// the stroke `certainty`, and the axes' rows, each off by its SigmaOfRow in column and row, in
/// graph units. Where the stroke runs along an axis, the value along it is what it is: that
/// uncertainty ends at sqrt(2) of the one across for X, at 8 of it for Y. Refined axes have the
/// uncertainty of their fit (SpreadAt). `place` has to read as (X, Y).
RowError StandardErrorAt(const AxisCalibration& calibration, int pictureHeight, const Place& place,
                         const Certainty& certainty, float X, float Y);

/// Whether the row's standard uncertainty is known: its point was read off a stroke, and its place
/// is still read as these values.
bool HasStandardError(const PointStore& store, const AxisCalibration& calibration,
                      int pictureHeight, int row);

/// One element for each row of the list, in its order. Only where HasRowErrors.
std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration,
                                  int pictureHeight, ErrorKind kind = ErrorKind::Standard);

/// What a data file in these formats hides: the columns in which, somewhere in the list, the last
/// digit is worth more than one pixel, with the decimals that would show it. Empty when there is
/// none, or where the rows are no places on the picture.
std::string HiddenDigits(const PointStore& store, const AxisCalibration& calibration,
                         const Settings& settings, const NumberFormats& formats);

}  // namespace graphize
