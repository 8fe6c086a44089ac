#pragma once

#include <vector>

namespace graphize {

struct FitPoint {
  double X = 0, Y = 0;
};

struct FitLine {
  double Slope = 0, Offset = 0;

  double At(double x) const { return Offset + Slope * x; }
};

/// The Theil-Sen estimate of a straight line through points in order of X, which up to a quarter of
/// outliers does not move: the median slope of all pairs in a short list, of the points half the
/// list apart in a longer one (the incomplete method), then the median offset (Theil, "A
/// rank-invariant method of linear and polynomial regression analysis", 1950). At least one point.
FitLine FitTheilSenLine(const std::vector<FitPoint>& points);

}  // namespace graphize
