#pragma once

#include <vector>

#include "grid/black_map.h"
#include "grid/grid_line.h"

namespace graphize {

/// Where the plot lies on a sheared map: the columns of the axis that runs along the lines, those
/// between its two reference points, and the rows between the two on the other axis; and on the map
/// the origin and the other axis's reference point.
struct PlotPlace {
  Span Columns;  // those of the reference points, and of the axis line where one is drawn
  Span ReferenceColumns;
  Span Rows;
  MapPixel Origin;
  MapPixel Across;
};

/// Ends every line at the upright frame or axis line near its end, so that tick marks and what else
/// lies outside is not taken for a part of it.
void EndAtFrame(const BlackMap& map, const PlotPlace& place, std::vector<GridLine>& lines);

/// Which of `lines` reach the plot's end, or end where half of the lines do and nothing of the grid
/// lies farther out, on both sides. What ends within the plot is a stick of the data, such as a
/// stem or the side of a bar, however much it looks like a line of the grid.
std::vector<bool> ReachBothEnds(const BlackMap& map, const PlotPlace& place,
                                const std::vector<GridLine>& lines);

/// Whether the line is the axis that runs through the origin.
bool IsAxis(const PlotPlace& place, const GridLine& line);

/// Which of `lines` (in order of rows) are the axis line through the origin or a side of the frame:
/// where the upright sides end (of an upright axis alone, the one side), or, should all be broken,
/// the outermost line through a reference point. A line between the reference points is neither.
std::vector<bool> FindFrame(const BlackMap& map, const PlotPlace& place,
                            const std::vector<GridLine>& lines);

}  // namespace graphize
