#include "codecs/bitmap_header.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "codecs/little_endian.h"

namespace graphize {

namespace {

constexpr std::size_t kCoreInfoSize = 12;  // its fields are 16 bits wide
constexpr std::size_t kPlainInfoSize = 40;
constexpr std::uint32_t kNoCompression = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaBitFields = 6;

std::string LittleEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return bytes;
}

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
  return "BM" + LittleEndian(0) + LittleEndian(0) + LittleEndian(pixels);
}

void StoreHeight(const BitmapHeader& bitmap, std::string& bytes, std::size_t infoOffset,
                 std::int64_t height) {
  const std::string number = LittleEndian(static_cast<std::uint32_t>(height));
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
  constexpr int kBits[] = {1, 4, 8, 16, 24, 32};
  if (planes != 1 || std::ranges::find(kBits, bitmap.Bits) == std::end(kBits)) return {};
  bitmap.PixelOffset =
      isFile ? DoubleWord(head, 10) : bitmap.InfoSize + TableBytes(bitmap, coloursUsed);
  return bitmap;
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
    head.replace(20, 4, LittleEndian(static_cast<std::uint32_t>(bytes)));

  std::string band = BmpFileHeader(bitmap);
  band.reserve(band.size() + head.size() + bytes);
  band += head;
  band += file.substr(bitmap.PixelOffset + rowBytes * static_cast<std::size_t>(first), bytes);
  return band;
}

}  // namespace graphize
