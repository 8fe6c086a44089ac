#pragma once

#include <vector>

#include "reading/ink_map.h"
#include "reading/stroke_fit.h"

namespace graphize {

/// A turn of a course beyond which its ink goes on: a peak so narrow that its sides touch, or what
/// else hangs on to the curve there.
struct InkBeyondTurn {
  std::size_t First = 0, Last = 0;  // of the course's points, where it turns
  double X = 0, Y = 0;              // where the ink ends
  double Length = 0;                // pixels from the edge that the course tells
  double OutX = 0, OutY = -1;       // the direction out of the turn, of length 1
};
/// Those of at least a pixel.
std::vector<InkBeyondTurn> FindInkBeyondTurns(const InkMap& map,
                                              const std::vector<CurvePoint>& points,
                                              const StrokeKind& kind);

}  // namespace graphize
