#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "raster/plot_image.h"

namespace graphize {

/// A curve 8 pixels thick over 30000 columns: what the speed of tracing is measured on.
PlotImage WideCurve();

/// A page of 35 megapixels with a black pixel in every `oneIn` on average, in short runs.
PlotImage SpeckledPage(int oneIn);

/// The first and last black row of every column.
std::vector<std::pair<int, int>> InkOf(const PlotImage& image);

/// The reads of a trace alone: the ink with the gap around it, and beside ink the next column.
struct BareReads {
  std::int64_t Reads = 0;
  unsigned Black = 0;
};
BareReads ReadBarely(const PlotImage& image, const std::vector<std::pair<int, int>>& ink);

}  // namespace graphize
