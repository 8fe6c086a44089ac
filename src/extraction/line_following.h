#pragma once

#include "extraction/black_map.h"
#include "extraction/grid_line.h"
#include "extraction/level_map.h"
#include "extraction/line_paths.h"

namespace graphize {

/// The line along `path`, a path on the level map made of `map`: its course (it may bend slowly),
/// thickness, pattern and pieces. One without black in the columns `plot` of the level map has no
/// Pieces. `thickest` is the greatest thickness, in pixels, that a line can have.
GridLine FollowLine(const BlackMap& map, const LevelMap& level, const LinePath& path, Span plot,
                    int thickest);

}  // namespace graphize
