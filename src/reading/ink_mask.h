#pragma once

#include <cstdint>
#include <optional>

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// The picture's pixels that are at least half of the ink of this colour (0xffRRGGBB), or of the
/// picture's own ink that is like it, black on white, with Raster::Faint for those that are less;
/// what another ink covers is white. The tolerance is MapOf's. Nothing where the colour is the
/// paper's, an empty raster when the operation was stopped.
std::optional<Raster> InkAlone(const Raster& picture, std::uint32_t colour, float tolerance,
                               PictureOperation& operation);

}  // namespace graphize
