#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/bitmap_header.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "codecs/picbuf/library.h"
#include "raster/colour_table.h"

namespace graphize {

namespace {

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
      {"JPEG", lib::JPEGCompression, false}, {"PNG", lib::ZipCompression, false},
  };
  if (format < kTifFormat || format > kPngFormat)
    throw RunTimeError(
        "The name must end in one of the types tif, tga, bmp, gif, dib, pcx, jpg or png.");
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

std::optional<std::string> Encode(int format, int option, const Raster& picture,
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
  if (operation.Stopped) return std::nullopt;
  Report report;
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&lib::MagickFree)> blob(
      lib::ImageToBlob(info.get(), image.get(), &size, report), lib::MagickFree);
  if (operation.Stopped) return std::nullopt;
  if (blob == nullptr || report.Severity() >= lib::ErrorException)
    throw RunTimeError(Tr("The picture cannot be written in this type.") + report.Detail());
  image.reset();
  std::string_view bytes(static_cast<const char*>(blob.get()), size);
  if (format == kDibFormat) bytes.remove_prefix(kBmpFileHeaderSize);
  return std::string(bytes);
}

}  // namespace

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return NamingTheFile("Cannot save the picture \"%1\".", path, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) {
      const auto bytes = Encode(format, option, picture, operation);
      if (bytes) ThrowSystemError(ReplaceWholeFile(path, *bytes));
      return bytes.has_value();
    });
  });
}

std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress) {
  StartLibrary();
  return RunBeside(progress, [&](PictureOperation& operation) {
    return Encode(format, option, picture, operation);
  });
}

}  // namespace graphize
