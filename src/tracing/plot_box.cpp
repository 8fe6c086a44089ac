#include "tracing/plot_box.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "base/numbers.h"

namespace graphize {

namespace {

constexpr int kAside = 4;            // pixels by which an axis point may miss its line
constexpr double kAxisShare = 0.6;   // of an axis's length between its points that is ink
constexpr double kFrameShare = 0.9;  // the same of a side that no axis point lies on
constexpr int kThickest = 40;        // pixels of a frame's line

/// A direction on the picture: along the X axis, or across it.
class Direction {
 public:
  Direction(const InkTest& isInk, int width, int height, const AxesFrame& frame, bool isLevel)
      : isInk_(isInk), width_(width), height_(height), frame_(frame), isLevel_(isLevel) {}

  /// Whether there is ink at the place, or just beside it: a line is not quite where it should be.
  bool HasInk(double along, double offset) const {
    for (const int aside : {0, -1, 1})
      if (IsInk(along, offset + aside)) return true;
    return false;
  }
  /// Share of the places from `first` to `last` with ink at this offset.
  double Share(double offset, double first, double last, double step = 1) const {
    int ink = 0, count = 0;
    for (double along = first; along <= last; along += step, ++count)
      ink += HasInk(along, offset) ? 1 : 0;
    return count == 0 ? 0 : static_cast<double>(ink) / count;
  }
  bool IsLine(double offset, double first, double last, double share) const {
    for (const int samples : {16, 64})
      if (Share(offset, first, last, std::max((last - first) / samples, 1.0)) < 0.9 * share)
        return false;
    return Share(offset, first, last) >= share;
  }
  /// Whether the place is on the picture.
  bool Contains(double along, double offset) const {
    const auto [x, y] = At(along, offset);
    return x >= 0 && x < width_ && y >= 0 && y < height_;
  }
  /// Where the line at the offset ends when one goes on from `from`; `step` is -1 or 1.
  double EndOf(double offset, double from, int step, int longestGap) const {
    double end = from;
    for (double along = from; Contains(along, offset) && std::abs(along - end) <= longestGap + 1;
         along += step)
      if (HasInk(along, offset)) end = along;
    return end;
  }
  int LongestGap(double offset, double first, double last) const {
    int longest = 0, gap = 0;
    for (double along = first; along <= last; ++along) {
      gap = HasInk(along, offset) ? 0 : gap + 1;
      longest = std::max(longest, gap);
    }
    return longest;
  }

 private:
  struct Pixel {
    int X, Y;
  };
  Pixel At(double along, double offset) const {
    const double u = isLevel_ ? along : offset, v = isLevel_ ? offset : along;
    return {ToInt32(frame_.X(u, v)), ToInt32(frame_.Y(u, v))};
  }
  bool IsInk(double along, double offset) const {
    const auto [x, y] = At(along, offset);
    return isInk_(x, y);
  }

  const InkTest& isInk_;
  int width_, height_;
  const AxesFrame& frame_;
  bool isLevel_;
};

/// The stretch between the axis points of an axis, or of what goes across it.
struct Stretch {
  double First = 0, Last = 0;
};

/// Where the axis through the origin is drawn, or else the nearest side of a frame around the axis
/// points.
std::optional<double> FindLine(const Direction& direction, double origin, Stretch along,
                               Stretch across) {
  std::optional<double> best;
  double share = kAxisShare;
  for (int aside = -kAside; aside <= kAside; ++aside) {
    const double here = direction.Share(origin + aside, along.First, along.Last);
    if (here < share || (here == share && best && std::abs(aside) >= std::abs(*best - origin)))
      continue;
    share = here;
    best = origin + aside;
  }
  if (best) return best;
  // No farther than the axis points are apart: what lies there is another plot's.
  const double middle = (along.First + along.Last) / 2, farthest = across.Last - across.First;
  for (double beyond = 0; beyond <= farthest; ++beyond) {
    const double sides[] = {across.First - beyond, across.Last + beyond};
    for (const double side : sides)
      if (direction.IsLine(side, along.First, along.Last, kFrameShare)) return side;
    if (!direction.Contains(middle, sides[0]) && !direction.Contains(middle, sides[1])) break;
  }
  return std::nullopt;
}

/// From where to where a drawn axis or frame goes in a direction; nothing where there is none.
std::optional<Stretch> ExtentIn(const Direction& direction, double origin, Stretch along,
                                Stretch across) {
  const auto line = FindLine(direction, origin, along, across);
  if (!line) return std::nullopt;
  const int gap = std::clamp(direction.LongestGap(*line, along.First, along.Last), 2, 12);
  return Stretch{direction.EndOf(*line, along.First, -1, gap),
                 direction.EndOf(*line, along.Last, 1, gap)};
}

/// A side of the plot near `end`, where what runs towards it ends: its inner and its outer edge.
/// Outward of a frame's line an axis goes on as a tick only. `inward` is -1 or 1, `along` what the
/// side's line covers.
struct Side {
  double Inner, Outer;
};
Side SideAt(const Direction& direction, double end, int inward, Stretch along, double length) {
  const auto isLine = [&](double offset) {
    return direction.IsLine(offset, along.First, along.Last, kFrameShare);
  };
  const int tick = std::max(15, static_cast<int>(length / 25));
  for (int depth = -kAside; depth <= tick; ++depth) {
    const double outer = end + inward * depth;
    if (!isLine(outer)) continue;
    double inner = outer;
    for (int i = 0; i < kThickest && isLine(inner); ++i) inner += inward;
    return {inner, outer};
  }
  return {end, end};
}

}  // namespace

PlotBox::Span PlotBox::RowsIn(int column) const {
  // Of the four sides, those of constant v bound every column; those of constant u bound the rows
  // of one only where the axes are turned.
  double first = (frame_.Top + column * frame_.Sin) / frame_.Cos;
  double last = (frame_.Bottom + column * frame_.Sin) / frame_.Cos;
  const double left = frame_.Left - column * frame_.Cos, right = frame_.Right - column * frame_.Cos;
  if (std::abs(frame_.Sin) < 1e-9) {
    if (left > 0 || right < 0) return {};
  } else {
    first = std::max(first, std::min(left / frame_.Sin, right / frame_.Sin));
    last = std::min(last, std::max(left / frame_.Sin, right / frame_.Sin));
  }
  constexpr double kFar = 1e6;
  return {static_cast<int>(std::ceil(std::clamp(first, -kFar, kFar))),
          static_cast<int>(std::floor(std::clamp(last, -kFar, kFar)))};
}

bool PlotBox::Contains(int x, int y) const {
  const Span rows = RowsIn(x);
  return y >= rows.First && y <= rows.Last;
}

PlotFrame FindPlotFrame(const InkTest& isInk, int width, int height,
                        const AxisCalibration& calibration) {
  const AxesFrame frame = FrameOf(calibration, width, height);
  PlotFrame found{frame, frame};
  const double x = calibration.PixelX[0], y = height - calibration.PixelY[0];
  const Direction level(isInk, width, height, frame, true);
  const Direction upright(isInk, width, height, frame, false);
  const Stretch columns{frame.Left, frame.Right}, rows{frame.Top, frame.Bottom};
  AxesFrame &inner = found.Inner, &outer = found.Outer;
  const auto take = [](const Side& side, double& in, double& out) {
    in = side.Inner;
    out = side.Outer;
  };
  if (const auto us = ExtentIn(level, frame.V(x, y), columns, rows)) {
    const double length = us->Last - us->First;
    take(SideAt(upright, us->First, 1, rows, length), inner.Left, outer.Left);
    take(SideAt(upright, us->Last, -1, rows, length), inner.Right, outer.Right);
  }
  if (const auto vs = ExtentIn(upright, frame.U(x, y), rows, columns)) {
    const double length = vs->Last - vs->First;
    take(SideAt(level, vs->First, 1, columns, length), inner.Top, outer.Top);
    take(SideAt(level, vs->Last, -1, columns, length), inner.Bottom, outer.Bottom);
  }
  return found;
}

PlotBox FindPlotBox(PlotImage& image, const AxisCalibration& calibration) {
  const BasePictureShown base(image);
  const InkTest isBlack = [&](int x, int y) { return IsBlack(image, x, y); };
  return PlotBox(FindPlotFrame(isBlack, image.Width(), image.Height(), calibration).Inner);
}

}  // namespace graphize
