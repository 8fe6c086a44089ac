#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_path.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// Where a stroke leaves another one, the first samples of it may still have some of that: those
/// beside crowded ones are no longer seen. What its own ink crowds in a bend goes.
void HideBesideCrowds(const InkMap& map, const std::vector<PathPixel>& path, double width,
                      std::vector<StrokeSample>& samples);

}  // namespace graphize
