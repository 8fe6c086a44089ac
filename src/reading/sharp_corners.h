#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_fit.h"

namespace graphize {

/// Where two straight arms of a stroke meet, a cut has ink of both, and its middle lies inside of
/// the corner by up to half a stroke. Where the outer edge of the ink shows that they meet sharply,
/// or on an arc of less than half a stroke, the points between are put on the arms and that, one
/// per column or row, and one on the corner.
void SharpenCorners(const InkMap& map, const StrokeKind& kind, std::vector<CurvePoint>& points);

}  // namespace graphize
