#include "codecs/bitmap_header.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "codecs/byte_order.h"

namespace graphize {

namespace {

constexpr std::size_t kCoreInfoSize = 12;  // its fields are 16 bits wide
constexpr std::size_t kPlainInfoSize = 40;
constexpr std::uint32_t kNoCompression = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaBitFields = 6;

/// Masks and colours between the info header and the pixels of a DIB.
std::size_t TableBytes(const BitmapHeader& bitmap, std::uint32_t coloursUsed) {
  std::size_t masks = 0;
  if (bitmap.InfoSize == kPlainInfoSize) {
    if (bitmap.Compression == kBitFields) masks = 12;
    if (bitmap.Compression == kAlphaBitFields) masks = 16;
  }
  std::size_t colours = coloursUsed;
  if (bitmap.Bits <= 8) {
    const std::size_t all = std::size_t{1} << bitmap.Bits;
    colours = coloursUsed == 0 ? all : std::min<std::size_t>(coloursUsed, all);
  }
  return masks + colours * (bitmap.InfoSize == kCoreInfoSize ? 3 : 4);
}

/// Bytes of one row in the file; 0 when the pixels are compressed.
std::size_t RowBytes(const BitmapHeader& bitmap) {
  if (bitmap.Compression != kNoCompression && bitmap.Compression != kBitFields &&
      bitmap.Compression != kAlphaBitFields)
    return 0;
  return (static_cast<std::size_t>(bitmap.Width) * static_cast<std::size_t>(bitmap.Bits) + 31) /
         32 * 4;
}

std::string BmpFileHeader(const BitmapHeader& bitmap) {
  const auto pixels =
      static_cast<std::uint32_t>(kBmpFileHeaderSize + bitmap.PixelOffset - bitmap.InfoOffset);
  // The size field may be 0; readers that care take the file's own size.
  return "BM" + LowFirst(0, 4) + LowFirst(0, 4) + LowFirst(pixels, 4);
}

/// The value of 8 bits for each value of a mask's highest 8: fewer bits are repeated, so that all
/// of them set give 255.
std::array<char, 256> LevelsOf(int bits) {
  std::array<char, 256> levels{};
  for (std::uint32_t value = 0; value < levels.size(); ++value) {
    std::uint32_t level = bits == 0 ? 0 : value << std::max(8 - bits, 0);
    for (int filled = std::max(bits, 1); filled < 8; filled *= 2) level |= level >> filled;
    levels[value] = static_cast<char>(level);
  }
  return levels;
}

void StoreHeight(const BitmapHeader& bitmap, std::string& bytes, std::size_t infoOffset,
                 std::int64_t height) {
  const std::string number = LowFirst(static_cast<std::uint32_t>(height), 4);
  if (bitmap.InfoSize == kCoreInfoSize)
    bytes.replace(infoOffset + 6, 2, number, 0, 2);
  else
    bytes.replace(infoOffset + 8, 4, number);
}

}  // namespace

std::optional<BitmapHeader> ReadBitmapHeader(std::string_view head) {
  BitmapHeader bitmap;
  const bool isFile = head.starts_with("BM");
  bitmap.InfoOffset = isFile ? kBmpFileHeaderSize : 0;
  if (head.size() < bitmap.InfoOffset + kCoreInfoSize) return {};
  const std::string_view info = head.substr(bitmap.InfoOffset);
  bitmap.InfoSize = DoubleWord(info, 0);
  constexpr std::size_t kInfoSizes[] = {kCoreInfoSize, kPlainInfoSize, 52, 56, 108, 124};
  if (std::ranges::find(kInfoSizes, bitmap.InfoSize) == std::end(kInfoSizes)) return {};
  if (info.size() < std::min(bitmap.InfoSize, kPlainInfoSize)) return {};

  std::uint32_t planes = 0, coloursUsed = 0;
  if (bitmap.InfoSize == kCoreInfoSize) {
    bitmap.Width = Word(info, 4);
    bitmap.Height = Word(info, 6);
    planes = Word(info, 8);
    bitmap.Bits = static_cast<int>(Word(info, 10));
  } else {
    bitmap.Width = static_cast<std::int32_t>(DoubleWord(info, 4));
    bitmap.Height = static_cast<std::int32_t>(DoubleWord(info, 8));
    planes = Word(info, 12);
    bitmap.Bits = static_cast<int>(Word(info, 14));
  }
  if (bitmap.InfoSize >= kPlainInfoSize) {
    bitmap.Compression = DoubleWord(info, 16);
    coloursUsed = DoubleWord(info, 32);
  }
  constexpr std::size_t kOpacityMask = 52;
  if (bitmap.InfoSize > kOpacityMask && info.size() >= kOpacityMask + 4)
    bitmap.HasOpacity = DoubleWord(info, kOpacityMask) != 0 && bitmap.Bits != 24;
  if (bitmap.Compression == kBitFields || bitmap.Compression == kAlphaBitFields) {
    for (std::size_t i = 0; i < 3 && info.size() >= kPlainInfoSize + 12; ++i)
      bitmap.Masks[i] = DoubleWord(info, kPlainInfoSize + 4 * i);
  } else if (bitmap.Bits == 16) {
    bitmap.Masks = {0x7c00, 0x03e0, 0x001f};
  }
  if (bitmap.HasOpacity) bitmap.Masks[3] = DoubleWord(info, kOpacityMask);
  constexpr int kBits[] = {1, 4, 8, 16, 24, 32};
  if (planes != 1 || std::ranges::find(kBits, bitmap.Bits) == std::end(kBits)) return {};
  bitmap.PixelOffset =
      isFile ? DoubleWord(head, 10) : bitmap.InfoSize + TableBytes(bitmap, coloursUsed);
  return bitmap;
}

bool IsPacked(const BitmapHeader& bitmap) {
  const auto isByte = [](std::uint32_t mask) {
    return mask == 0xffu || mask == 0xff00u || mask == 0xff0000u || mask == 0xff000000u;
  };
  return bitmap.Masks[0] != 0 && (bitmap.Bits == 16 || bitmap.Bits == 32) &&
         RowBytes(bitmap) != 0 &&
         (bitmap.Bits == 16 ||
          !std::all_of(bitmap.Masks.begin(), bitmap.Masks.begin() + 3, isByte));
}

std::string UnpackBitmap(const BitmapHeader& bitmap, std::string_view file) {
  constexpr std::size_t kOpacityInfoSize = 108;
  struct Component {
    std::uint32_t Mask;
    int Shift;  // to its highest 8 bits
    std::array<char, 256> Levels;
  };
  std::vector<Component> components;  // blue, green, red as they are stored, opacity
  for (std::size_t i : {2, 1, 0, 3}) {
    const std::uint32_t mask = bitmap.Masks[i];
    if (i == 3 && !bitmap.HasOpacity) continue;
    const int low = mask == 0 ? 0 : std::countr_zero(mask), bits = std::bit_width(mask) - low;
    components.push_back({mask, low + std::max(bits - 8, 0), LevelsOf(bits)});
  }

  BitmapHeader plain = bitmap;
  plain.InfoOffset = kBmpFileHeaderSize;
  plain.InfoSize = bitmap.HasOpacity ? kOpacityInfoSize : kPlainInfoSize;
  plain.PixelOffset = kBmpFileHeaderSize + plain.InfoSize;
  plain.Bits = bitmap.HasOpacity ? 32 : 24;
  plain.Compression = bitmap.HasOpacity ? kBitFields : kNoCompression;
  std::string bytes = BmpFileHeader(plain) + LowFirst(plain.InfoSize, 4) +
                      LowFirst(static_cast<std::uint32_t>(plain.Width), 4) +
                      LowFirst(static_cast<std::uint32_t>(plain.Height), 4) + LowFirst(1, 2) +
                      LowFirst(static_cast<std::uint32_t>(plain.Bits), 2) +
                      LowFirst(plain.Compression, 4) + std::string(20, '\0');
  if (bitmap.HasOpacity)
    for (std::uint32_t mask : {0xff0000u, 0xff00u, 0xffu, 0xff000000u}) bytes += LowFirst(mask, 4);
  bytes.resize(plain.PixelOffset, '\0');

  const std::size_t rowBytes = RowBytes(bitmap), pixelBytes = bitmap.Bits == 16 ? 2 : 4;
  const std::size_t start = std::min(bitmap.PixelOffset, file.size());
  const std::size_t rows =
      std::min((file.size() - start) / rowBytes, static_cast<std::size_t>(std::abs(bitmap.Height)));
  const std::size_t plainRowBytes = RowBytes(plain);
  bytes.resize(plain.PixelOffset + rows * plainRowBytes, '\0');
  for (std::size_t y = 0; y < rows; ++y) {
    char* target = bytes.data() + plain.PixelOffset + y * plainRowBytes;
    for (std::int64_t x = 0; x < bitmap.Width; ++x) {
      const std::size_t at = start + y * rowBytes + static_cast<std::size_t>(x) * pixelBytes;
      const std::uint32_t pixel = pixelBytes == 2 ? Word(file, at) : DoubleWord(file, at);
      for (const Component& component : components)
        *target++ = component.Levels[(pixel & component.Mask) >> component.Shift & 0xff];
    }
  }
  return bytes;
}

void MakePlainBmp(const BitmapHeader& bitmap, std::string& file) {
  if (bitmap.Height < 0) StoreHeight(bitmap, file, bitmap.InfoOffset, -bitmap.Height);
  if (bitmap.InfoOffset == 0) file.insert(0, BmpFileHeader(bitmap));
}

std::int64_t BitmapBandRows(const BitmapHeader& bitmap, std::string_view file,
                            std::int64_t bandPixels) {
  constexpr std::size_t kLargestTables = 1 << 16;
  const std::size_t rowBytes = RowBytes(bitmap);
  const std::int64_t rows = std::abs(bitmap.Height);
  if (rowBytes == 0 || bitmap.Width * rows <= bandPixels) return 0;
  if (bitmap.PixelOffset < bitmap.InfoOffset + bitmap.InfoSize ||
      bitmap.PixelOffset > bitmap.InfoOffset + kLargestTables ||
      file.size() < bitmap.PixelOffset + rowBytes * static_cast<std::size_t>(rows))
    return 0;
  return std::max<std::int64_t>(bandPixels / bitmap.Width, 1);
}

std::string BitmapBand(const BitmapHeader& bitmap, std::string_view file, std::int64_t first,
                       std::int64_t count) {
  std::string head(file.substr(bitmap.InfoOffset, bitmap.PixelOffset - bitmap.InfoOffset));
  StoreHeight(bitmap, head, 0, count);
  const std::size_t rowBytes = RowBytes(bitmap);
  const std::size_t bytes = rowBytes * static_cast<std::size_t>(count);
  if (bitmap.InfoSize >= kPlainInfoSize)
    head.replace(20, 4, LowFirst(static_cast<std::uint32_t>(bytes), 4));

  std::string band = BmpFileHeader(bitmap);
  band.reserve(band.size() + head.size() + bytes);
  band += head;
  band += file.substr(bitmap.PixelOffset + rowBytes * static_cast<std::size_t>(first), bytes);
  return band;
}

}  // namespace graphize
