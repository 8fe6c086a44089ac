#pragma once

#include <vector>

#include "base/affine_map.h"
#include "finding_axes/ink_image.h"
#include "raster/picture_operation.h"

namespace graphize {

/// A page as it lies, turned upright, and how much of each row and column is drawn straight along
/// it.
struct UprightPage {
  InkImage Ink;
  InkImage Upright;
  AffineMap ToInk;                   // from positions on Upright to those on Ink
  std::vector<float> Rows, Columns;  // share of Upright's in long runs, smoothed
};

/// An image without pixels when stopped.
UprightPage UprightPageOf(const Raster& picture, PictureOperation& operation);

/// A way in which a page may lie to another, told by where their long runs are.
struct PageMatch {
  AffineMap Map;     // from positions on one Ink to those on the other
  double Score = 0;  // 0 to 2: the correlations of rows and columns
};

/// The likeliest ways, best first, within scales of 0.95 to 1.05 and shifts of a quarter of the
/// sides.
std::vector<PageMatch> MatchPages(const UprightPage& from, const UprightPage& to);

}  // namespace graphize
