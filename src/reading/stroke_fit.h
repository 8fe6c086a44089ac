#pragma once

#include <cmath>
#include <vector>

#include "raster/picture_operation.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// A point of a curve that was read.
struct CurvePoint {
  double X = 0, Y = 0;  // on the picture, rows downward; a pixel's centre has whole numbers
  double Sigma = 0;     // standard uncertainty across the curve, pixels
  double AcrossX = 0, AcrossY = 1;  // the direction across it, of length 1
  bool IsBridged = false;           // the stroke is not seen here: it was drawn from both sides
};

inline double Distance(const CurvePoint& a, const CurvePoint& b) {
  return std::hypot(a.X - b.X, a.Y - b.Y);
}

/// The stroke's course through its samples. Each is smoothed by the longest quadratic about it
/// whose residuals are no more than what the raster does to a smooth line (hard strokes: half a
/// pixel), or than the scatter that third differences tell; a course that turns back again and
/// again is data and stays as it is. Unseen samples get a cubic between the seen ends, and none
/// beyond them. Nothing when the operation was stopped.
std::vector<CurvePoint> FitCourse(const std::vector<StrokeSample>& samples, const StrokeKind& kind,
                                  const PictureOperation& operation);

}  // namespace graphize
