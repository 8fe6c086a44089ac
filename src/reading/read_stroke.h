#pragma once

#include <string>
#include <vector>

#include "reading/ink_blend.h"
#include "reading/ink_pieces.h"
#include "reading/read_curve.h"

namespace graphize {

inline constexpr int kClickReach = 7;  // pixels from a click to the curve

/// Reads the stroke of a map through `start`, of ReadCurve's ink; the map comes back as it was.
/// Without points where there is too little of it for a curve.
CurveReading ReadStroke(InkMap& map, const InkBlends& blends, PathPixel start,
                        const ReadingRequest& request, const PictureOperation& operation);

/// Puts the walls up for good.
void DrawWalls(InkMap& map, const std::vector<ReadingWall>& walls);

/// The pixels that a course goes over, of which there are some.
InkPiece BoxOf(const std::vector<CurvePoint>& points);

/// "12,34", for messages.
std::string PlaceText(double x, double y);

}  // namespace graphize
