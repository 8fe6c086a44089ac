#pragma once

#include "base/raster.h"

namespace graphize {

/// Lays a picture whose fourth byte is opacity (0 clear, 255 opaque) on white paper; the fourth
/// byte is 255 afterwards. A picture that is clear everywhere is taken for opaque: programs that
/// know no opacity leave 0 there.
void Flatten(Raster& picture);

}  // namespace graphize
