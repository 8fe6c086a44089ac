#include <tiffio.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "codecs/picbuf/direct_readers.h"
#include "codecs/picbuf/samples.h"
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
  std::uint32_t Width = 0, Height = 0, StripRows = 0;
  int Bits = 0, Samples = 0, Photometric = 0;
  bool HasChecksum = false;  // at the end of each strip
};

constexpr std::size_t kLargestStrip = 32 << 20;

/// How the pixels lie; nothing for the kinds that are left to the picture library.
std::optional<Layout> LayoutOf(TIFF* tiff) {
  Layout layout;
  layout.Width = Field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
  layout.Height = Field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
  layout.StripRows =
      std::clamp(Field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP), 1u, std::max(layout.Height, 1u));
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
  const bool isUsual =
      DecodeRefusal(layout.Width, layout.Height).empty() && TIFFIsTiled(tiff) == 0 &&
      std::ranges::count(kCompressions, compression) > 0 && (isGrey || isRgb || isPalette) &&
      layout.Samples == (isRgb ? 3 : 1) &&
      (layout.Bits == 8 || (layout.Bits == 16 && !isPalette) ||
       ((layout.Bits == 1 || layout.Bits == 4) && !isRgb)) &&
      (layout.Samples == 1 ||
       Field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG) &&
      Field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT) == SAMPLEFORMAT_UINT &&
      TIFFGetField(tiff, TIFFTAG_MINSAMPLEVALUE, &least) == 0 &&
      TIFFGetField(tiff, TIFFTAG_MAXSAMPLEVALUE, &most) == 0 && TIFFLastDirectory(tiff) >= 0;
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

/// Makes pixels of the samples of a row.
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

  void operator()(const std::uint8_t* samples, std::uint32_t* row) const {
    if (perByte_ == 8)
      OfBytes<8>(samples, row);
    else if (perByte_ == 2)
      OfBytes<2>(samples, row);
    else if (perByte_ == 1)
      OfBytes<1>(samples, row);
    else if (layout_.Bits == 8)
      OfTriples(samples, row);
    else
      OfWords(samples, row);
  }

 private:
  template <std::size_t kPerByte>
  void OfBytes(const std::uint8_t* samples, std::uint32_t* row) const {
    const std::size_t whole = layout_.Width / kPerByte, rest = layout_.Width % kPerByte;
    for (std::size_t i = 0; i < whole; ++i, row += kPerByte)
      std::memcpy(row, &table_[samples[i] * kPerByte], kPerByte * sizeof *row);
    if (rest > 0) std::memcpy(row, &table_[samples[whole] * kPerByte], rest * sizeof *row);
  }
  void OfTriples(const std::uint8_t* samples, std::uint32_t* row) const {
    // Four bytes at once, but for the last pixel, behind which nothing may be.
    const std::size_t last = layout_.Width - 1;
    for (std::size_t x = 0; x < last; ++x, samples += 3) {
      std::uint32_t lowFirst = 0;
      std::memcpy(&lowFirst, samples, sizeof lowFirst);
      row[x] = __builtin_bswap32(lowFirst) >> 8 | 0xff000000u;
    }
    row[last] = PixelOf(samples[0], samples[1], samples[2]);
  }
  void OfWords(const std::uint8_t* samples, std::uint32_t* row) const {
    const auto word = [&](std::size_t i) {
      std::uint16_t value = 0;
      std::memcpy(&value, samples + 2 * i, 2);
      return EightBits(inverted_ ? static_cast<std::uint16_t>(~value) : value);
    };
    for (std::size_t x = 0; x < layout_.Width; ++x)
      row[x] = layout_.Samples == 1 ? GreyPixel(word(x))
                                    : PixelOf(word(3 * x), word(3 * x + 1), word(3 * x + 2));
  }

  const Layout layout_;
  const bool inverted_;
  std::size_t perByte_ = 0;
  std::vector<std::uint32_t> table_;
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
  const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize(tiff.get()));
  const std::size_t stripBytes = layout->StripRows * rowBytes;
  // A strip as a whole is checked by its checksum, and decoded faster; a large one takes memory.
  const bool byStrips = stripBytes <= kLargestStrip;
  if (source.IsOdd || rowBytes == 0 || (layout->HasChecksum && !byStrips)) return {};

  StoredPicture read{.Picture =
                         make(static_cast<int>(layout->Width), static_cast<int>(layout->Height))};
  const RowOfPixels toPixels(*layout, pixels);
  // Strips are independent of each other: each thread takes some of them, and a file of its own.
  const std::uint32_t strips = (layout->Height - 1) / layout->StripRows + 1;
  constexpr std::uint64_t kPixelsAtOnce = 1 << 18;
  const std::uint64_t stripPixels = std::uint64_t{layout->Width} * layout->StripRows;
  const auto stripsAtOnce =
      static_cast<std::uint32_t>(std::max(kPixelsAtOnce / stripPixels, std::uint64_t{1}));
  std::atomic<std::uint32_t> taken = 0, done = 0;
  std::atomic<bool> isOdd = false;
  const auto work = [&](Source& from, TIFF* own, bool reports) {
    std::vector<std::uint8_t> samples(byStrips ? stripBytes : rowBytes);
    for (std::uint32_t strip; (strip = taken.fetch_add(stripsAtOnce)) < strips;) {
      const std::uint32_t first = strip * layout->StripRows,
                          end = std::min(first + stripsAtOnce * layout->StripRows, layout->Height);
      for (std::uint32_t y = first; y < end; ++y) {
        if (isOdd || operation.Stopped) return;
        const std::uint32_t inStrip = y % layout->StripRows;
        const std::size_t wanted = std::min(layout->StripRows, layout->Height - y) * rowBytes;
        const bool got = !byStrips ? TIFFReadScanline(own, samples.data(), y, 0) == 1
                         : inStrip > 0
                             ? true
                             : TIFFReadEncodedStrip(own, y / layout->StripRows, samples.data(),
                                                    static_cast<tmsize_t>(wanted)) ==
                                   static_cast<tmsize_t>(wanted);
        if (!got || from.IsOdd) {
          isOdd = true;
          return;
        }
        toPixels(samples.data() + (byStrips ? inStrip * rowBytes : 0),
                 read.Picture.Row(static_cast<int>(y)));
        ++done;
        if (reports) operation.Advance(static_cast<double>(done) / layout->Height);
      }
    }
  };
  std::vector<std::future<void>> helpers;
  const std::uint32_t threads =
      std::min(std::thread::hardware_concurrency(), (strips - 1) / stripsAtOnce + 1);
  for (std::uint32_t i = 1; i < threads; ++i)
    helpers.push_back(std::async(std::launch::async, [&] {
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
