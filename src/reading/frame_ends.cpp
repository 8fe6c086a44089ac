#include "reading/frame_ends.h"

#include <cmath>

namespace graphize {

std::optional<FrameEnd> FrameEndOf(const InkMap& map, const std::vector<CurvePoint>& points,
                                   bool isLast, const StrokeKind& kind) {
  constexpr double kBack = 8;  // pixels over which the way is taken
  constexpr double kLeastCosine = 0.5;
  const auto count = static_cast<std::ptrdiff_t>(points.size());
  const auto at = [&](std::ptrdiff_t back) -> const CurvePoint& {
    return points[static_cast<std::size_t>(isLast ? count - 1 - back : back)];
  };
  FrameEnd end{.At = at(0)};
  double dx = 0, dy = 0, length = 0;
  for (std::ptrdiff_t back = 1; back < count && length < kBack; ++back) {
    dx = end.At.X - at(back).X;
    dy = end.At.Y - at(back).Y;
    length = std::hypot(dx, dy);
  }
  if (length < 0.5 * kBack) return std::nullopt;
  const int x = static_cast<int>(std::lround(end.At.X)),
            y = static_cast<int>(std::lround(end.At.Y));
  const int reach = 3 + static_cast<int>(std::ceil(0.5 * kind.Width));
  // A frame of another colour hides what lies on it.
  constexpr int kHalf = 12;  // pixels of a side, at least
  const auto isSide = [&](int outX, int outY) {
    for (int out = 1; out <= reach; ++out) {
      const int u = x + out * outX, v = y + out * outY;
      if (map.At(u, v) == InkMap::kWall) return true;
      bool isHidden = true;
      for (int along = -kHalf; along <= kHalf && isHidden; ++along)
        isHidden = map.At(u + along * outY, v + along * outX) == InkMap::kHidden;
      if (isHidden) return true;
    }
    return false;
  };
  const bool besideUpright = isSide(-1, 0) != isSide(1, 0);
  const bool besideLevel = isSide(0, -1) != isSide(0, 1);
  if (besideUpright == besideLevel) return std::nullopt;
  end.Cosine = std::fabs(besideLevel ? dx : dy) / length;
  (besideLevel ? end.AlongX : end.AlongY) = (besideLevel ? dx : dy) < 0 ? -1 : 1;
  return end.Cosine >= kLeastCosine ? std::optional(end) : std::nullopt;
}

std::optional<PathPixel> InkBehind(const InkMap& map, const FrameEnd& end) {
  constexpr int kFirst = 3, kLast = 20, kAside = 4;  // pixels along the side, and across it
  for (int along = kFirst; along <= kLast; ++along)
    for (int aside = -kAside; aside <= kAside; ++aside) {
      const double x = end.At.X + along * end.AlongX + aside * end.AlongY,
                   y = end.At.Y + along * end.AlongY + aside * end.AlongX;
      const PathPixel at{static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
      if (map.Share(at.X, at.Y) >= 0.5) return at;
    }
  return std::nullopt;
}

}  // namespace graphize
