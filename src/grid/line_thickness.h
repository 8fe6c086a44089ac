#pragma once

#include "grid/grid_line.h"

namespace graphize {

/// What is black within `reach` of the line's middle, in every column. `thickest` is the greatest
/// thickness that a line can have.
void ReadRuns(const BitMap& map, double reach, int thickest, GridLine& line);

/// From its runs the line's usual thickness, the range around it that is no exception, and how its
/// columns look.
void MeasureThickness(int thickest, GridLine& line);

/// How the line's columns look, from its runs and thickness.
void MarkLooks(GridLine& line);

}  // namespace graphize
