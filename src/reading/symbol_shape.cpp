#include "reading/symbol_shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

#include "base/translation.h"
#include "reading/symbol_cutting.h"

namespace graphize {

namespace {

constexpr int kClickReach = 16;       // pixels from the click to the symbol's ink
constexpr double kLeastExtent = 2.5;  // of a symbol, pixels; less is a speck

/// The shape of the ink in `area`. What lies near it is known to be paper, unless it is ink.
SymbolShape ShapeOf(const Cutting& cutting, const Area& area, bool isClean) {
  double mass = 0, sumX = 0, sumY = 0;
  cutting.ForEach([&](int x, int y) {
    if (!area[cutting.Index(x, y)]) return;
    const double share = cutting.IsSeen(x, y) ? cutting.Share(x, y) : 0.5;
    mass += share;
    sumX += share * x;
    sumY += share * y;
  });
  const int cx = static_cast<int>(std::lround(sumX / mass)),
            cy = static_cast<int>(std::lround(sumY / mass));
  const Area near = Grown(cutting, area, 1.5);
  const Area around = Grown(cutting, WithoutHoles(cutting, area, 2 * cutting.Radius()), 3);
  const Box box = BoxOf(cutting, around);
  SymbolShape shape;
  shape.Radius = std::max({cx - box.Left, box.Right - cx, cy - box.Top, box.Bottom - cy});
  shape.IsClean = isClean;
  const auto count =
      static_cast<std::size_t>(shape.Side()) * static_cast<std::size_t>(shape.Side());
  shape.Ink.resize(count);
  shape.IsKnown.resize(count);
  cutting.ForEach([&](int x, int y) {
    if (!around[cutting.Index(x, y)]) return;
    const std::size_t to = shape.IndexOf(x - cx, y - cy);
    const bool isOwn = isClean ? near[cutting.Index(x, y)] : area[cutting.Index(x, y)];
    const float share = cutting.Share(x, y);
    // Ink beside it is something else's.
    shape.IsKnown[to] = cutting.IsSeen(x, y) && (isOwn || share < 0.2f);
    if (isOwn) shape.Ink[to] = share;
  });
  const auto inked = [&](float least, float most) {
    return std::count_if(shape.Ink.begin(), shape.Ink.end(),
                         [&](float ink) { return ink > least && ink <= most; });
  };
  shape.IsHard = 8 * inked(0.12f, 0.88f) < inked(0.88f, 1);
  Measure(shape);
  return shape;
}

/// Circles about a pixel, by their radius: 16 places for each pixel of it, counter-clockwise.
std::vector<std::vector<Spot>> Circles(int most) {
  std::vector<std::vector<Spot>> circles(1);
  for (int radius = 1; radius <= most; ++radius) {
    std::vector<Spot>& circle = circles.emplace_back();
    for (int i = 0; i <= 16 * radius; ++i) {
      const double angle = 2 * std::numbers::pi * i / (16 * radius);
      circle.push_back({static_cast<int>(std::lround(radius * std::cos(angle))),
                        static_cast<int>(std::lround(radius * std::sin(angle)))});
    }
  }
  return circles;
}

/// Where a stroke or several meet at the click: the radius within which more arms are met than go
/// on, as in a cross on a line.
std::optional<int> RadiusOfArms(const Cutting& cutting, Spot centre,
                                const std::vector<std::vector<Spot>>& circles) {
  const auto armsAt = [&](int radius) {
    int arms = 0;
    bool before = true;  // the last place of a circle is its first
    for (const Spot& at : circles[static_cast<std::size_t>(radius)]) {
      const int x = centre.X + at.X, y = centre.Y + at.Y;
      const bool ink = cutting.Share(x, y) >= 0.3f || cutting.IsInk(x, y);
      arms += ink && !before ? 1 : 0;
      before = ink;
    }
    return arms;
  };
  const auto most = static_cast<int>(circles.size()) - 1;
  int last = 0;
  for (int radius = 2; radius <= most; ++radius) {
    const int arms = armsAt(radius);
    if (arms >= 4) last = radius;
    if (last > 0 && radius > last + 4) break;
  }
  return last >= 2 && last < most ? std::optional(last) : std::nullopt;
}

}  // namespace

float SymbolShape::Between(double x, double y) const {
  const double left = std::floor(x), top = std::floor(y);
  const auto weights = [](double t) {
    return std::array{((-0.5 * t + 1) * t - 0.5) * t, (1.5 * t - 2.5) * t * t + 1,
                      ((-1.5 * t + 2) * t + 0.5) * t, (0.5 * t - 0.5) * t * t};
  };
  const auto across = weights(x - left), down = weights(y - top);
  const int column = static_cast<int>(left) - 1, row = static_cast<int>(top) - 1;
  double sum = 0;
  for (int j = 0; j < 4; ++j) {
    double line = 0;
    for (int i = 0; i < 4; ++i)
      line += across[static_cast<std::size_t>(i)] * At(column + i, row + j);
    sum += down[static_cast<std::size_t>(j)] * line;
  }
  return static_cast<float>(std::clamp(sum, 0.0, 1.0));
}

void Measure(SymbolShape& shape) {
  std::vector<float> columns(static_cast<std::size_t>(shape.Side())), rows = columns;
  double area = 0, sumX = 0, sumY = 0;
  for (int y = -shape.Radius; y <= shape.Radius; ++y)
    for (int x = -shape.Radius; x <= shape.Radius; ++x) {
      const double ink = shape.At(x, y);
      if (ink < 0.05) continue;
      area += ink;
      sumX += ink * x;
      sumY += ink * y;
      float& column = columns[static_cast<std::size_t>(x + shape.Radius)];
      float& row = rows[static_cast<std::size_t>(y + shape.Radius)];
      column = std::max(column, static_cast<float>(ink));
      row = std::max(row, static_cast<float>(ink));
    }
  shape.Area = area;
  shape.MassX = area > 0 ? sumX / area : 0;
  shape.MassY = area > 0 ? sumY / area : 0;
  // The box's sides lie where the ink of a line of pixels comes to a half.
  const auto sides = [&](const std::vector<float>& lines) {
    const auto count = static_cast<int>(lines.size());
    const auto line = [&](int i) {
      return i < 0 || i >= count ? 0.0f : std::min(lines[static_cast<std::size_t>(i)], 1.0f);
    };
    int first = 0, last = count - 1;
    while (first < last && line(first) < 0.5f) ++first;
    while (last > first && line(last) < 0.5f) --last;
    // A pixel's share is how far it is covered.
    const double low = first + 0.5 - line(first) - line(first - 1);
    const double high = last - 0.5 + line(last) + line(last + 1);
    return std::pair(low - shape.Radius, high - shape.Radius);
  };
  const auto [left, right] = sides(columns);
  const auto [top, bottom] = sides(rows);
  shape.BoxX = 0.5 * (left + right);
  shape.BoxY = 0.5 * (top + bottom);
  shape.Width = right - left;
  shape.Height = bottom - top;
}

int LargestSymbol(int width, int height) {
  return std::clamp(std::min(width, height) / 10, 32, 160);
}

std::variant<std::vector<SymbolShape>, std::string> ShapesAt(const InkMap& map, double x,
                                                             double y) {
  const int column = static_cast<int>(std::lround(x)), row = static_cast<int>(std::lround(y));
  const int largest = LargestSymbol(map.Width, map.Height);
  const Cutting cutting(map, column, row, largest + kClickReach);
  std::optional<Spot> start;
  double most = 0;
  bool isHidden = false;
  for (int v = -kClickReach; v <= kClickReach; ++v)
    for (int u = -kClickReach; u <= kClickReach; ++u) {
      const double distance = std::hypot(u, v);
      if (distance > kClickReach) continue;
      isHidden = isHidden || (distance <= 4 && map.IsHidden(column + u, row + v));
      const double score = cutting.Share(u, v) / (1 + 0.5 * distance);
      if (cutting.Share(u, v) < 0.5f || score <= most) continue;
      most = score;
      start = {u, v};
    }
  if (!start || (isHidden && std::hypot(start->X, start->Y) > 7)) {
    if (map.At(column, row) == InkMap::kWall) return Tr("the frame, or what lies outside it");
    return isHidden ? Tr("a line of the grid or the frame, no symbol")
                    : Tr("only paper, no symbol");
  }
  const auto isInk = [&](int u, int v) { return cutting.IsInk(u, v); };
  const Area component = Connected(cutting, *start, isInk);
  const Box box = BoxOf(cutting, component);
  const bool isCut = box.Left <= -cutting.Radius() || box.Right >= cutting.Radius() ||
                     box.Top <= -cutting.Radius() || box.Bottom >= cutting.Radius();
  if (!isCut && box.Extent() <= largest) {
    SymbolShape shape = ShapeOf(cutting, component, true);
    if (shape.Size() < kLeastExtent) return Tr("a speck, too small for a symbol");
    return std::vector{std::move(shape)};
  }

  // A line runs through: what is thicker than it.
  const std::vector<float> strokes = DepthsIn(cutting, component);
  std::vector<float> ridges;
  cutting.ForEach([&](int u, int v) {
    if (!component[cutting.Index(u, v)] || !cutting.Contains(u - 1, v - 1) ||
        !cutting.Contains(u + 1, v + 1))
      return;
    const float here = strokes[cutting.Index(u, v)];
    for (int dv = -1; dv <= 1; ++dv)
      for (int du = -1; du <= 1; ++du)
        if (strokes[cutting.Index(u + du, v + dv)] > here) return;
    ridges.push_back(here);
  });
  const auto middle = ridges.begin() + static_cast<std::ptrdiff_t>(ridges.size() / 2);
  std::nth_element(ridges.begin(), middle, ridges.end());
  const float line = ridges.empty() ? 1 : *middle;
  std::vector<SymbolShape> shapes;
  std::vector<Area> solids{WithoutHoles(cutting, component, largest / 2)};
  if (solids.front() != component) solids.push_back(component);
  for (const Area& solid : solids) {
    const std::vector<float> depths = DepthsIn(cutting, solid);
    std::optional<Spot> deepest;
    float depth = 1.4f * line + 0.7f;
    for (int v = -kClickReach; v <= kClickReach; ++v)
      for (int u = -kClickReach; u <= kClickReach; ++u) {
        const auto away = static_cast<float>(std::hypot(u - start->X, v - start->Y));
        const float here = depths[cutting.Index(u, v)];
        if (here <= depth || away > here + 4) continue;
        depth = here;
        deepest = {u, v};
      }
    if (!deepest) continue;
    const float radius = std::min(line + 0.8f, 0.75f * depth);
    const Area core = Connected(cutting, *deepest,
                                [&](int u, int v) { return depths[cutting.Index(u, v)] > radius; });
    Area symbol = Grown(cutting, core, radius + 0.5);
    for (std::size_t i = 0; i < symbol.size(); ++i) symbol[i] = symbol[i] && solid[i];
    if (BoxOf(cutting, symbol).Extent() <= largest)
      shapes.push_back(ShapeOf(cutting, symbol, false));
  }
  // The crossing nearest to the click, the middle one, and the one with the longest arms.
  std::vector<std::pair<int, Spot>> crossings;  // by their arms
  const std::vector<std::vector<Spot>> circles = Circles(largest / 2);
  for (int v = -4; v <= 4; ++v)
    for (int u = -4; u <= 4; ++u) {
      if (std::hypot(u, v) > 4.5 || !cutting.IsInk(u, v)) continue;
      if (const auto arms = RadiusOfArms(cutting, {u, v}, circles))
        crossings.push_back({*arms, {u, v}});
    }
  const auto away = [](const auto& crossing) {
    return std::hypot(crossing.second.X, crossing.second.Y);
  };
  std::stable_sort(crossings.begin(), crossings.end(),
                   [&](const auto& a, const auto& b) { return away(a) < away(b); });
  std::vector<std::pair<int, Spot>> taken;
  const auto take = [&](const std::pair<int, Spot>& crossing) {
    if (std::none_of(taken.begin(), taken.end(),
                     [&](const auto& other) { return other.first == crossing.first; }))
      taken.push_back(crossing);
  };
  if (!crossings.empty()) {
    take(crossings.front());
    std::stable_sort(crossings.begin(), crossings.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    take(crossings[crossings.size() / 2]);
    take(crossings.back());
  }
  for (const auto& crossing : taken) {
    const auto& arms = crossing.first;
    const auto& centre = crossing.second;
    Area disc(cutting.Count());
    cutting.ForEach([&](int u, int v) {
      disc[cutting.Index(u, v)] =
          std::hypot(u - centre.X, v - centre.Y) <= arms + 0.5 && component[cutting.Index(u, v)];
    });
    shapes.push_back(ShapeOf(cutting, disc, false));
  }
  if (shapes.empty()) return Tr("a curve, no symbol");
  return shapes;
}

}  // namespace graphize
