#include "reading/stroke_tips.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace graphize {

namespace {

constexpr double kLeast = 1, kStep = 0.5, kCrest = 1.5;  // pixels

struct Way {
  double X = 0, Y = 0;
};

/// A course's points, and how far along it each of them lies.
class Turns {
 public:
  /// `reach` pixels of it to both sides tell whether it turns.
  Turns(const std::vector<CurvePoint>& points, double reach) : points_(points), reach_(reach) {
    double length = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (i > 0) length += std::hypot(points[i].X - points[i - 1].X, points[i].Y - points[i - 1].Y);
      along_.push_back(length);
    }
  }

  /// Out of a turn of more than a right angle at point `i`, of length 1; absent where there is
  /// none.
  std::optional<Way> Out(std::size_t i) const { return Out(i, i); }

  /// Out of a turn from point `first` to `last`, by the ways that lead to it and away from it:
  /// between them a course may lead across from one side of a peak to the other.
  std::optional<Way> Out(std::size_t first, std::size_t last) const {
    const auto before = std::ranges::upper_bound(along_, along_[first] - reach_);
    const auto behind = std::ranges::lower_bound(along_, along_[last] + reach_);
    if (before == along_.begin() || behind == along_.end()) return std::nullopt;
    const CurvePoint &a = points_[static_cast<std::size_t>(before - along_.begin()) - 1],
                     &b = points_[static_cast<std::size_t>(behind - along_.begin())];
    const double ux = points_[first].X - a.X, uy = points_[first].Y - a.Y;
    const double vx = b.X - points_[last].X, vy = b.Y - points_[last].Y;
    const double u = std::hypot(ux, uy), v = std::hypot(vx, vy);
    if (u < 1 || v < 1 || ux * vx + uy * vy >= 0) return std::nullopt;
    const double x = ux / u - vx / v, y = uy / u - vy / v, length = std::hypot(x, y);
    return Way{x / length, y / length};
  }

 private:
  const std::vector<CurvePoint>& points_;
  double reach_;
  std::vector<double> along_;
};

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
  const Turns turns(points, std::max(6.0, 2 * kind.Width));
  for (std::size_t i = 0, last = 0; i < points.size(); ++i) {
    if (!turns.Out(i)) continue;
    last = std::max(last, i);
    while (last + 1 < points.size() && turns.Out(last + 1)) ++last;
    const auto way = turns.Out(i, last);
    if (!way) continue;  // it may hold shorter turns
    const auto out = [&](const CurvePoint& at) { return at.X * way->X + at.Y * way->Y; };
    const std::span<const CurvePoint> crest = std::span(points).subspan(i, last - i + 1);
    const double farthest = out(*std::ranges::max_element(crest, {}, out));
    // Between two sides a crest may lie on paper.
    InkBeyondTurn beyond{.First = i, .Last = last, .OutX = way->X, .OutY = way->Y};
    for (const CurvePoint& at : crest) {
      const double left = farthest - out(at);
      if (left > kCrest) continue;
      const double ink = InkAlong(map, at, *way), length = ink - left - 0.5 * kind.Width;
      if (length <= beyond.Length) continue;
      beyond.X = at.X + ink * way->X;
      beyond.Y = at.Y + ink * way->Y;
      beyond.Length = length;
    }
    if (beyond.Length >= kLeast) found.push_back(beyond);
    i = last;
  }
  return found;
}

}  // namespace graphize
