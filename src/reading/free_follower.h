#pragma once

#include <vector>

#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/stroke_path.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// The stroke through `start` wherever it goes, back in x as well, and round: from place to place
/// by the arc, of up to 70 degrees of turning, that has most ink ahead and goes on most as the
/// stroke has come; round corners and over gaps where the ink ends. It ends where it would run
/// along itself; where that is at its start, it is closed. Neighbouring pixels, once each.
std::vector<PathPixel> FollowFreely(const InkMap& map, PathPixel start, const StrokeKind& kind,
                                    const PictureOperation& operation);

}  // namespace graphize
