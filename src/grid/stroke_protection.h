#pragma once

#include <vector>

#include "grid/black_map.h"
#include "grid/grid_line.h"

namespace graphize {

/// The black pixels of the map that belong to the line and to nothing else. What a stroke needs
/// that crosses the line, touches it from one side or runs within it for a while is not among
/// them: where it went inside the line is inferred from the ends that it shows on either side.
std::vector<MapPixel> PixelsOfLineOnly(const BlackMap& map, const GridLine& line);

}  // namespace graphize
