#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/bitmap_header.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "codecs/strip_metadata.h"

namespace graphize {

/// Makes the raster that is to hold the picture in the end, its pixels undefined. Called again, it
/// may give the same memory: the former raster is gone by then.
using MakeRaster = std::function<Raster(int width, int height)>;
inline Raster RasterOnHeap(int width, int height) {
  return {width, height};
}

/// A picture file that the probe admits, without what makes no pixels.
struct PictureFile {
  ProbeResult Probe;
  StrippedPicture Stripped;
  std::optional<BitmapHeader> Bitmap;
  std::string_view Bytes;  // Stripped's where it has any
};

/// A picture as it is stored, not turned upright yet.
struct StoredPicture {
  Raster Picture;
  bool HasOpacity = false;  // in the fourth byte, which is 255 otherwise
};

/// Reads the pixels of `file`, whose bytes it may take away. What is wrong with a picture that it
/// gives all the same becomes `warning`. Nothing where it leaves the file to another reader, or
/// when `operation` was stopped. RunTimeError with the reason alone.
using ReadStored = std::optional<StoredPicture>(PictureFile& file, const MakeRaster& make,
                                                std::string& warning, PictureOperation& operation);

/// The warning about a picture of which something is missing.
extern const char* const kDamagedPicture;

/// The first picture of a file that the probe admits. Only its last raster is `make`'s; a picture
/// that is small, or lies on its side, may be no one's. Nothing where `read` gives nothing or
/// `operation` was stopped; RunTimeError with the reason alone. File size and checksum are left to
/// the caller.
std::optional<LoadedPicture> DecodeFile(const std::string& name, std::string_view file,
                                        const MakeRaster& make, PictureOperation& operation,
                                        const std::function<ReadStored>& read);

}  // namespace graphize
