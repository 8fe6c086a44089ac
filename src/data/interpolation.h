#pragma once

#include <cstddef>
#include <vector>

namespace graphize {

/// Points in the order of their curve as a function of x, linear between neighbours. X may rise,
/// fall and turn; no search passes a point that is no number.
class Interpolation {
 public:
  /// As many ys as xs.
  Interpolation(std::vector<double> xs, std::vector<double> ys);

  /// On the segment of x, which is extended beyond the points. Not finite where there is no value:
  /// fewer than two points, a segment without length, a point that is no number.
  double At(double x) const;

  /// The point that the segment of x starts at: the first segment that ends at or behind x; where x
  /// does not lie in that, because X falls there, the first that it lies in; beyond them all the
  /// one at the nearer end. Only for two points and more.
  std::size_t SegmentOf(double x) const;

 private:
  bool LiesIn(std::size_t j, double x) const;

  std::vector<double> xs_, ys_;
  std::vector<double> lowest_;      // of points 0 to i
  std::vector<double> highestEnd_;  // of the ends of segments 0 to j
};

}  // namespace graphize
