#pragma once

#include "grid/black_map.h"
#include "grid/grid_line.h"
#include "grid/line_paths.h"
#include "grid/sheared_map.h"

namespace graphize {

/// The line along `path`, a path on the sheared map made of `map`: its course (it may bend slowly),
/// thickness, pattern and pieces. One without black in the columns `plot` of the sheared map has no
/// Pieces. `thickest` is the greatest thickness, in pixels, that a line can have.
GridLine FollowLine(const BlackMap& map, const ShearedMap& level, const LinePath& path, Span plot,
                    int thickest);

}  // namespace graphize
