#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "codecs/bitmap_header.h"
#include "codecs/picbuf.h"
#include "codecs/picbuf/library.h"
#include "codecs/picture_probe.h"
#include "codecs/strip_metadata.h"
#include "raster/orientation.h"
#include "raster/size_limits.h"
#include "raster/transparency.h"

namespace graphize {

namespace {

static_assert(sizeof(lib::PixelPacket) == 8 && offsetof(lib::PixelPacket, blue) == 0 &&
                  offsetof(lib::PixelPacket, green) == 2 && offsetof(lib::PixelPacket, red) == 4,
              "the hand-out reads the library's pixels as 16-bit blue, green, red, opacity");

constexpr const char* kDamaged =
    Marked("The file is damaged or incomplete. What could be read of it is shown.");

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
    warning = kDamaged + report.Detail();
  if (verdict.Opaque) image->matte = MagickFalse;
  if (verdict.Type == PictureType::Tif) SpreadColourMap(*image);
  if (image->colorspace == lib::CMYKColorspace)
    lib::TransformColorspace(image.get(), lib::RGBColorspace);
  return image;
}

/// The 8-bit value of each 16-bit value, q / 257: for all q the same as the shifts, which the
/// compiler turns into vector instructions.
std::uint8_t EightBits(std::uint16_t q) {
  return static_cast<std::uint8_t>((q - (q >> 8)) >> 8);
}

std::uint32_t PixelOf(const lib::PixelPacket& packet) {
  return 0xff000000u | static_cast<std::uint32_t>(EightBits(packet.red)) << 16 |
         static_cast<std::uint32_t>(EightBits(packet.green)) << 8 | EightBits(packet.blue);
}

const lib::PixelPacket* RowOf(const lib::Image& image, int y) {
  Report report;
  const auto* row = lib::AcquireImagePixels(&image, 0, y, image.columns, 1, report);
  if (row == nullptr) ThrowDecodeError(report);
  return row;
}

/// A picture with a colour map of at most 256 different colours leaves the library as one byte per
/// pixel, because its indexes make the library's image a quarter larger. False for others.
bool HandOutIndexes(ImagePtr& image, Raster& raster, PictureOperation& operation) {
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
  raster = Raster(width, height);
  colours.resize(256);
  for (std::size_t i = 0; i < count; ++i) raster.Pixels()[i] = colours[bytes[i]];
  return true;
}

/// The library's picture as a raster whose fourth byte is opacity. The library's is gone then.
Raster ToRaster(ImagePtr image, PictureOperation& operation) {
  Raster raster;
  if (HandOutIndexes(image, raster, operation)) return raster;
  raster = Raster(static_cast<int>(image->columns), static_cast<int>(image->rows));
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
                 std::int64_t bandRows, std::string& warning, PictureOperation& operation) {
  const std::int64_t height = std::abs(bitmap.Height);
  Raster picture(static_cast<int>(bitmap.Width), static_cast<int>(height));
  for (std::int64_t first = 0; first < height && !operation.Stopped; first += bandRows) {
    const std::int64_t count = std::min(bandRows, height - first);
    operation.From = static_cast<double>(first) / static_cast<double>(height);
    operation.To = static_cast<double>(first + count) / static_cast<double>(height);
    ImagePtr image = Decode(verdict, BitmapBand(bitmap, bytes, first, count), warning, operation);
    if (image == nullptr) break;
    const Raster band = ToRaster(std::move(image), operation);
    if (band.Width() != picture.Width() || band.Height() != count)
      throw RunTimeError("The file is damaged.");
    const auto top = static_cast<int>(height - first - count);
    std::copy_n(band.Pixels(), band.PixelCount(), picture.Row(top));
  }
  return picture;
}

/// The first frame of an animation in its place on the screen, which is white.
Raster OnScreen(Raster frame, const StrippedPicture& file) {
  const auto width = static_cast<int>(file.ScreenWidth),
             height = static_cast<int>(file.ScreenHeight);
  if (width == 0 || (width == frame.Width() && height == frame.Height())) return frame;
  Raster screen = Raster::Filled(width, height, kWhitePixel);
  const auto left = static_cast<int>(file.FrameLeft), top = static_cast<int>(file.FrameTop);
  if (left + frame.Width() > width || top + frame.Height() > height)
    throw RunTimeError("The file is damaged.");
  for (int y = 0; y < frame.Height(); ++y)
    std::copy_n(frame.Row(y), frame.Width(), screen.Row(top + y) + left);
  return screen;
}

std::optional<LoadedPicture> Load(std::string bytes, const ProbeResult& verdict,
                                  PictureOperation& operation) {
  constexpr std::int64_t kBandPixels = 1 << 22;
  const CurrentOperation current(operation);

  LoadedPicture loaded;
  loaded.FileSize = bytes.size();
  // Beside the decoder: large files would otherwise open a third slower.
  std::future<std::uint32_t> checksum =
      std::async(std::launch::async, [&bytes] { return Crc32(bytes); });
  StrippedPicture stripped = StripMetadata(verdict.Type, bytes);
  auto bitmap = ReadBitmapHeader(bytes);
  if (bitmap && IsPacked(*bitmap)) {
    stripped.Bytes = UnpackBitmap(*bitmap, bytes);
    bitmap = ReadBitmapHeader(stripped.Bytes);
  }
  if (!stripped.Bytes.empty()) {
    checksum.wait();
    bytes = std::move(stripped.Bytes);
  }
  if (stripped.ScreenWidth > 0)
    CheckSize(stripped.ScreenWidth, stripped.ScreenHeight);
  else if (verdict.Width == 0)
    CheckSize(verdict.Type, bytes);
  if (stripped.IsDamaged) loaded.Warning = Tr(kDamaged);

  bool transparent = !verdict.Opaque;
  const int orientation = bitmap && bitmap->Height < 0 ? 4
                          : verdict.Mirrored           ? 2
                                                       : stripped.Orientation;
  const std::int64_t bandRows = bitmap ? BitmapBandRows(*bitmap, bytes, kBandPixels) : 0;
  if (bandRows > 0) {
    loaded.Picture = LoadBands(verdict, *bitmap, bytes, bandRows, loaded.Warning, operation);
  } else {
    if (bitmap) {
      checksum.wait();
      MakePlainBmp(*bitmap, bytes);
    }
    operation.To = 0.7;
    ImagePtr image = Decode(verdict, bytes, loaded.Warning, operation);
    checksum.wait();
    std::string().swap(bytes);
    if (image == nullptr) return {};
    transparent = image->matte != 0;
    operation.From = operation.To;
    operation.To = 1;
    loaded.Picture = ToRaster(std::move(image), operation);
  }
  if (operation.Stopped) return {};
  loaded.FileChecksum = checksum.get();
  if (transparent) Flatten(loaded.Picture);
  loaded.Picture = OnScreen(std::move(loaded.Picture), stripped);
  loaded.Picture = ApplyOrientation(std::move(loaded.Picture), orientation);
  return loaded;
}

}  // namespace

std::optional<LoadedPicture> LoadPicture(const std::filesystem::path& path,
                                         const PictureProgress& progress) {
  return NamingTheFile("Cannot open the picture \"%1\".", path, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) {
      ProbeResult verdict;
      std::string bytes = ReadPictureFile(path, verdict);
      return Load(std::move(bytes), verdict, operation);
    });
  });
}

std::optional<LoadedPicture> DecodePicture(const std::string& name, std::string bytes,
                                           const PictureProgress& progress) {
  return NamingTheFile("Cannot open the picture \"%1\".", name, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) {
      const ProbeResult verdict = ProbePicture(name, std::string_view(bytes).substr(0, kProbeSize));
      if (!verdict.Refusal.empty()) throw RunTimeError(verdict.Refusal);
      return Load(std::move(bytes), verdict, operation);
    });
  });
}

}  // namespace graphize
