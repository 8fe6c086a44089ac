#pragma once

#include "grid/grid_line.h"

namespace graphize {

/// Reads the vertical run of black at the line's middle, or nearest to it within `reach` rows, in
/// every column. `thickest` is the greatest thickness, in pixels, that a line can have.
void ReadRuns(const BitMap& map, double reach, int thickest, GridLine& line);

/// From the histogram of its run lengths the line's usual thickness (the mode), the range around it
/// that is no exception, and the kinds of its columns.
void MeasureThickness(int thickest, GridLine& line);

/// The kinds of the line's columns, from its runs and thickness.
void ClassifyColumns(GridLine& line);

}  // namespace graphize
