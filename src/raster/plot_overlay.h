#pragma once

#include <optional>
#include <vector>

#include "base/palette.h"

namespace graphize {

/// What is painted above the raster and is never in it. Picture pixels, row downward.
struct PlotOverlay {
  struct Point {
    int X = 0, Y = 0;
  };
  struct Rectangle {
    int Left = 0, Top = 0, Right = 0, Bottom = 0;

    bool operator==(const Rectangle&) const = default;
  };
  std::vector<Point> DataPoints;
  Colour DataColour = kBlack;
  std::optional<Point> LastPoint;
  Colour LastColour = kBlack;
  std::vector<Point> AxisPoints;
  Colour AxisColour = kBlack;
};

/// Marks have an edge of this width around them, which makes them stand out from any ground.
inline constexpr int kMarkEdge = 1;
/// How far, without its edge, the marks of a data point, the last point and an axis point reach
/// from their pixel.
inline constexpr int kDataPointReach = 2;
inline constexpr int kLastPointReach = 8;
inline constexpr int kAxisPointReach = 9;

}  // namespace graphize
