#pragma once

#include "grid/black_map.h"
#include "grid/grid_line.h"
#include "grid/line_paths.h"
#include "grid/sheared_map.h"

namespace graphize {

/// The line along `path`, a path on the sheared map made of `map`: its course, thickness, pattern
/// and pieces. The course is fitted by Theil-Sen lines, one through all of the path or, where a
/// scan is bent, one through the neighbourhood of every strip, and refined on the runs it meets.
/// One without black in the columns `plot` of the sheared map has no Pieces. `thickest` is the
/// greatest thickness, in pixels, that a line can have.
GridLine FollowLine(const BlackMap& map, const ShearedMap& level, const LinePath& path, Span plot,
                    int thickest);

}  // namespace graphize
