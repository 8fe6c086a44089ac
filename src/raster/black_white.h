#pragma once

#include "base/raster.h"

namespace graphize {

/// Whether the picture holds exact black and exact white alone. Stops at the first other colour.
bool IsBlackAndWhite(const Raster& picture);

/// Makes each pixel black or white by its luminance, 0.299 red + 0.587 green + 0.114 blue (ITU-R
/// BT.601): below the middle of the range, 127.5, it becomes black. No dithering.
void ReduceToBlackAndWhite(Raster& picture);

}  // namespace graphize
