#include "reading/stroke_tips.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace graphize {

namespace {

constexpr double kLeast = 3, kStep = 0.5;  // pixels

struct Way {
  double X = 0, Y = 0;
};

/// Out of a turn of more than a right angle at point `i`, of length 1; absent where there is none.
std::optional<Way> OutOfTurn(const std::vector<CurvePoint>& points, std::size_t i,
                             std::size_t reach) {
  const CurvePoint &a = points[i - reach], &at = points[i], &b = points[i + reach];
  const double ux = at.X - a.X, uy = at.Y - a.Y, vx = b.X - at.X, vy = b.Y - at.Y;
  const double u = std::hypot(ux, uy), v = std::hypot(vx, vy);
  if (u < 1 || v < 1 || ux * vx + uy * vy >= 0) return std::nullopt;
  const double x = ux / u - vx / v, y = uy / u - vy / v, length = std::hypot(x, y);
  return Way{x / length, y / length};
}

/// How far clear ink goes on from a point, in pixels; it may lead aside a little.
double InkAlong(const InkMap& map, const CurvePoint& from, const Way& way) {
  double length = 0, aside = 0;
  for (double t = 0;; t += kStep) {
    const auto isInk = [&](double by) {
      return map.IsClear(static_cast<int>(std::lround(from.X + t * way.X - by * way.Y)),
                         static_cast<int>(std::lround(from.Y + t * way.Y + by * way.X)));
    };
    if (!isInk(aside)) {
      const double shifted = isInk(aside - 1) ? aside - 1 : aside + 1;
      if (!isInk(shifted)) return length;
      aside = shifted;
    }
    length = t;
  }
}

}  // namespace

std::vector<InkBeyondTurn> FindInkBeyondTurns(const InkMap& map,
                                              const std::vector<CurvePoint>& points,
                                              const StrokeKind& kind) {
  std::vector<InkBeyondTurn> found;
  const auto reach = static_cast<std::size_t>(std::max(6L, std::lround(2 * kind.Width)));
  if (points.size() < 2 * reach + 1) return found;
  const std::size_t end = points.size() - reach;
  for (std::size_t i = reach; i < end; ++i) {
    auto way = OutOfTurn(points, i, reach);
    if (!way) continue;
    std::size_t last = i;
    while (last + 1 < end && OutOfTurn(points, last + 1, reach)) ++last;
    way = OutOfTurn(points, (i + last) / 2, reach);
    const auto turn = points.begin() + static_cast<std::ptrdiff_t>(i);
    const CurvePoint& tip =
        *std::max_element(turn, turn + static_cast<std::ptrdiff_t>(last - i + 1),
                          [&](const CurvePoint& a, const CurvePoint& b) {
                            return a.X * way->X + a.Y * way->Y < b.X * way->X + b.Y * way->Y;
                          });
    const double ink = InkAlong(map, tip, *way), length = ink - 0.5 * kind.Width;
    if (length >= kLeast)
      found.push_back({i, last, tip.X + ink * way->X, tip.Y + ink * way->Y, length});
    i = last;
  }
  return found;
}

}  // namespace graphize
