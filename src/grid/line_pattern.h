#pragma once

#include "grid/grid_line.h"

namespace graphize {

/// From its runs the line's pieces, extent and dash pattern (period, duty and how regular it is):
/// dashes are joined over the breaks of the pattern, a morphological closing by a length that the
/// histogram of the breaks gives. Lone bits between long breaks are not the line's.
void FindPieces(GridLine& line);

}  // namespace graphize
