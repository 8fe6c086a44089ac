#pragma once

#include <optional>

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Filters that make each pixel from it and its neighbours, every colour component for itself.
/// Beyond its border the picture goes on as its outermost pixels are. Amounts are 0 to 10. The
/// results are new pictures; nothing when the operation was stopped.
///
/// A filter is for pictures of at least as many pixels each way as its neighbourhood has.
inline constexpr int kBlurNeighbourhood = 5;
inline constexpr int kSmallNeighbourhood = 3;

/// The mean of 5 x 5 pixels by the binomial weights 1 4 6 4 1, a Gauss curve of sigma 1.
std::optional<Raster> Blur(const Raster& picture, PictureOperation& operation);
/// Between the picture (0) and the mean of 3 x 3 pixels by the weights 1 2 1 (10).
std::optional<Raster> Soften(const Raster& picture, int amount, PictureOperation& operation);
/// The difference to that mean is added, up to twice (10): an unsharp mask. 0 changes nothing.
std::optional<Raster> Sharpen(const Raster& picture, int amount, PictureOperation& operation);
/// Sobel's gradient, |x| + |y|, bright on black: at 5 an upright or level step shows its own
/// height, at 0 a sixth of it, at 10 eleven sixths.
std::optional<Raster> DetectEdges(const Raster& picture, int amount, PictureOperation& operation);

}  // namespace graphize
