#pragma once

#include <functional>
#include <string_view>

#include "codecs/picbuf.h"

namespace graphize {

/// Makes the raster that is to hold the picture in the end, its pixels undefined. Called again, it
/// may give the same memory: the former raster is gone by then.
using MakeRaster = std::function<Raster(int width, int height)>;
inline Raster RasterOnHeap(int width, int height) {
  return {width, height};
}

/// Before the library is used; only the first call costs anything.
void StartLibrary();

/// The first picture of a file that the probe admits. Only its last raster is `make`'s; a picture
/// that is small, or lies on its side, may be no one's. Nothing when `operation` was stopped;
/// RunTimeError with the reason alone. File size and checksum are left to the caller.
std::optional<LoadedPicture> DecodeFile(const std::string& name, std::string_view file,
                                        const MakeRaster& make, PictureOperation& operation,
                                        DecodeBy by);

/// What the module graphize_picbuf.so offers under the name `GraphizePicbuf`.
struct PicbufModule {
  decltype(&StartLibrary) Start;
  decltype(&DecodeFile) Decode;
  decltype(&SavePicture) Save;
  decltype(&EncodePicture) Encode;
};

}  // namespace graphize
