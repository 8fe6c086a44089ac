#pragma once

#include <array>
#include <optional>
#include <vector>

#include "base/affine_map.h"

namespace graphize {

/// A place on the picture to a part of a pixel, row upward as in the three rows; centres of pixels
/// are whole.
struct ExactPlace {
  float Column = 0, RowUp = 0;
  float Sigma = 0;  // standard uncertainty of either, pixels; 0: a click's

  bool operator==(const ExactPlace&) const = default;
};

/// A place whose X, Y or both are known.
struct AxisReference {
  ExactPlace At;
  std::optional<float> X, Y;  // graph values, at least one

  bool operator==(const AxisReference&) const = default;
};
inline constexpr int kMostReferences = 200;

/// What the axes are known by beside the whole pixels of their three rows, and the transform that
/// follows from all of it.
struct AxisRefinement {
  std::array<std::optional<ExactPlace>, 3> Rows;  // where a row's click snapped to
  std::vector<AxisReference> References;
  bool On = false;  // the transform is this one instead of the three rows'
  AffineMap Scale;  // while On: column and row upward to X and Y, to log10 of one on a log axis

  bool operator==(const AxisRefinement&) const = default;
};

}  // namespace graphize
