#pragma once

#include "base/raster.h"

namespace graphize {

/// The picture turned upright. `orientation` is how its rows and columns lie, 1 to 8 as cameras and
/// scanners write it (TIFF 6.0, tag 274): 1 upright, 2 mirrored, 3 upside down, 6 and 8 on its
/// side...; any other value counts as 1.
Raster ApplyOrientation(Raster picture, int orientation);

/// Makes the rows `first` to `end` - 1 of the upright picture, which has its size already.
void OrientRows(const Raster& picture, int orientation, Raster& upright, int first, int end);

}  // namespace graphize
