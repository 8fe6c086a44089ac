#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axis_calibration.h"
#include "raster/picture_operation.h"
#include "reading/stroke_fit.h"

namespace graphize {

/// A round dot that no reading passes, pixels.
struct ReadingWall {
  int X = 0, Y = 0, Size = 0;
};

/// A curve as it was read off the picture.
struct CurveReading {
  std::vector<CurvePoint> Points;  // along the curve, from its left end
  StrokeKind Kind;
  std::string Refusal;              // why there is nothing, in one sentence
  std::vector<std::string> Doubts;  // what could not be read safely, a sentence each
  bool IsStopped = false;           // nothing was read then
};

/// Reads the curve of any colour that was clicked at (x, y), as antialiased, compressed or hard as
/// it may be: its ink is told from the paper and from other inks, grid lines and the frame are left
/// out, and the stroke is followed to both sides to its ends. One point per column, or per row
/// where the curve is steep. The calibration, when it is complete, says how the plot is turned.
CurveReading ReadCurve(const Raster& picture, const AxisCalibration& calibration, double x,
                       double y, std::span<const ReadingWall> walls, PictureOperation& operation);

}  // namespace graphize
