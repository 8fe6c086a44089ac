#pragma once

#include <vector>

#include "reading/stroke_samples.h"

namespace graphize {

/// Drops what lies beyond the curve at both ends: round caps reach half a width beyond it. Where
/// cuts near an end would not meet the whole stroke, the course goes on as it comes.
void FinishEnds(const InkMap& map, std::vector<StrokeSample>& samples, const StrokeKind& kind);

}  // namespace graphize
