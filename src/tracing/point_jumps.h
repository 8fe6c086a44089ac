#pragma once

#include <span>
#include <vector>

#include "calibration/transform.h"
#include "tracing/ink_check.h"
#include "tracing/ink_sight.h"

namespace graphize {

/// Doubts what a trace captured behind a jump over paper: where it came to it over paper, too, the
/// rest of it is on whatever it met; else the points on both sides of the jump. What was judged
/// before keeps its verdict.
void CheckJumps(InkSight& sight, std::span<const PlotPosition> points,
                std::vector<InkVerdict>& verdicts);

}  // namespace graphize
