#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "base/vector.h"
#include "tracing/ink_sight.h"
#include "tracing/plot_box.h"

namespace graphize {

/// Points along one stroke: their places, and what the picture shows of the stroke there. Lengths
/// are pixels along the points from the first on.
class TracedStroke {
 public:
  /// At least one point. The frame's line is no way on. The sight must outlive it.
  TracedStroke(InkSight& sight, std::vector<Vector> places, const std::optional<PlotFrame>& frame);

  std::size_t Size() const { return at_.size(); }
  Vector At(std::size_t i) const { return at_[i]; }
  double LengthAt(std::size_t i) const { return along_[i]; }
  double Length() const { return along_.back(); }
  /// Pixels of the shortest of the straight ways through the ink at the point; 0 where there is
  /// none.
  double ThicknessAt(std::size_t i) const { return thickness_[i]; }
  double UsualThickness() const { return usual_; }

  /// The place so many pixels along.
  Vector AtLength(double length) const;
  /// The first point that is so many pixels along, or their number.
  std::size_t FirstAt(double length) const {
    return static_cast<std::size_t>(std::lower_bound(along_.begin(), along_.end(), length) -
                                    along_.begin());
  }

  bool HasInk(Vector at, double reach) { return sight_.HasInkNear(at.X, at.Y, reach); }
  bool HasInk(Vector at, double reach, const InkShade& like) {
    return sight_.HasInkNear(at.X, at.Y, reach, like);
  }
  /// The stroke's ink from one length to another, in the middle; nothing where it is not seen.
  InkShade ShadeOn(double first, double end);
  /// Degrees by which the course turns at the length, told by how it bends from `gap` to `reach`
  /// before and behind it: as good as none where it bends evenly.
  double TurnAt(double here, double gap, double reach) const;
  /// How much of the way straight ahead of `from` is ink like the shade, where it is away from the
  /// points on that side of `here` (1: behind it, -1: before); 0 where it soon ends. `angle` is
  /// that between the two ways, in degrees.
  double GoesOn(Vector from, Vector way, double here, int side, double angle,
                const InkShade& shade);

 private:
  double LookThrough(Vector at);
  bool IsOnFrame(Vector at) const;

  InkSight& sight_;
  std::vector<Vector> at_;
  std::optional<PlotFrame> frame_;
  std::vector<double> along_;
  std::vector<std::size_t> beyond_;  // [k]: the first point beyond k / Size() of the length
  std::vector<double> thickness_;
  double usual_ = 0;
};

}  // namespace graphize
