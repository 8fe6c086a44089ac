#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/raster.h"

namespace graphize::test {

/// The bytes that hexadecimal digits stand for; blanks are skipped.
std::string FromHex(std::string_view digits);
/// `value` as `count` bytes, lowest first.
std::string LowFirst(std::uint32_t value, int count);

/// The kinds of bitmaps: size of the info header, bits per pixel, compression (0, or 3 with colour
/// masks), order of rows.
struct BitmapKind {
  std::uint32_t InfoSize = 40;
  int Bits = 24;
  std::uint32_t Compression = 0;
  bool TopDown = false;
};
/// A bare DIB of a picture; up to 8 bits the picture is black and white.
std::string MakeDib(const BitmapKind& kind, const Raster& picture);
/// The same with the header that makes it a BMP file.
std::string MakeBmp(const BitmapKind& kind, const Raster& picture);

/// An uncompressed TGA of 24 or 32 bits, the latter with `opacity` as its fourth byte. Of the
/// descriptor's bits 0x10 stores rows from right to left, 0x20 the top row first.
std::string MakeTga(const Raster& picture, int bits, int descriptor, int opacity = 255);

/// An uncompressed TIFF. `samples` are the pixels' bytes, `photometric` is 2 for RGB, 3 for a
/// palette of 256 colours, 5 for CMYK.
std::string MakeTif(int width, int height, int photometric, int orientation,
                    const std::string& samples, const std::string& palette = {});
/// A BigTIFF: four greys, 0x00, 0x40, 0x80 and white.
std::string BigTif();
/// EXIF data that say how a picture lies.
std::string Exif(int orientation);
/// A chunk of a PNG, and a PNG as it is with one behind its head.
std::string PngChunk(const std::string& name, const std::string& data);
std::string WithChunk(const std::string& png, const std::string& name, const std::string& data);
/// A PNG with each chunk's checksum as it must be, so that what is in them is looked at.
std::string WithChecksums(const std::string& png);
/// A WebP's parts: a chunk; a file of chunks; and an animation on a screen of 20 x 10 whose first
/// frame is WebP() at column 2, row 2.
std::string WebPChunk(const std::string& name, std::string data);
std::string WebPOf(const std::string& chunks);
std::string AnimatedWebP();
/// Two pixels, black and red, at column 1, row 0 of a screen of 4 x 1, and a frame more.
std::string GifOnScreen();

/// Small files made elsewhere: three pixels clear black, half clear red, opaque 0x010203; a palette
/// with a clear black, a grey and white; grey of 16 bits; eight pixels red and eight white in 8
/// rows as WebP and as a CMYK JPEG.
std::string PngWithOpacity();
std::string PngWithClearColour();
std::string PngOf16Bits();
std::string WebP();
std::string CmykJpg();

/// Pixels for comparison, and a picture from them.
std::vector<std::uint32_t> PixelsOf(const Raster& picture);
Raster MakeRaster(int width, int height, const std::vector<std::uint32_t>& pixels);

}  // namespace graphize::test
