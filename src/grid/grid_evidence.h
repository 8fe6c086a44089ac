#pragma once

#include "grid/black_map.h"
#include "grid/grid_line.h"

namespace graphize {

/// Whether a followed line is one of the plot's grid or frame, and not a flat piece of a curve, a
/// row of symbols or a line of text: it spans the plot (its own `Plot`, or most of it when
/// something lies over it), its breaks are a pattern, it keeps to the calibrated angle, and where
/// it ends no stroke goes on.
bool IsGridLine(const BlackMap& map, const GridLine& line);

/// The same for a line that somebody pointed at: a good part of the plot is enough.
bool IsPlausibleLine(const GridLine& line);

/// How far an upright stroke goes on from (column, row), which need not be black itself, upward
/// (step -1) or downward (step 1), at most `limit` rows. It leans as the lines of the other
/// direction do and may be broken for up to three rows.
int UprightReach(const BlackMap& map, int column, int row, int step, int limit);

}  // namespace graphize
