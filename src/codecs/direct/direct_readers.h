#pragma once

#include <optional>
#include <string_view>

#include "codecs/decode_file.h"

namespace graphize {

// Each reads the usual kinds of one type straight into the raster, by the type's own library, and
// gives the pixels that the picture library would give. Nothing where a file is of another kind, is
// too large, or anything about it is odd (the picture library then has the say), or when
// `operation` was stopped.

std::optional<StoredPicture> ReadTiff(std::string_view file, const MakeRaster& make,
                                      PictureOperation& operation);
std::optional<StoredPicture> ReadPng(std::string_view file, const MakeRaster& make,
                                     PictureOperation& operation);
std::optional<StoredPicture> ReadJpeg(std::string_view file, const MakeRaster& make,
                                      PictureOperation& operation);
/// Of a BMP file or a bare DIB, as though its bottom row came first whatever its height says.
std::optional<StoredPicture> ReadBitmap(std::string_view file, const MakeRaster& make,
                                        PictureOperation& operation);

}  // namespace graphize
