#pragma once

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
  bool ShowError = false;  // OPT_Error chosen; else OPT_Pixel
  bool Percent = false;    // OPT_Pct
  int PlotX = 0, PlotY = 0;  // picture pixel under the cursor, row downward: where the zoom looks
};

/// Reads the picture position (x, y) (row downward from the top): live pixel labels, graph values
/// and resolution, the store's current point. Used by the mouse and by the tracers, which move the
/// cursor along the curve.
void ReadCursor(ReadOut& readOut, AxisPanel& panel, PointStore& store,
                const AxisCalibration& calibration, const Desktop& desktop, int pictureHeight,
                float x, float y);

}  // namespace graphize
