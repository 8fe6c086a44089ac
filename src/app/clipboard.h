#pragma once

#include <filesystem>
#include <vector>

#include "base/raster.h"
#include "raster/picture_operation.h"

class QMimeData;

namespace graphize {

/// The files of a drop or of the clipboard, in their order; what lies elsewhere as its address.
std::vector<std::filesystem::path> FilesOf(const QMimeData& data);

bool ClipboardHasPicture();
/// The files that were copied; none when something else was.
std::vector<std::filesystem::path> ClipboardFiles();
/// The picture in the clipboard; empty when there is none. Throws RunTimeError when it is damaged,
/// or `progress` has stopped it.
Raster ClipboardRaster(const PictureProgress& progress);

}  // namespace graphize
