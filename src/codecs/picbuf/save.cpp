#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/free_beside.h"
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
lib::ImageType TifTypeOf(const ColourTable& table) {
  if (table.AreBlackAndWhite()) return lib::BilevelType;
  return table.AreGrey() ? lib::GrayscaleType : lib::PaletteType;
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
                     const std::optional<ColourTable>& table, PictureOperation& operation) {
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
    operation.Advance(static_cast<double>(y) / picture.Height());
  }
  return image;
}

/// A file that the library has made.
struct Encoded {
  std::unique_ptr<void, decltype(&lib::MagickFree)> Blob;
  std::string_view Bytes;  // within it
};

std::optional<Encoded> Encode(int format, int option, const Raster& picture,
                              PictureOperation& operation) {
  const Encoding encoding = EncodingOf(format);
  if (picture.IsEmpty()) throw RunTimeError("There is no picture.");
  const CurrentOperation current(operation);
  const ImageInfoPtr info = InfoFor(encoding.Coder);
  info->compression = encoding.Compression;
  info->depth = 8;
  info->dither = 0;  // dots beside a curve would be points
  if (format == kJpgFormat) info->quality = static_cast<unsigned long>(std::clamp(option, 1, 100));
  auto go = [&, last = 0.0](double to) mutable {
    operation.From = std::exchange(last, to);
    operation.To = to;
  };
  go(0.05);
  const auto table = encoding.HasColourTable ? ColourTable::Of(picture, operation) : std::nullopt;
  if (format == kTifFormat && table) info->type = TifTypeOf(*table);

  go(0.3);
  ImagePtr image = TakePicture(*info, picture, table, operation);
  go(0.8);
  Report report;
  std::size_t size = 0;
  Encoded encoded{{nullptr, lib::MagickFree}, {}};
  if (!operation.Stopped)
    encoded.Blob.reset(lib::ImageToBlob(info.get(), image.get(), &size, report));
  FreeBeside(std::move(image));
  if (operation.Stopped) {
    FreeBeside(std::move(encoded));
    return std::nullopt;
  }
  if (encoded.Blob == nullptr || report.Severity() >= lib::ErrorException)
    throw RunTimeError(Tr("The picture cannot be written in this type.") + report.Detail());
  encoded.Bytes = {static_cast<const char*>(encoded.Blob.get()), size};
  if (format == kDibFormat) encoded.Bytes.remove_prefix(kBmpFileHeaderSize);
  return encoded;
}

}  // namespace

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return NamingTheFile("Cannot save the picture \"%1\".", path, [&] {
    StartLibrary();
    return RunBeside(progress, [&](PictureOperation& operation) {
      auto encoded = Encode(format, option, picture, operation);
      if (!encoded) return false;
      const auto failure =
          ReplaceWholeFile(path, encoded->Bytes, [&] { return !operation.Stopped; });
      FreeBeside(std::move(encoded));
      if (failure == std::errc::operation_canceled) return false;
      ThrowSystemError(failure);
      return true;
    });
  });
}

std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress) {
  StartLibrary();
  return RunBeside(progress, [&](PictureOperation& operation) {
    const auto encoded = Encode(format, option, picture, operation);
    return encoded ? std::optional(std::string(encoded->Bytes)) : std::nullopt;
  });
}

}  // namespace graphize
