#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_fit.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// Leads a course up and down peaks, and troughs, so narrow that their two sides are drawn into
/// each other: by the edges of the joint ink, half a stroke within which lies each side's middle.
/// What was climbed becomes part of the points, a point for each row of either side with the tip
/// between them, and of the samples, at their end. Other turns beyond which ink goes on stay as
/// they are: what lies across the rows; where the ink is thinner than the stroke, or keeps its
/// width until there is a crest (something stands on it); where it goes on between the sides (a
/// bar), grows wider (a cap, a symbol, a letter) or does not end on paper.
void ClimbNarrowPeaks(const InkMap& map, const StrokeKind& kind, std::vector<CurvePoint>& points,
                      std::vector<StrokeSample>& samples);

}  // namespace graphize
