#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace graphize {

inline constexpr std::size_t kBmpFileHeaderSize = 14;

/// What the head of a bitmap says, be it a BMP file or a bare DIB, which starts with the info
/// header at once. Sizes are in bytes, offsets count from the start of the file.
struct BitmapHeader {
  std::size_t InfoOffset = 0;  // 14 in a BMP file, 0 in a bare DIB
  std::size_t InfoSize = 0;    // 12 in the oldest kind, 40 to 124 in the others
  std::size_t PixelOffset = 0;
  std::int64_t Width = 0;
  std::int64_t Height = 0;  // negative: top row first
  int Bits = 0;             // per pixel
  std::uint32_t Compression = 0;
  bool HasOpacity = false;  // the header gives some bits of a pixel to it
  /// The bits of red, green, blue and opacity in a pixel of 16 or 32 bits; 0 where it does not say.
  std::array<std::uint32_t, 4> Masks{};
};

/// Nothing when `head` (the file's first bytes, 72 are enough) does not start a bitmap.
std::optional<BitmapHeader> ReadBitmapHeader(std::string_view head);

/// Whether a pixel's components are not a byte each.
bool IsPacked(const BitmapHeader& bitmap);
/// The packed bitmap `file` as a BMP file of 8 bits per component, rows in the same order. Rows
/// that the file lacks are missing.
std::string UnpackBitmap(const BitmapHeader& bitmap, std::string_view file);

/// Makes what every decoder reads of the bitmap `file`: a BMP file, its bottom row first. The
/// picture is upside down then if its height was negative.
void MakePlainBmp(const BitmapHeader& bitmap, std::string& file);

/// How many rows have about `bandPixels` pixels when the bitmap `file` can be cut into bands and is
/// larger than one, else 0.
std::int64_t BitmapBandRows(const BitmapHeader& bitmap, std::string_view file,
                            std::int64_t bandPixels);

/// `count` rows from row `first` on, in the file's order, as a plain BMP of its own. Only where
/// BitmapBandRows says that it can be cut.
std::string BitmapBand(const BitmapHeader& bitmap, std::string_view file, std::int64_t first,
                       std::int64_t count);

}  // namespace graphize
