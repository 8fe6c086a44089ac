#pragma once

#include <vector>

#include "extraction/grid_line.h"

namespace graphize {

/// Where the plot lies on an upright map: the columns between two reference points on the axis that
/// runs along the lines, the rows between the two on the other axis, and the origin.
struct PlotPlace {
  Span Columns;
  Span Rows;
  int OriginColumn = 0;
  int OriginRow = 0;
};

/// Ends every line at the upright frame or axis line near its end, so that tick marks and what else
/// lies outside is not taken for a part of it.
void EndAtFrame(const BitMap& map, const PlotPlace& place, std::vector<GridLine>& lines);

/// Which of `lines` (in order of rows) are the axis line through the origin or a side of the frame.
std::vector<bool> FindFrame(const BitMap& map, const PlotPlace& place,
                            const std::vector<GridLine>& lines);

}  // namespace graphize
