#pragma once

#include "base/raster.h"
#include "raster/black_white.h"

namespace graphize {

/// Where the reduction to black and white puts the limit between ink and paper.
struct InkThreshold {
  enum class Kind {
    Fixed,  // at `Level`
    Auto,   // at one luminance for the whole picture, halfway between its paper and its ink
    Local   // halfway between paper and ink as they are around each pixel, in any colour
  };
  Kind Is = Kind::Fixed;
  float Level = kMiddleOfRange;  // luminance, 0 to 255: what is darker is ink

  bool operator==(const InkThreshold&) const = default;
};

/// Makes ink black and all else white, with Raster::Faint as ReduceToBlackAndWhite does, which is
/// what a fixed threshold comes to. `Auto` and `Local` make black what is drawn, be it darker than
/// its ground or lighter. Rows are worked on in parallel. False when the operation was stopped: the
/// picture is then half done.
bool Reduce(Raster& picture, const InkThreshold& threshold, PictureOperation& operation);
inline void Reduce(Raster& picture, const InkThreshold& threshold) {
  PictureOperation unwatched;
  Reduce(picture, threshold, unwatched);
}

}  // namespace graphize
