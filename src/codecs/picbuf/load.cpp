#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "codecs/bitmap_header.h"
#include "codecs/picbuf/library.h"
#include "codecs/samples.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

static_assert(sizeof(lib::PixelPacket) == 8 && offsetof(lib::PixelPacket, blue) == 0 &&
                  offsetof(lib::PixelPacket, green) == 2 && offsetof(lib::PixelPacket, red) == 4,
              "the hand-out reads the library's pixels as 16-bit blue, green, red, opacity");

const char* CoderOf(PictureType type) {
  static constexpr const char* kCoders[] = {"",    "TIFF", "TGA",  "BMP", "GIF",
                                            "BMP", "PCX",  "JPEG", "PNG", "WEBP"};
  return kCoders[static_cast<int>(type)];
}

/// For the first picture of a file: the others, too, can take any amount of memory.
ImageInfoPtr InfoForFirst(PictureType type) {
  ImageInfoPtr info = InfoFor(CoderOf(type));
  info->subimage = 0;
  info->subrange = 1;
  return info;
}

[[noreturn]] void ThrowDecodeError(const Report& report) {
  const auto severity = report.Severity();
  if (severity == lib::ResourceLimitError || severity == lib::ResourceLimitFatalError)
    throw RunTimeError(Tr("The picture is too large, or there is not enough memory.") + ' ' +
                       SizeRule());
  throw RunTimeError(Tr("The file is damaged, incomplete or of a rare kind.") + report.Detail());
}

void CheckSize(std::int64_t width, std::int64_t height) {
  const std::string refusal = DecodeRefusal(width, height);
  if (!refusal.empty()) throw RunTimeError(refusal);
}

void CheckSize(const lib::Image& image) {
  CheckSize(static_cast<std::int64_t>(image.columns), static_cast<std::int64_t>(image.rows));
}

/// The decoder's look at the head of the file, where the probe could not tell the size.
void CheckSize(PictureType type, std::string_view bytes) {
  Report report;
  const ImageInfoPtr info = InfoForFirst(type);
  const ImagePtr image(lib::PingBlob(info.get(), bytes.data(), bytes.size(), report));
  if (image == nullptr) ThrowDecodeError(report);
  CheckSize(*image);
}

/// Many programs write a palette TIFF's colours as multiples of 256: their white, 65280, is white.
void SpreadColourMap(lib::Image& image) {
  if (image.storage_class != lib::PseudoClass) return;
  lib::PixelPacket* const end = image.colormap + image.colors;
  const auto hasLowByte = [](const lib::PixelPacket& p) {
    return ((p.red | p.green | p.blue) & 0xff) != 0;
  };
  if (std::any_of(image.colormap, end, hasLowByte)) return;
  for (lib::PixelPacket* colour = image.colormap; colour != end; ++colour)
    for (lib::Quantum* q : {&colour->red, &colour->green, &colour->blue})
      *q = static_cast<lib::Quantum>((*q >> 8) * 257);
  if (image.matte) lib::SyncImage(&image);  // else its pixels are not looked at
}

/// A decoded picture; null when the operation was stopped. The decoder's first complaint becomes
/// `warning`.
ImagePtr Decode(const ProbeResult& verdict, std::string_view bytes, std::string& warning,
                const PictureOperation& operation) {
  const ImageInfoPtr info = InfoForFirst(verdict.Type);
  Report report;
  ImagePtr image(lib::BlobToImage(info.get(), bytes.data(), bytes.size(), report));
  if (operation.Stopped) return nullptr;
  if (image == nullptr || report.Severity() >= lib::ErrorException) ThrowDecodeError(report);
  CheckSize(*image);
  // What a PNG decoder merely warns of changes no pixel.
  const bool harmless = verdict.Type == PictureType::Png && report.Severity() == lib::CoderWarning;
  if (report.Severity() >= lib::WarningException && !harmless && warning.empty())
    warning = Tr(kDamagedPicture) + report.Detail();
  if (verdict.Opaque) image->matte = MagickFalse;
  if (verdict.Type == PictureType::Tif) SpreadColourMap(*image);
  if (image->colorspace == lib::CMYKColorspace)
    lib::TransformColorspace(image.get(), lib::RGBColorspace);
  return image;
}

std::uint32_t PixelOf(const lib::PixelPacket& packet) {
  return graphize::PixelOf(EightBits(packet.red), EightBits(packet.green), EightBits(packet.blue));
}

const lib::PixelPacket* RowOf(const lib::Image& image, int y) {
  Report report;
  const auto* row = lib::AcquireImagePixels(&image, 0, y, image.columns, 1, report);
  if (row == nullptr) ThrowDecodeError(report);
  return row;
}

/// A picture with a colour map of at most 256 different colours leaves the library as one byte per
/// pixel, because its indexes make the library's image a quarter larger. False for others.
bool HandOutIndexes(ImagePtr& image, const MakeRaster& make, Raster& raster,
                    PictureOperation& operation) {
  if (image->storage_class != lib::PseudoClass || image->matte) return false;
  std::vector<std::uint32_t> colours;
  std::vector<std::uint8_t> codes(image->colors);
  for (unsigned i = 0; i < image->colors; ++i) {
    const std::uint32_t colour = PixelOf(image->colormap[i]);
    // A grey map of 16 bits has neighbours that are the same in 8.
    auto place = std::find(colours.rbegin(), colours.rend(), colour);
    if (place == colours.rend()) {
      if (colours.size() == 256) return false;
      colours.push_back(colour);
      place = colours.rbegin();
    }
    codes[i] = static_cast<std::uint8_t>(colours.rend() - place - 1);
  }

  const int width = static_cast<int>(image->columns), height = static_cast<int>(image->rows);
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(count);
  std::uint8_t* byte = bytes.get();
  for (int y = 0; y < height; ++y) {
    RowOf(*image, y);
    const lib::IndexPacket* indexes = lib::AccessImmutableIndexes(image.get());
    if (indexes == nullptr) return false;
    for (int x = 0; x < width; ++x)
      *byte++ = indexes[x] < codes.size() ? codes[indexes[x]] : std::uint8_t{0};
    operation.Advance(0.5 * y / height);
  }
  image.reset();
  raster = make(width, height);
  colours.resize(256);
  for (std::size_t i = 0; i < count; ++i) raster.Pixels()[i] = colours[bytes[i]];
  return true;
}

/// The library's picture as a raster whose fourth byte is opacity. The library's is gone then.
Raster ToRaster(ImagePtr image, const MakeRaster& make, PictureOperation& operation) {
  Raster raster;
  if (HandOutIndexes(image, make, raster, operation)) return raster;
  raster = make(static_cast<int>(image->columns), static_cast<int>(image->rows));
  const std::uint32_t opaque = image->matte ? 0 : 0xff000000u;
  for (int y = 0; y < raster.Height() && !operation.Stopped; ++y) {
    const lib::PixelPacket* row = RowOf(*image, y);
    std::uint32_t* target = raster.Row(y);
    for (int x = 0; x < raster.Width(); ++x) {
      // The library's fourth component is transparency.
      const std::uint32_t clear = EightBits(row[x].opacity);
      target[x] = (PixelOf(row[x]) & 0xffffffu) | ((255u - clear) << 24) | opaque;
    }
    operation.Advance(static_cast<double>(y) / raster.Height());
  }
  return raster;
}

/// A large uncompressed bitmap, decoded in bands of rows: at once the decoder would hold it three
/// times beside the file's bytes.
Raster LoadBands(const ProbeResult& verdict, const BitmapHeader& bitmap, std::string_view bytes,
                 std::int64_t bandRows, const MakeRaster& make, std::string& warning,
                 PictureOperation& operation) {
  const std::int64_t height = std::abs(bitmap.Height);
  Raster picture = make(static_cast<int>(bitmap.Width), static_cast<int>(height));
  for (std::int64_t first = 0; first < height && !operation.Stopped; first += bandRows) {
    const std::int64_t count = std::min(bandRows, height - first);
    operation.From = static_cast<double>(first) / static_cast<double>(height);
    operation.To = static_cast<double>(first + count) / static_cast<double>(height);
    ImagePtr image = Decode(verdict, BitmapBand(bitmap, bytes, first, count), warning, operation);
    if (image == nullptr) break;
    const Raster band = ToRaster(std::move(image), RasterOnHeap, operation);
    if (band.Width() != picture.Width() || band.Height() != count)
      throw RunTimeError("The file is damaged.");
    const auto top = static_cast<int>(height - first - count);
    std::copy_n(band.Pixels(), band.PixelCount(), picture.Row(top));
  }
  return picture;
}

}  // namespace

std::optional<StoredPicture> ReadByLibrary(PictureFile& file, const MakeRaster& make,
                                           std::string& warning, PictureOperation& operation) {
  constexpr std::int64_t kBandPixels = 1 << 22;
  StartLibrary();
  const CurrentOperation current(operation);
  if (file.Stripped.ScreenWidth > 0)
    CheckSize(file.Stripped.ScreenWidth, file.Stripped.ScreenHeight);
  else if (file.Probe.Width == 0)
    CheckSize(file.Probe.Type, file.Bytes);
  const auto& bitmap = file.Bitmap;
  const std::int64_t bandRows = bitmap ? BitmapBandRows(*bitmap, file.Bytes, kBandPixels) : 0;
  if (bandRows > 0) {
    Raster picture = LoadBands(file.Probe, *bitmap, file.Bytes, bandRows, make, warning, operation);
    return StoredPicture{std::move(picture), !file.Probe.Opaque};
  }
  if (bitmap && (bitmap->Height < 0 || bitmap->InfoOffset == 0)) {
    file.Stripped.Bytes = file.Bytes;
    MakePlainBmp(*bitmap, file.Stripped.Bytes);
    file.Bytes = file.Stripped.Bytes;
  }
  operation.To = 0.7;
  ImagePtr image = Decode(file.Probe, file.Bytes, warning, operation);
  std::string().swap(file.Stripped.Bytes);
  file.Bytes = {};
  if (image == nullptr) return {};
  const bool hasOpacity = image->matte != 0;
  operation.From = operation.To;
  operation.To = 1;
  return StoredPicture{ToRaster(std::move(image), make, operation), hasOpacity};
}

}  // namespace graphize
