#pragma once

#include "grid/grid_line.h"

namespace graphize {

/// From its runs the line's pieces, extent and pattern: dashes joined over the breaks of the
/// pattern. Lone bits between long breaks are not the line's.
void FindPieces(GridLine& line);

}  // namespace graphize
