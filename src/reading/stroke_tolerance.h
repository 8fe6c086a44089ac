#pragma once

#include <vector>

#include "reading/stroke_samples.h"

namespace graphize {

/// What residuals the raster makes.
struct Tolerance {
  double Rms = 0, Largest = 0;  // pixels across the stroke
  bool IsData = false;          // it turns back again and again: nothing to smooth
};
Tolerance ToleranceOf(const std::vector<StrokeSample>& samples, const StrokeKind& kind);

}  // namespace graphize
