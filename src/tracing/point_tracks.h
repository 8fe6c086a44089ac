#pragma once

#include <span>
#include <vector>

#include "calibration/transform.h"
#include "tracing/ink_check.h"
#include "tracing/ink_sight.h"

namespace graphize {

/// Judges points that follow each other along a stroke, as a trace gives them, by that stroke:
/// where they run between two, and where they leave it though it goes straight on.
void CheckTracks(InkSight& sight, std::span<const PlotPosition> points,
                 std::vector<InkVerdict>& verdicts);

}  // namespace graphize
