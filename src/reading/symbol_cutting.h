#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "reading/ink_map.h"

namespace graphize {

/// A square part of the map about the click.
class Cutting {
 public:
  Cutting(const InkMap& map, int x, int y, int radius)
      : radius_(radius), side_(2 * radius + 1), values_(Count()) {
    for (int row = -radius; row <= radius; ++row)
      for (int column = -radius; column <= radius; ++column)
        values_[Index(column, row)] = map.At(x + column, y + row);
  }
  int Radius() const { return radius_; }
  bool Contains(int x, int y) const { return std::abs(x) <= radius_ && std::abs(y) <= radius_; }
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y + radius_) * static_cast<std::size_t>(side_) +
           static_cast<std::size_t>(x + radius_);
  }
  std::size_t Count() const {
    return static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_);
  }
  bool IsSeen(int x, int y) const {
    return Contains(x, y) && values_[Index(x, y)] <= InkMap::kFull;
  }
  float Share(int x, int y) const {
    return IsSeen(x, y) ? static_cast<float>(values_[Index(x, y)]) / InkMap::kFull : 0;
  }
  /// Ink, or hidden between ink on two sides by no more than a line's thickness.
  bool IsInk(int x, int y) const {
    if (IsSeen(x, y)) return Share(x, y) >= 0.5f;
    if (!Contains(x, y) || values_[Index(x, y)] == InkMap::kWall) return false;
    const auto inked = [&](int dx, int dy) {
      for (int i = 1; i <= 3; ++i)
        if (IsSeen(x + i * dx, y + i * dy)) return Share(x + i * dx, y + i * dy) >= 0.5f;
      return false;
    };
    return (inked(1, 0) && inked(-1, 0)) || (inked(0, 1) && inked(0, -1));
  }
  template <class Visit>
  void ForEach(const Visit& visit) const {
    for (int y = -radius_; y <= radius_; ++y)
      for (int x = -radius_; x <= radius_; ++x) visit(x, y);
  }

 private:
  int radius_, side_;
  std::vector<std::uint8_t> values_;
};

struct Spot {
  int X = 0, Y = 0;
};
/// Pixels of a Cutting.
using Area = std::vector<bool>;

/// What hangs together with `from` of what `inside` takes, corners included.
template <class Inside>
Area Connected(const Cutting& cutting, Spot from, const Inside& inside) {
  Area area(cutting.Count());
  std::vector<Spot> rim;
  const auto take = [&](int x, int y) {
    if (!cutting.Contains(x, y) || area[cutting.Index(x, y)] || !inside(x, y)) return;
    area[cutting.Index(x, y)] = true;
    rim.push_back({x, y});
  };
  take(from.X, from.Y);
  while (!rim.empty()) {
    const Spot at = rim.back();
    rim.pop_back();
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) take(at.X + dx, at.Y + dy);
  }
  return area;
}

struct Box {
  int Left = 1, Top = 1, Right = 0, Bottom = 0;  // empty

  void Add(int x, int y) {
    const bool first = Left > Right;
    Left = first ? x : std::min(Left, x);
    Right = first ? x : std::max(Right, x);
    Top = first ? y : std::min(Top, y);
    Bottom = first ? y : std::max(Bottom, y);
  }
  int Extent() const { return std::max(Right - Left, Bottom - Top) + 1; }
};

Box BoxOf(const Cutting& cutting, const Area& area);

/// The area with its holes, except large ones.
Area WithoutHoles(const Cutting& cutting, const Area& area, int largest);

/// Distance of each pixel in the area to the nearest one outside, in pixels (two passes with the
/// weights 1 and the root of 2; Rosenfeld and Pfaltz 1968).
std::vector<float> DepthsIn(const Cutting& cutting, const Area& area);

/// The area and what lies within `by` pixels of it.
Area Grown(const Cutting& cutting, const Area& area, double by);

}  // namespace graphize
