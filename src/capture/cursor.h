#pragma once

#include <cstddef>
#include <string>

#include "calibration/axis_calibration.h"
#include "calibration/transform.h"
#include "capture/point_store.h"

namespace graphize {

/// What is read out at the cursor.
struct ReadOut {
  std::string XValue, YValue;  // graph values
  std::string XPOS, YPos;      // pixel or error
  float ErrorX = 0, ErrorY = 0;
  bool ShowError = false;    // OPT_Error chosen; else OPT_Pixel
  bool Percent = false;      // OPT_Pct
  int PlotX = 0, PlotY = 0;  // picture pixel under the cursor, row downward: where the zoom looks
};

/// Nothing is read out until the cursor moves.
void ClearReadOut(ReadOut& readOut);

/// Moves the cursor to the picture position (x, y) (row downward from the top): the store's current
/// point, graph values and resolution, but none of the texts. For tracers, which visit far more
/// positions than are ever shown.
void MoveCursor(ReadOut& readOut, PointStore& store, const AxisCalibration& calibration,
                const Desktop& desktop, int pictureHeight, float x, float y);
/// The same along found points, which get their graph values when the calibration is complete: to
/// the last one before the first at which it would refuse or throw. Says how many these are.
std::size_t MoveCursor(ReadOut& readOut, PointStore& store, const AxisCalibration& calibration,
                       int pictureHeight, FoundPoints& points);
/// Writes the texts of the position where the cursor is: live pixel labels and read-out.
void ShowCursor(ReadOut& readOut, AxisPanel& panel, const PointStore& store,
                const AxisCalibration& calibration);
/// Both: what a move of the mouse does.
void ReadCursor(ReadOut& readOut, AxisPanel& panel, PointStore& store,
                const AxisCalibration& calibration, const Desktop& desktop, int pictureHeight,
                float x, float y);

}  // namespace graphize
