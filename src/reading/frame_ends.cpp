#include "reading/frame_ends.h"

#include <cmath>

namespace graphize {

std::optional<FrameEnd> FrameEndOf(const InkMap& map, const std::vector<CurvePoint>& points,
                                   bool isLast, const StrokeKind& kind) {
  constexpr double kBack = 8;  // pixels over which the way is taken
  constexpr double kLeastCosine = 0.86;
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
  end.AlongX = dx / length;
  end.AlongY = dy / length;
  const int x = static_cast<int>(std::lround(end.At.X)),
            y = static_cast<int>(std::lround(end.At.Y));
  const int reach = 3 + static_cast<int>(std::ceil(0.5 * kind.Width));
  const auto isWall = [&](int u, int v) { return map.At(u, v) == InkMap::kWall; };
  const bool besideUpright = isWall(x - reach, y) || isWall(x + reach, y);
  const bool besideLevel = isWall(x, y - reach) || isWall(x, y + reach);
  if (besideUpright == besideLevel) return std::nullopt;
  const double cosine = std::fabs(besideLevel ? end.AlongX : end.AlongY);
  return cosine >= kLeastCosine ? std::optional(end) : std::nullopt;
}

std::optional<PathPixel> InkBehind(const InkMap& map, const FrameEnd& end) {
  constexpr int kFirst = 3, kLast = 20, kAside = 4;  // pixels along the side, and across it
  for (int along = kFirst; along <= kLast; ++along)
    for (int aside = -kAside; aside <= kAside; ++aside) {
      const double x = end.At.X + along * end.AlongX - aside * end.AlongY,
                   y = end.At.Y + along * end.AlongY + aside * end.AlongX;
      const PathPixel at{static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
      if (map.Share(at.X, at.Y) >= 0.5) return at;
    }
  return std::nullopt;
}

}  // namespace graphize
