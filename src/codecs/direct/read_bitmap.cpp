#include <algorithm>
#include <array>
#include <cstdlib>

#include "codecs/bitmap_header.h"
#include "codecs/byte_order.h"
#include "codecs/direct/direct_readers.h"
#include "codecs/samples.h"
#include "raster/parallel_rows.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

constexpr std::size_t kOldInfoSize = 12;  // its fields are shorter, its colours take 3 bytes

/// Whether the fields that a reader could do without are as nearly all programs write them.
bool IsUsual(const BitmapHeader& bitmap, std::string_view file, std::size_t pixelBytes) {
  const std::string_view info = file.substr(bitmap.InfoOffset);
  const std::size_t table = bitmap.Bits > 8                   ? 0
                            : bitmap.InfoSize == kOldInfoSize ? std::size_t{3} << bitmap.Bits
                                                              : std::size_t{4} << bitmap.Bits;
  if (bitmap.PixelOffset != bitmap.InfoOffset + bitmap.InfoSize + table) return false;
  if (bitmap.InfoOffset > 0 && DoubleWord(file, 2) != 0 && DoubleWord(file, 2) != file.size())
    return false;
  if (bitmap.InfoSize == kOldInfoSize) return true;
  const std::size_t size = DoubleWord(info, 20), colours = DoubleWord(info, 32);
  return (size == 0 || size == pixelBytes) &&
         (colours == 0 || (bitmap.Bits <= 8 && colours == std::size_t{1} << bitmap.Bits));
}

std::array<std::uint32_t, 256> ColoursOf(const BitmapHeader& bitmap, std::string_view file) {
  std::array<std::uint32_t, 256> colours{};
  const std::size_t size = bitmap.InfoSize == kOldInfoSize ? 3 : 4;
  for (std::size_t i = 0; bitmap.Bits <= 8 && i < std::size_t{1} << bitmap.Bits; ++i) {
    const std::size_t at = bitmap.InfoOffset + bitmap.InfoSize + i * size;
    colours[i] = PixelOf(Byte(file, at + 2), Byte(file, at + 1), Byte(file, at));
  }
  return colours;
}

void ToPixels(const std::uint8_t* bytes, int bits, const std::array<std::uint32_t, 256>& colours,
              int width, std::uint32_t* row) {
  const int perByte = 8 / std::min(bits, 8);
  switch (bits) {
    case 24:
      for (int x = 0; x < width; ++x, bytes += 3) row[x] = PixelOf(bytes[2], bytes[1], bytes[0]);
      break;
    case 32:
      for (int x = 0; x < width; ++x, bytes += 4) row[x] = PixelOf(bytes[2], bytes[1], bytes[0]);
      break;
    default:
      for (int x = 0; x < width; ++x) {
        const int shift = bits * (perByte - 1 - x % perByte);
        row[x] = colours[static_cast<std::size_t>(bytes[x / perByte] >> shift & ((1 << bits) - 1))];
      }
  }
}

}  // namespace

std::optional<StoredPicture> ReadBitmap(std::string_view file, const MakeRaster& make,
                                        PictureOperation& operation) {
  constexpr std::uint32_t kNoCompression = 0;
  const auto bitmap = ReadBitmapHeader(file);
  if (!bitmap || bitmap->Compression != kNoCompression || bitmap->HasOpacity ||
      bitmap->Bits == 16 || !DecodeRefusal(bitmap->Width, std::abs(bitmap->Height)).empty())
    return {};
  const int width = static_cast<int>(bitmap->Width),
            height = static_cast<int>(std::abs(bitmap->Height));
  const std::size_t rowBytes =
      (static_cast<std::size_t>(width) * static_cast<std::size_t>(bitmap->Bits) + 31) / 32 * 4;
  const std::size_t pixelBytes = rowBytes * static_cast<std::size_t>(height);
  if (file.size() < bitmap->PixelOffset + pixelBytes || !IsUsual(*bitmap, file, pixelBytes))
    return {};
  const auto colours = ColoursOf(*bitmap, file);
  StoredPicture read{.Picture = make(width, height)};
  const auto* pixels = reinterpret_cast<const std::uint8_t*>(file.data()) + bitmap->PixelOffset;
  const bool done = ParallelRows(width, height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y)
      ToPixels(pixels + static_cast<std::size_t>(height - 1 - y) * rowBytes, bitmap->Bits, colours,
               width, read.Picture.Row(y));
  });
  return done ? std::optional(std::move(read)) : std::nullopt;
}

}  // namespace graphize
