#pragma once

#include <optional>

#include "base/raster.h"
#include "raster/colour_table.h"
#include "raster/picture_operation.h"

namespace graphize {

// Sizes are at least 1 x 1. Nothing when the operation was stopped.

/// A smaller picture's pixels are the means of the areas that they take; a larger one's lie between
/// the picture's (bilinear interpolation). With a table each is the nearest colour in it, the
/// darker of two: what has few colours keeps them, and black stays exactly black.
std::optional<Raster> Resize(const Raster& picture, int width, int height,
                             const ColourTable* colours, PictureOperation& operation);

/// Repeats or leaves out pixels: no new colour comes up.
std::optional<Raster> Stretch(const Raster& picture, int width, int height,
                              PictureOperation& operation);

/// The rectangle whose first pixel is (left, top); within the picture.
std::optional<Raster> CutOut(const Raster& picture, int left, int top, int width, int height,
                             PictureOperation& operation);

}  // namespace graphize
