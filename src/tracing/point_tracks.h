#pragma once

#include <optional>
#include <span>
#include <vector>

#include "calibration/transform.h"
#include "tracing/ink_check.h"
#include "tracing/ink_sight.h"
#include "tracing/plot_box.h"

namespace graphize {

/// Judges points that follow each other along a stroke, as a trace gives them, by that stroke:
/// where they run between two, and where they leave it though it goes straight on. The line of
/// the frame, which there is where the axes are known, is no way on.
void CheckTracks(InkSight& sight, std::span<const PlotPosition> points,
                 const std::optional<PlotFrame>& frame, std::vector<InkVerdict>& verdicts);

}  // namespace graphize
