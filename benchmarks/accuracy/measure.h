#pragma once

#include <vector>

#include "base/raster.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::PixelPosition;

/// A point farther than this from the true curve, in pixels, is false and covers nothing.
inline constexpr double kNear = 2;

struct Accuracy {
  int Points = 0;
  double Median = 0, Percentile95 = 0;  // distance from the true curve, pixels
  double Coverage = 0;                  // part of the true curve's columns that hold a near point
  double FalsePart = 0;                 // part of the points that are not near
};

/// The shortest distance from the polyline `course`, in pixels.
double DistanceTo(PixelPosition p, const std::vector<PixelPosition>& course);

/// Distances are perpendicular to the polyline `course`. `curveAlone` is the picture of nothing but
/// the curve: the columns where it is black are those to be covered.
Accuracy MeasureCurve(const std::vector<PixelPosition>& points,
                      const std::vector<PixelPosition>& course, const Raster& curveAlone);

/// Distances are to the nearest centre of a symbol `diameter` pixels across; a point is near when
/// it is no farther than `kNear` outside of it. The coverage is that of the symbols.
Accuracy MeasureSymbols(const std::vector<PixelPosition>& points,
                        const std::vector<PixelPosition>& centres, double diameter);

}  // namespace graphize::accuracy
