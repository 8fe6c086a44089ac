#pragma once

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Reduces a picture to a palette of at most 256 colours, without dithering; one that has no more
/// stays as it is. Exact black and exact white stay so, and no other pixel becomes black; the other
/// 254 colours are the means of a median cut (Heckbert 1982). False when the operation was stopped:
/// the picture is then half done.
bool ReduceToPalette(Raster& picture, PictureOperation& operation);

}  // namespace graphize
