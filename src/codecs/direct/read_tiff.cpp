#include <tiffio.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <future>
#include <memory>
#include <vector>

#include "base/cores.h"
#include "codecs/direct/direct_readers.h"
#include "codecs/samples.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

/// A file in memory, as the library reads it, and whether the library complained.
struct Source {
  std::string_view Bytes;
  std::size_t At = 0;
  bool IsOdd = false;
};

Source& SourceOf(thandle_t handle) {
  return *static_cast<Source*>(handle);
}

tmsize_t ReadSource(thandle_t handle, void* target, tmsize_t size) {
  Source& source = SourceOf(handle);
  const std::size_t left = source.Bytes.size() - std::min(source.At, source.Bytes.size());
  const std::size_t count = std::min(static_cast<std::size_t>(size), left);
  std::memcpy(target, source.Bytes.data() + source.At, count);
  source.At += count;
  return static_cast<tmsize_t>(count);
}

toff_t SeekSource(thandle_t handle, toff_t offset, int whence) {
  Source& source = SourceOf(handle);
  const std::size_t from = whence == SEEK_CUR   ? source.At
                           : whence == SEEK_END ? source.Bytes.size()
                                                : 0;
  source.At = from + static_cast<std::size_t>(offset);
  return source.At;
}

int MapSource(thandle_t handle, void** base, toff_t* size) {
  *base = const_cast<char*>(SourceOf(handle).Bytes.data());
  *size = SourceOf(handle).Bytes.size();
  return 1;
}

int NoteComplaint(TIFF*, void* source, const char*, const char*, va_list) {
  static_cast<Source*>(source)->IsOdd = true;
  return 1;  // said enough
}

struct Closing {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffPtr = std::unique_ptr<TIFF, Closing>;

TiffPtr Open(Source& source) {
  struct Freeing {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, Freeing> options(TIFFOpenOptionsAlloc());
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), NoteComplaint, &source);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), NoteComplaint, &source);
  return TiffPtr(TIFFClientOpenExt(
      "picture", "r", &source, ReadSource, [](thandle_t, void*, tmsize_t) { return tmsize_t{0}; },
      SeekSource, [](thandle_t) { return 0; },
      [](thandle_t handle) { return static_cast<toff_t>(SourceOf(handle).Bytes.size()); },
      MapSource, [](thandle_t, void*, toff_t) {}, options.get()));
}

template <class Value>
Value Field(TIFF* tiff, std::uint32_t tag) {
  Value value = 0;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

struct Layout {
  std::uint32_t Width = 0, Height = 0;
  std::uint32_t BandRows = 0;   // of a strip, or of the tiles beside each other
  std::uint32_t TileWidth = 0;  // 0: strips
  int Bits = 0, Samples = 0, Photometric = 0;
  bool HasChecksum = false;  // at the end of each strip or tile
};

constexpr std::size_t kLargestBlock = 32 << 20;  // bytes of a strip or tile

/// How the pixels lie; nothing for the kinds that are left to the picture library.
std::optional<Layout> LayoutOf(TIFF* tiff) {
  Layout layout;
  layout.Width = Field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
  layout.Height = Field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
  const bool isTiled = TIFFIsTiled(tiff) != 0;
  if (isTiled) layout.TileWidth = std::max(Field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH), 1u);
  layout.BandRows =
      std::max(Field<std::uint32_t>(tiff, isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP), 1u);
  if (!isTiled) layout.BandRows = std::min(layout.BandRows, std::max(layout.Height, 1u));
  layout.Bits = Field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
  layout.Samples = Field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
  std::uint16_t photometric = 0, least = 0, most = 0;
  if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) == 0) return {};
  layout.Photometric = photometric;

  constexpr int kCompressions[] = {
      COMPRESSION_NONE, COMPRESSION_CCITTRLE,      COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4,
      COMPRESSION_LZW,  COMPRESSION_ADOBE_DEFLATE, COMPRESSION_DEFLATE,   COMPRESSION_PACKBITS};
  const int compression = Field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION);
  layout.HasChecksum =
      compression == COMPRESSION_ADOBE_DEFLATE || compression == COMPRESSION_DEFLATE;
  const bool isGrey =
      photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
  const bool isRgb = photometric == PHOTOMETRIC_RGB;
  const bool isPalette = photometric == PHOTOMETRIC_PALETTE;
  const bool isUsual = DecodeRefusal(layout.Width, layout.Height).empty() &&
                       std::ranges::count(kCompressions, compression) > 0 &&
                       (isGrey || isRgb || isPalette) && layout.Samples == (isRgb ? 3 : 1) &&
                       (layout.Bits == 8 || (layout.Bits == 16 && !isPalette) ||
                        ((layout.Bits == 1 || layout.Bits == 4) && !isRgb)) &&
                       (layout.Samples == 1 ||
                        Field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG) &&
                       Field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT) == SAMPLEFORMAT_UINT &&
                       TIFFGetField(tiff, TIFFTAG_MINSAMPLEVALUE, &least) == 0 &&
                       TIFFGetField(tiff, TIFFTAG_MAXSAMPLEVALUE, &most) == 0 &&
                       TIFFLastDirectory(tiff) >= 0;
  return isUsual ? std::optional(layout) : std::nullopt;
}

/// The pixel of each value of a sample of at most 8 bits.
std::vector<std::uint32_t> PixelsOfSamples(TIFF* tiff, const Layout& layout) {
  const std::uint32_t count = 1u << layout.Bits;
  std::vector<std::uint32_t> pixels(count);
  if (layout.Photometric != PHOTOMETRIC_PALETTE) {
    const bool inverted = layout.Photometric == PHOTOMETRIC_MINISWHITE;
    for (std::uint32_t i = 0; i < count; ++i)
      pixels[inverted ? count - 1 - i : i] = GreyPixel(i * 255 / (count - 1));
    return pixels;
  }
  std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue) == 0) return {};
  // Many programs write the colours as multiples of 256: their white, 65280, is white.
  bool ofHighBytes = true;
  for (std::uint32_t i = 0; i < count; ++i)
    ofHighBytes = ofHighBytes && ((red[i] | green[i] | blue[i]) & 0xff) == 0;
  const auto eight = [&](std::uint16_t value) {
    return ofHighBytes ? static_cast<std::uint8_t>(value >> 8) : EightBits(value);
  };
  for (std::uint32_t i = 0; i < count; ++i)
    pixels[i] = PixelOf(eight(red[i]), eight(green[i]), eight(blue[i]));
  return pixels;
}

/// Makes pixels of the samples of a row, or of a tile's part of it.
class RowOfPixels {
 public:
  RowOfPixels(const Layout& layout, const std::vector<std::uint32_t>& pixels)
      : layout_(layout), inverted_(layout.Photometric == PHOTOMETRIC_MINISWHITE) {
    if (layout.Bits > 8 || layout.Samples > 1) return;
    // All pixels of a byte at once.
    perByte_ = static_cast<std::size_t>(8 / layout.Bits);
    table_.resize(256 * perByte_);
    for (std::size_t byte = 0; byte < 256; ++byte)
      for (std::size_t i = 0; i < perByte_; ++i) {
        const std::size_t shift = static_cast<std::size_t>(layout.Bits) * (perByte_ - 1 - i);
        table_[byte * perByte_ + i] = pixels[byte >> shift & (pixels.size() - 1)];
      }
  }

  void operator()(const std::uint8_t* samples, std::uint32_t* row, std::uint32_t width) const {
    if (perByte_ == 8)
      OfBytes<8>(samples, row, width);
    else if (perByte_ == 2)
      OfBytes<2>(samples, row, width);
    else if (perByte_ == 1)
      OfBytes<1>(samples, row, width);
    else if (layout_.Bits == 8)
      OfTriples(samples, row, width);
    else
      OfWords(samples, row, width);
  }

 private:
  template <std::size_t kPerByte>
  void OfBytes(const std::uint8_t* samples, std::uint32_t* row, std::uint32_t width) const {
    const std::size_t whole = width / kPerByte, rest = width % kPerByte;
    for (std::size_t i = 0; i < whole; ++i, row += kPerByte)
      std::memcpy(row, &table_[samples[i] * kPerByte], kPerByte * sizeof *row);
    if (rest > 0) std::memcpy(row, &table_[samples[whole] * kPerByte], rest * sizeof *row);
  }
  void OfTriples(const std::uint8_t* samples, std::uint32_t* row, std::uint32_t width) const {
    // Four bytes at once, but for the last pixel, behind which nothing may be.
    const std::size_t last = width - 1;
    for (std::size_t x = 0; x < last; ++x, samples += 3) {
      std::uint32_t lowFirst = 0;
      std::memcpy(&lowFirst, samples, sizeof lowFirst);
      row[x] = __builtin_bswap32(lowFirst) >> 8 | 0xff000000u;
    }
    row[last] = PixelOf(samples[0], samples[1], samples[2]);
  }
  void OfWords(const std::uint8_t* samples, std::uint32_t* row, std::uint32_t width) const {
    const auto word = [&](std::size_t i) {
      std::uint16_t value = 0;
      std::memcpy(&value, samples + 2 * i, 2);
      return EightBits(inverted_ ? static_cast<std::uint16_t>(~value) : value);
    };
    for (std::size_t x = 0; x < width; ++x)
      row[x] = layout_.Samples == 1 ? GreyPixel(word(x))
                                    : PixelOf(word(3 * x), word(3 * x + 1), word(3 * x + 2));
  }

  const Layout layout_;
  const bool inverted_;
  std::size_t perByte_ = 0;
  std::vector<std::uint32_t> table_;
};

/// What is decoded at once: a strip or tile, or a single row of a strip that is too large.
struct Block {
  std::size_t RowBytes = 0, Bytes = 0;
  bool IsWhole = true;
};

/// Nothing where the file is to be left to the picture library.
std::optional<Block> BlockOf(TIFF* tiff, const Layout& layout) {
  const bool isTiled = layout.TileWidth > 0;
  Block block{.RowBytes = static_cast<std::size_t>(isTiled ? TIFFTileRowSize(tiff)
                                                           : TIFFScanlineSize(tiff))};
  block.Bytes = layout.BandRows * block.RowBytes;
  if (isTiled && block.Bytes != static_cast<std::size_t>(TIFFTileSize(tiff))) return {};
  // As a whole it is checked by its checksum, and decoded faster; a large one takes memory.
  block.IsWhole = block.Bytes <= kLargestBlock;
  if (!block.IsWhole) block.Bytes = block.RowBytes;
  if (block.RowBytes == 0 || (!block.IsWhole && (layout.HasChecksum || isTiled))) return {};
  return block;
}

/// Reads the bands of an opened file, the strips or the rows of tiles, into a raster.
class BandReader {
 public:
  BandReader(const Layout& layout, const Block& block, const RowOfPixels& toPixels, Raster& picture)
      : layout_(layout),
        block_(block),
        toPixels_(toPixels),
        picture_(picture),
        samples_(block.Bytes) {}

  /// The band from row `top` on. `goesOn()` is asked before each piece, and `tell(rows)` called
  /// after it. False when it was stopped or the file is odd.
  template <class GoesOn, class Tell>
  bool Read(TIFF* tiff, const Source& source, std::uint32_t top, const GoesOn& goesOn,
            const Tell& tell) {
    const std::uint32_t rows = std::min(layout_.BandRows, layout_.Height - top);
    if (layout_.TileWidth > 0) {
      for (std::uint32_t left = 0; left < layout_.Width; left += layout_.TileWidth) {
        if (!goesOn() || !ReadTile(tiff, left, top) || source.IsOdd) return false;
        const std::uint32_t width = std::min(layout_.TileWidth, layout_.Width - left);
        for (std::uint32_t y = 0; y < rows; ++y)
          toPixels_(&samples_[y * block_.RowBytes], picture_.Row(static_cast<int>(top + y)) + left,
                    width);
      }
      tell(rows);
      return true;
    }
    for (std::uint32_t y = 0; y < rows; ++y) {
      if (!goesOn() || !ReadRow(tiff, top, y, rows) || source.IsOdd) return false;
      toPixels_(&samples_[block_.IsWhole ? y * block_.RowBytes : 0],
                picture_.Row(static_cast<int>(top + y)), layout_.Width);
      tell(1);
    }
    return true;
  }

 private:
  bool ReadTile(TIFF* tiff, std::uint32_t left, std::uint32_t top) {
    const auto size = static_cast<tmsize_t>(samples_.size());
    const std::uint32_t tile = TIFFComputeTile(tiff, left, top, 0, 0);
    return TIFFReadEncodedTile(tiff, tile, samples_.data(), size) == size;
  }
  /// Row `y` of a strip, with all others of it where there is room.
  bool ReadRow(TIFF* tiff, std::uint32_t top, std::uint32_t y, std::uint32_t rows) {
    if (!block_.IsWhole) return TIFFReadScanline(tiff, samples_.data(), top + y, 0) == 1;
    const auto size = static_cast<tmsize_t>(rows * block_.RowBytes);
    return y > 0 ||
           TIFFReadEncodedStrip(tiff, top / layout_.BandRows, samples_.data(), size) == size;
  }

  const Layout& layout_;
  const Block& block_;
  const RowOfPixels& toPixels_;
  Raster& picture_;
  std::vector<std::uint8_t> samples_;
};

}  // namespace

std::optional<StoredPicture> ReadTiff(std::string_view file, const MakeRaster& make,
                                      PictureOperation& operation) {
  Source source{file};
  const TiffPtr tiff = Open(source);
  const auto layout = tiff != nullptr && !source.IsOdd ? LayoutOf(tiff.get()) : std::nullopt;
  if (!layout) return {};
  std::vector<std::uint32_t> pixels;
  if (layout->Bits <= 8 && layout->Samples == 1) {
    pixels = PixelsOfSamples(tiff.get(), *layout);
    if (pixels.empty()) return {};
  }
  const auto block = BlockOf(tiff.get(), *layout);
  if (source.IsOdd || !block) return {};

  StoredPicture read{.Picture =
                         make(static_cast<int>(layout->Width), static_cast<int>(layout->Height))};
  const RowOfPixels toPixels(*layout, pixels);
  // Bands are independent of each other: each thread takes some of them, and a file of its own.
  const std::uint32_t bands = (layout->Height - 1) / layout->BandRows + 1;
  constexpr std::uint64_t kPixelsAtOnce = 1 << 18;
  const std::uint64_t bandPixels = std::uint64_t{layout->Width} * layout->BandRows;
  const auto bandsAtOnce =
      static_cast<std::uint32_t>(std::max(kPixelsAtOnce / bandPixels, std::uint64_t{1}));
  std::atomic<std::uint32_t> taken = 0, done = 0;
  std::atomic<bool> isOdd = false;
  const auto work = [&](const Source& from, TIFF* own, bool reports) {
    BandReader reader(*layout, *block, toPixels, read.Picture);
    const auto goesOn = [&] { return !isOdd && !operation.Stopped; };
    const auto tell = [&](std::uint32_t rows) {
      done += rows;
      if (reports) operation.Advance(static_cast<double>(done) / layout->Height);
    };
    for (std::uint32_t next; goesOn() && (next = taken.fetch_add(bandsAtOnce)) < bands;)
      for (std::uint32_t band = next; band < std::min(next + bandsAtOnce, bands); ++band)
        if (!reader.Read(own, from, band * layout->BandRows, goesOn, tell)) {
          isOdd = true;
          return;
        }
  };
  std::vector<std::future<void>> helpers;
  const std::uint32_t threads =
      std::min(static_cast<std::uint32_t>(CoreCount()), (bands - 1) / bandsAtOnce + 1);
  for (std::uint32_t i = 1; i < threads; ++i)
    helpers.push_back(StartBeside([&] {
      Source own{file};
      const TiffPtr same = Open(own);
      if (same != nullptr) work(own, same.get(), false);
    }));
  work(source, tiff.get(), true);
  for (std::future<void>& helper : helpers) helper.get();
  if (isOdd || operation.Stopped || done != layout->Height) return {};
  return read;
}

}  // namespace graphize
