#pragma once

#include <functional>
#include <vector>

#include "calibration/axis_calibration.h"
#include "grid/black_map.h"
#include "grid/grid_line.h"
#include "grid/keep_going.h"

namespace graphize {

/// How near a click must be to a line to mean this line, in pixels.
int ReachOfClick(const BlackMap& map);

/// What lines are looked for on.
struct SearchMaps {
  const BlackMap* Black = nullptr;
  const BlackMap* WithFaint = nullptr;  // null where nothing is known of faint pixels
};

/// All lines of the grid, without the axis line and the frame unless
/// `click` hits one of them. `progress` is told the part done, 0..1. None when stopped.
std::vector<GridLine> FindGridLines(const SearchMaps& maps, const AxisCalibration& calibration,
                                    GridDirection direction, MapPixel click,
                                    const KeepGoing& keepGoing,
                                    const std::function<void(double)>& progress);

/// The one line nearest to the click, however far; none when there is none at all. A line that
/// would not pass as one of the grid by itself must have been hit.
std::vector<GridLine> FindNearestLine(const SearchMaps& maps, const AxisCalibration& calibration,
                                      GridDirection direction, MapPixel click,
                                      const KeepGoing& keepGoing);

}  // namespace graphize
