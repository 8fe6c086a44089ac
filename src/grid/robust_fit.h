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

/// The straight line through points in order of X that up to a quarter of wild points does not
/// move: the median of the slopes between points half the list apart (all pairs in a short list),
/// then the median offset (Theil, "A rank-invariant method of linear regression analysis", 1950).
/// At least one point.
FitLine FitRobustLine(const std::vector<FitPoint>& points);

/// The middle value (the upper of two); `values` is reordered and not empty.
double Median(std::vector<double>& values);

}  // namespace graphize
