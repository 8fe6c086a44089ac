#pragma once

#include <memory>
#include <vector>

#include "base/raster.h"
#include "capture/point_store.h"
#include "raster/picture_operation.h"
#include "workspace/other_pictures_form.h"

namespace graphize {

/// The picture as small as it is shown in the list of the window FRM_OtherPictures, with the points
/// in red. Nothing of an empty picture, or when `goOn` stopped it.
std::shared_ptr<const Raster> ThumbnailOf(const Raster& picture, const std::vector<Place>& points,
                                          const PictureProgress& goOn = {});

/// The same from the picture's project or, where there is none, from its file. Nothing when either
/// cannot be read, or `goOn` stopped it.
std::shared_ptr<const Raster> ReadThumbnail(const OtherPicture& picture,
                                            const PictureProgress& goOn = {});

/// Where the points were captured on the picture.
std::vector<Place> CapturedPlaces(const PointStore& store);

}  // namespace graphize
