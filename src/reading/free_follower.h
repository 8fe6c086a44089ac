#pragma once

#include <vector>

#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/stroke_path.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// A stroke followed wherever it goes: neighbouring pixels, once each.
struct FreePath {
  std::vector<PathPixel> Path;
  bool IsClosed = false;  // its end is its start
  bool HasTip = false;    // it goes back in x round a corner
};

/// The stroke through `start` wherever it goes, back in x as well, and round: from place to place
/// by the arc, of up to 70 degrees of turning, that has most ink ahead and goes on most as the
/// stroke has come; round corners and over gaps where the ink ends. It ends where it would run
/// along itself; where that is at its start, it is closed.
FreePath FollowFreely(const InkMap& map, PathPixel start, const StrokeKind& kind,
                      const PictureOperation& operation);

}  // namespace graphize
