#pragma once

#include <limits>
#include <span>
#include <vector>

#include "raster/picture_operation.h"
#include "reading/ink_map.h"

namespace graphize {

struct PathPixel {
  int X = 0, Y = 0;

  bool operator==(const PathPixel&) const = default;
};

/// What a column costs that holds no ink: solid strokes are told from everything else by gaps that
/// cost, dotted ones live with them.
struct PathCosts {
  double Paper = 0.5;
  double Leap = 0.2;  // per pixel up or down over paper
  double Reach = 30;  // the path ends where it has lost as much
};
inline constexpr PathCosts kSolidStroke = {};
inline constexpr PathCosts kBrokenStroke = {.Paper = 0.1, .Leap = 0.06, .Reach = 8};

/// The stroke through `start` from its left to its right end, pixel by pixel, every column once or,
/// where it is steep, as long as it goes up or down there. It gains by ink in every column, so the
/// path that gains most ends where the stroke does (local alignment by dynamic programming, Smith
/// and Waterman 1981, over the columns to both sides). It leads through the places of `through`, as
/// far as anything leads there, at no more than kThroughReach from them. Stopped operations give
/// what there is.
std::vector<PathPixel> FindPath(const InkMap& map, PathPixel start, const PathCosts& costs,
                                std::span<const PathPixel> through,
                                const PictureOperation& operation);
/// The same to one side only, `step` 1 to the right or -1 to the left, beginning with `start`.
std::vector<PathPixel> FindHalfPath(const InkMap& map, PathPixel start, int step,
                                    const PathCosts& costs, std::span<const PathPixel> through,
                                    const PictureOperation& operation,
                                    int mostColumns = std::numeric_limits<int>::max());
inline constexpr int kThroughReach = 7;  // rows

}  // namespace graphize
