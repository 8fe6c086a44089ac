#pragma once

#include <numbers>
#include <vector>

#include "finding_axes/ink_image.h"
#include "raster/picture_operation.h"

namespace graphize {

inline constexpr double kDegree = std::numbers::pi / 180;  // radians

/// A straight line along the rows of an image, or along its columns.
struct LongLine {
  double Across = 0;         // its middle: a row of a level line, a column of an upright one
  int First = 0, Last = -1;  // the rows or columns it covers
  int From = 0, To = -1;     // along it, both included

  int Length() const { return To - From + 1; }
  int Thickness() const { return Last - First + 1; }
};

struct LineSet {
  std::vector<LongLine> Level, Upright;
};

/// All unbroken lines of a good length that are no areas: frame, axes, grid, and what else is
/// straight.
LineSet FindLongLines(const InkImage& upright);

/// How the lines of a picture lie: its level ones fall to the right by Angle, its upright ones lean
/// more than that by Skew (radians).
struct PageTurn {
  double Angle = 0, Skew = 0;
};

/// From -8 to 8 degrees: shear and score projections (Postl 1986), then the longest lines followed
/// to a part of a pixel. None where straight lines do not speak for it. A stopped operation gives
/// what there is.
PageTurn FindTurn(const InkImage& ink, const PictureOperation& operation);

}  // namespace graphize
