#pragma once

#include <optional>
#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_fit.h"
#include "reading/stroke_path.h"

namespace graphize {

/// An end of a course that goes into a side of the frame.
struct FrameEnd {
  CurvePoint At;
  int AlongX = 0, AlongY = 0;  // the way along the side that it goes on
  double Cosine = 0;           // of the angle to that way
};
/// Absent where the course ends elsewhere, or meets the side at more than 60 degrees.
std::optional<FrameEnd> FrameEndOf(const InkMap& map, const std::vector<CurvePoint>& points,
                                   bool isLast, const StrokeKind& kind);

/// Where ink goes on behind what the frame hides.
std::optional<PathPixel> InkBehind(const InkMap& map, const FrameEnd& end);

}  // namespace graphize
