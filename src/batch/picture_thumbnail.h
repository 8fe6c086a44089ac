#pragma once

#include <memory>
#include <vector>

#include "base/raster.h"
#include "capture/point_store.h"

namespace graphize {

/// The picture as small as it is shown in the list of the window FRM_OtherPictures, with the points
/// in red. Nothing of an empty picture.
std::shared_ptr<const Raster> ThumbnailOf(const Raster& picture, const std::vector<Place>& points);

}  // namespace graphize
