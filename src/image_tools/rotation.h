#pragma once

#include <cstdint>
#include <optional>

#include "base/affine_map.h"
#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Width and height of a picture in pixels, before it is known whether one can be so large.
struct PictureSize {
  std::int64_t Width = 0, Height = 0;
};

/// The upright rectangle that holds a picture of this size turned by `degrees`.
PictureSize RotatedSize(PictureSize size, int degrees);

/// Where the picture's pixels are when it is turned: about the middles of both.
AffineMap RotationMap(PictureSize size, int degrees);

/// The picture turned clockwise about its middle, on white. Steps of 90 degrees move pixels and
/// change none; other angles mix four neighbours (bilinear interpolation), of a picture without
/// colours (`areGrey`) in half the time. Nothing when the operation was stopped.
std::optional<Raster> Rotate(const Raster& picture, int degrees, bool areGrey,
                             PictureOperation& operation);

}  // namespace graphize
