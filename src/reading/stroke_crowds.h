#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_path.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// What becomes of samples with more ink than the stroke's. Where it leaves another one, the first
/// samples behind may still have some of that: those beside crowded ones are no longer seen. What
/// only its own ink crowds, in a bend, is taken out.
void SettleCrowds(const InkMap& map, const std::vector<PathPixel>& path, double width,
                  std::vector<StrokeSample>& samples);

}  // namespace graphize
