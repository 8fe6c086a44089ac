#pragma once

#include <span>
#include <string>
#include <vector>

#include "reading/stroke_samples.h"

namespace graphize {

/// Follows the stroke from `start` to one side (`step` 1 or -1) as FindHalfPath does, and at every
/// place where other ink of the same colour joins looks which way on bends least: a quadratic
/// through both arms (a stroke goes on as smoothly as it came). The arms that it does not take are
/// walled off in the map. Where two ways are as good, a doubt says so.
std::vector<PathPixel> FollowThroughCrossings(InkMap& map, PathPixel start, int step,
                                              const PathCosts& costs,
                                              std::span<const PathPixel> through,
                                              const StrokeKind& kind,
                                              const PictureOperation& operation,
                                              std::vector<std::string>& doubts);

}  // namespace graphize
