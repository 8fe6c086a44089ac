#include "image/picbuf.h"

#include <Magick++.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "image/bitmap_header.h"
#include "image/colour_table.h"
#include "image/file_format.h"
#include "image/picture_gate.h"
#include "image/picture_operation.h"
#include "image/raster_orientation.h"
#include "image/transparency.h"

namespace graphize {

namespace {

namespace lib = MagickLib;

static_assert(sizeof(lib::PixelPacket) == 8 && offsetof(lib::PixelPacket, blue) == 0 &&
                  offsetof(lib::PixelPacket, green) == 2 && offsetof(lib::PixelPacket, red) == 4,
              "the hand-out reads the library's pixels as 16-bit blue, green, red, opacity");

// ---- The library's records, each freed by its own function -------------------------------------

struct Freeing {
  void operator()(lib::Image* image) const { lib::DestroyImage(image); }
  void operator()(lib::ImageInfo* info) const { lib::DestroyImageInfo(info); }
};
using ImagePtr = std::unique_ptr<lib::Image, Freeing>;
using ImageInfoPtr = std::unique_ptr<lib::ImageInfo, Freeing>;

class Report {
 public:
  Report() { lib::GetExceptionInfo(&info_); }
  ~Report() { lib::DestroyExceptionInfo(&info_); }
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  operator lib::ExceptionInfo*() { return &info_; }  // NOLINT: reads as what it holds
  lib::ExceptionType Severity() const { return info_.severity; }
  /// The library's own words, as a detail in parentheses.
  std::string Detail() const {
    const char* words = info_.reason != nullptr ? info_.reason : info_.description;
    return words != nullptr ? " (" + std::string(words) + ")" : std::string();
  }

 private:
  lib::ExceptionInfo info_{};
};

// ---- Start --------------------------------------------------------------------------------------

/// The operation that this thread works on. The library's own helper threads have none.
thread_local PictureOperation* currentOperation = nullptr;

class CurrentOperation {
 public:
  explicit CurrentOperation(PictureOperation& operation) { currentOperation = &operation; }
  ~CurrentOperation() { currentOperation = nullptr; }
  CurrentOperation(const CurrentOperation&) = delete;
  CurrentOperation& operator=(const CurrentOperation&) = delete;
};

unsigned OnProgress(const char*, lib::magick_int64_t done, lib::magick_uint64_t all,
                    lib::ExceptionInfo*) {
  if (currentOperation == nullptr) return MagickPass;
  currentOperation->Advance(static_cast<double>(done) / static_cast<double>(std::max(all, 1UL)));
  return currentOperation->Stopped ? MagickFail : MagickPass;
}

unsigned RefuseAccess(lib::ConfirmAccessMode, const char*, lib::ExceptionInfo*) {
  errno = EPERM;
  return MagickFail;
}

/// Only the picture types themselves stay: what reads scripts, other files or the network goes.
void KeepPictureTypesOnly() {
  static constexpr std::string_view kKept[] = {"TIFF", "TIF", "JPEG", "JPG", "BMP", "BMP3",
                                               "GIF",  "PCX", "TGA",  "PNG", "WEBP"};
  Report report;
  lib::MagickInfo** all = lib::GetMagickInfoArray(report);
  std::vector<std::string> unwanted;
  for (lib::MagickInfo** entry = all; entry != nullptr && *entry != nullptr; ++entry)
    if (std::ranges::find(kKept, (*entry)->name) == std::end(kKept))
      unwanted.emplace_back((*entry)->name);
  lib::MagickFree(all);
  for (const std::string& name : unwanted) lib::UnregisterMagickInfo(name.c_str());
}

/// Everything below stays within this process and its memory: no file is read or written by the
/// library, no program started. Done at the first use, so that the program's start is free of it.
void StartLibrary() {
  static std::once_flag started;
  std::call_once(started, [] {
    Report report;
    lib::InitializeMagickEx(nullptr, MAGICK_OPT_NO_SIGNAL_HANDER, report);
    KeepPictureTypesOnly();
    lib::MagickSetConfirmAccessHandler(RefuseAccess);
    lib::SetMonitorHandler(OnProgress);
    constexpr lib::magick_int64_t kGiB = 1 << 30;
    // Room for a page enlarged to 150 %; what may be opened is the gate's to say.
    lib::SetMagickResourceLimit(lib::PixelsResource, 320'000'000);
    lib::SetMagickResourceLimit(lib::WidthResource, 65'535);
    lib::SetMagickResourceLimit(lib::HeightResource, 65'535);
    lib::SetMagickResourceLimit(lib::MemoryResource, 6 * kGiB);
    lib::SetMagickResourceLimit(lib::MapResource, 0);
    lib::SetMagickResourceLimit(lib::DiskResource, 0);
    lib::SetMagickResourceLimit(lib::ReadResource, 2 * kGiB);
  });
}

ImageInfoPtr InfoFor(const char* coder) {
  ImageInfoPtr info(lib::CloneImageInfo(nullptr));
  lib::MagickStrlCpy(info->magick, coder, MaxTextExtent);
  return info;
}

// ---- Loading ------------------------------------------------------------------------------------

const char* CoderOf(PictureType type) {
  static constexpr const char* kCoders[] = {"",    "TIFF", "TGA",  "BMP", "GIF",
                                            "BMP", "PCX",  "JPEG", "PNG", "WEBP"};
  return kCoders[static_cast<int>(type)];
}

[[noreturn]] void ThrowDecodeError(const Report& report) {
  const auto severity = report.Severity();
  if (severity == lib::ResourceLimitError || severity == lib::ResourceLimitFatalError)
    throw RunTimeError("The picture is too large, or there is not enough memory. " + SizeRule());
  throw RunTimeError("The file is damaged, incomplete or of a rare kind." + report.Detail());
}

void CheckSize(const lib::Image& image) {
  const std::string refusal =
      SizeRefusal(static_cast<std::int64_t>(image.columns), static_cast<std::int64_t>(image.rows));
  if (!refusal.empty()) throw RunTimeError(refusal);
}

/// The decoder's look at the head of the file, where the gate could not tell the size.
void CheckSize(PictureType type, std::string_view bytes) {
  Report report;
  const ImageInfoPtr info = InfoFor(CoderOf(type));
  const ImagePtr image(lib::PingBlob(info.get(), bytes.data(), bytes.size(), report));
  if (image == nullptr) ThrowDecodeError(report);
  CheckSize(*image);
}

/// A decoded picture; null when the operation was stopped. The decoder's first complaint becomes
/// `warning`.
ImagePtr Decode(const GateVerdict& verdict, std::string_view bytes, std::string& warning,
                const PictureOperation& operation) {
  const ImageInfoPtr info = InfoFor(CoderOf(verdict.Type));
  info->subimage = 0;
  info->subrange = 1;
  Report report;
  ImagePtr image(lib::BlobToImage(info.get(), bytes.data(), bytes.size(), report));
  if (operation.Stopped) return nullptr;
  if (image == nullptr || report.Severity() >= lib::ErrorException) ThrowDecodeError(report);
  CheckSize(*image);
  // What a PNG decoder merely warns of are additions to the picture, such as colour profiles.
  const bool harmless = verdict.Type == PictureType::Png && report.Severity() == lib::CoderWarning;
  if (report.Severity() >= lib::WarningException && !harmless && warning.empty())
    warning =
        "The file is damaged or incomplete. What could be read of it is shown." + report.Detail();
  if (verdict.Opaque) image->matte = MagickFalse;
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
Raster HandOut(ImagePtr image, PictureOperation& operation) {
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
Raster LoadBands(const GateVerdict& verdict, const BitmapHeader& bitmap, std::string_view bytes,
                 std::int64_t bandRows, std::string& warning, PictureOperation& operation) {
  const std::int64_t height = std::abs(bitmap.Height);
  Raster picture(static_cast<int>(bitmap.Width), static_cast<int>(height));
  for (std::int64_t first = 0; first < height && !operation.Stopped; first += bandRows) {
    const std::int64_t count = std::min(bandRows, height - first);
    operation.From = static_cast<double>(first) / static_cast<double>(height);
    operation.To = static_cast<double>(first + count) / static_cast<double>(height);
    ImagePtr image = Decode(verdict, BitmapBand(bitmap, bytes, first, count), warning, operation);
    if (image == nullptr) break;
    const Raster band = HandOut(std::move(image), operation);
    if (band.Width() != picture.Width() || band.Height() != count)
      throw RunTimeError("The file is damaged.");
    const auto top = static_cast<int>(height - first - count);
    std::copy_n(band.Pixels(), band.PixelCount(), picture.Row(top));
  }
  return picture;
}

std::optional<LoadedPicture> Load(const std::filesystem::path& path, PictureOperation& operation) {
  constexpr std::int64_t kBandPixels = 1 << 22;
  const CurrentOperation current(operation);
  GateVerdict verdict;
  std::string bytes = ReadPictureFile(path, verdict);
  if (verdict.Width == 0) CheckSize(verdict.Type, bytes);

  LoadedPicture loaded;
  bool transparent = !verdict.Opaque;
  const auto bitmap = ReadBitmapHeader(bytes);
  int orientation = bitmap && bitmap->Height < 0 ? 4 : verdict.Mirrored ? 2 : 1;
  const std::int64_t bandRows = bitmap ? BitmapBandRows(*bitmap, bytes, kBandPixels) : 0;
  if (bandRows > 0) {
    loaded.Picture = LoadBands(verdict, *bitmap, bytes, bandRows, loaded.Warning, operation);
  } else {
    if (bitmap) MakePlainBmp(*bitmap, bytes);
    operation.To = 0.7;
    ImagePtr image = Decode(verdict, bytes, loaded.Warning, operation);
    std::string().swap(bytes);
    if (image == nullptr) return {};
    transparent = image->matte != 0;
    if (orientation == 1) orientation = image->orientation;
    operation.From = operation.To;
    operation.To = 1;
    loaded.Picture = HandOut(std::move(image), operation);
  }
  if (operation.Stopped) return {};
  if (transparent) LayOnWhite(loaded.Picture);
  loaded.Picture = Upright(std::move(loaded.Picture), orientation);
  return loaded;
}

// ---- Saving -------------------------------------------------------------------------------------

struct Encoding {
  const char* Coder;
  lib::CompressionType Compression;
  bool HasColourTable;
};

Encoding EncodingOf(int format) {
  static constexpr Encoding kEncodings[] = {
      {"TIFF", lib::LZWCompression, true},   {"TGA", lib::NoCompression, true},
      {"BMP3", lib::NoCompression, true},    {"GIF", lib::LZWCompression, true},
      {"BMP3", lib::NoCompression, true},    {"PCX", lib::RLECompression, true},
      {"JPEG", lib::JPEGCompression, false},
  };
  if (format < kTifFormat || format > kJpgFormat)
    throw RunTimeError(
        "The name must end in one of the types tif, tga, bmp, gif, dib, pcx or jpg.");
  return kEncodings[format - kTifFormat];
}

/// Black and white, and greys, need no table of colours in a TIFF.
lib::ImageType TifTypeOf(const std::vector<std::uint32_t>& colours) {
  const auto isGrey = [](std::uint32_t pixel) { return (pixel & 0xffffffu) % 0x010101u == 0; };
  const auto isBlackOrWhite = [](std::uint32_t p) { return p == kBlackPixel || p == kWhitePixel; };
  if (std::ranges::all_of(colours, isBlackOrWhite)) return lib::BilevelType;
  return std::ranges::all_of(colours, isGrey) ? lib::GrayscaleType : lib::PaletteType;
}

lib::PixelPacket PacketOf(std::uint32_t pixel) {
  lib::PixelPacket packet{};
  packet.red = static_cast<lib::Quantum>(257 * ((pixel >> 16) & 0xffu));
  packet.green = static_cast<lib::Quantum>(257 * ((pixel >> 8) & 0xffu));
  packet.blue = static_cast<lib::Quantum>(257 * (pixel & 0xffu));
  return packet;
}

/// The library's picture of a raster, with a colour map when there is a table.
ImagePtr TakePicture(const lib::ImageInfo& info, const Raster& picture,
                     const std::optional<ColourTable>& table, const PictureOperation& operation) {
  ImagePtr image(lib::AllocateImage(&info));
  if (image == nullptr) throw std::bad_alloc();
  image->columns = static_cast<unsigned long>(picture.Width());
  image->rows = static_cast<unsigned long>(picture.Height());
  image->depth = 8;
  image->compression = info.compression;
  lib::MagickStrlCpy(image->magick, info.magick, MaxTextExtent);
  if (table) {
    if (!lib::AllocateImageColormap(image.get(), table->Colours().size())) throw std::bad_alloc();
    std::ranges::transform(table->Colours(), image->colormap, PacketOf);
  }
  for (int y = 0; y < picture.Height() && !operation.Stopped; ++y) {
    lib::PixelPacket* row = lib::SetImagePixels(image.get(), 0, y, image->columns, 1);
    if (row == nullptr) throw std::bad_alloc();
    std::transform(picture.Row(y), picture.Row(y) + picture.Width(), row, PacketOf);
    if (table) {
      lib::IndexPacket* indexes = lib::AccessMutableIndexes(image.get());
      std::transform(picture.Row(y), picture.Row(y) + picture.Width(), indexes,
                     [&](std::uint32_t pixel) { return table->IndexOf(pixel); });
    }
    if (!lib::SyncImagePixels(image.get())) throw std::bad_alloc();
  }
  return image;
}

bool Save(const std::filesystem::path& path, int format, int option, const Raster& picture,
          PictureOperation& operation) {
  const Encoding encoding = EncodingOf(format);
  if (picture.IsEmpty()) throw RunTimeError("There is no picture.");
  const CurrentOperation current(operation);
  const ImageInfoPtr info = InfoFor(encoding.Coder);
  info->compression = encoding.Compression;
  info->depth = 8;
  info->dither = 0;  // dots beside a curve would be points
  if (format == kJpgFormat) info->quality = static_cast<unsigned long>(std::clamp(option, 1, 100));
  const auto table = encoding.HasColourTable ? ColourTable::Of(picture) : std::nullopt;
  if (format == kTifFormat && table) info->type = TifTypeOf(table->Colours());

  ImagePtr image = TakePicture(*info, picture, table, operation);
  if (operation.Stopped) return false;
  Report report;
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&lib::MagickFree)> blob(
      lib::ImageToBlob(info.get(), image.get(), &size, report), lib::MagickFree);
  if (operation.Stopped) return false;
  if (blob == nullptr || report.Severity() >= lib::ErrorException)
    throw RunTimeError("The picture cannot be written in this type." + report.Detail());
  image.reset();
  std::string_view bytes(static_cast<const char*>(blob.get()), size);
  if (format == kDibFormat) bytes.remove_prefix(kBmpFileHeaderSize);
  ThrowSystemError(ReplaceWholeFile(path, bytes));
  return true;
}

}  // namespace

std::optional<LoadedPicture> LoadPicture(const std::filesystem::path& path,
                                         const PictureProgress& progress) {
  return NamingTheFile("Cannot open the picture", path, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) { return Load(path, operation); });
  });
}

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return NamingTheFile("Cannot save the picture", path, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) {
      return Save(path, format, option, picture, operation);
    });
  });
}

}  // namespace graphize
