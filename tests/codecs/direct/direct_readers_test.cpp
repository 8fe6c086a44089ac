#include "codecs/direct/direct_readers.h"

#include <gtest/gtest.h>
#include <png.h>
#include <tiffio.h>

#include <cstdio>
#include <random>

// After <cstdio>, which it needs.
#include <jpeglib.h>

#include "base/run_time_error.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"

// What is read straight into the raster has the pixels that the picture library gives.

namespace graphize {
namespace {

namespace fs = std::filesystem;
using test::PixelsOf;

constexpr int kWidth = 67, kHeight = 53;

/// Samples of any kind for a picture of this size, smooth and rough.
std::string Samples(std::size_t count) {
  std::mt19937 random(7);
  std::string samples(count, '\0');
  for (std::size_t i = 0; i < count; ++i)
    samples[i] = static_cast<char>(i / 97 % 2 == 0 ? i / 5 : random());
  return samples;
}

struct Kind {
  std::string Name;
  std::string Bytes;
  bool IsDirect = true;
};

struct TiffKind {
  int Photometric, Bits, Compression;
  int StripRows = 8, Samples = 1, Orientation = 1, Predictor = 1, Fill = 1;
  const char* Mode = "wl";
  bool IsDirect = true, Planes = false, Tiles = false;
  int Scale = 257;  // of the palette's bytes
};

std::string TiffOf(const TiffKind& kind, const fs::path& path) {
  TIFF* tiff = TIFFOpen(path.c_str(), kind.Mode);
  const auto set = [&](std::uint32_t tag, int value) { TIFFSetField(tiff, tag, value); };
  set(TIFFTAG_IMAGEWIDTH, kWidth);
  set(TIFFTAG_IMAGELENGTH, kHeight);
  set(TIFFTAG_BITSPERSAMPLE, kind.Bits);
  set(TIFFTAG_SAMPLESPERPIXEL, kind.Samples);
  set(TIFFTAG_PHOTOMETRIC, kind.Photometric);
  set(TIFFTAG_COMPRESSION, kind.Compression);
  set(TIFFTAG_PLANARCONFIG, kind.Planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  set(TIFFTAG_ORIENTATION, kind.Orientation);
  if (kind.Predictor > 1) set(TIFFTAG_PREDICTOR, kind.Predictor);
  if (kind.Fill > 1) set(TIFFTAG_FILLORDER, kind.Fill);
  if (kind.Photometric == PHOTOMETRIC_PALETTE) {
    std::vector<std::uint16_t> colours[3];
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 1 << kind.Bits; ++j)
        colours[i].push_back(static_cast<std::uint16_t>(kind.Scale * ((j * 7 + i * 50) % 256)));
    TIFFSetField(tiff, TIFFTAG_COLORMAP, colours[0].data(), colours[1].data(), colours[2].data());
  }
  if (kind.Tiles) {
    set(TIFFTAG_TILEWIDTH, 32);
    set(TIFFTAG_TILELENGTH, 32);
    std::string samples = Samples(static_cast<std::size_t>(TIFFTileSize(tiff)));
    for (std::uint32_t i = 0; i < TIFFNumberOfTiles(tiff); ++i)
      TIFFWriteEncodedTile(tiff, i, samples.data(), static_cast<tmsize_t>(samples.size()));
  } else {
    set(TIFFTAG_ROWSPERSTRIP, kind.StripRows);
    const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize(tiff));
    std::string samples = Samples(rowBytes * kHeight);
    for (std::uint32_t plane = 0; plane < (kind.Planes ? 3u : 1u); ++plane)
      for (std::uint32_t y = 0; y < kHeight; ++y)
        TIFFWriteScanline(tiff, samples.data() + y * rowBytes, y,
                          static_cast<std::uint16_t>(plane));
  }
  TIFFClose(tiff);
  return test::BytesOf(path);
}

std::vector<Kind> Tiffs() {
  const test::TemporaryFolder folder;
  constexpr int kWhite = PHOTOMETRIC_MINISWHITE, kBlack = PHOTOMETRIC_MINISBLACK,
                kRgb = PHOTOMETRIC_RGB, kPalette = PHOTOMETRIC_PALETTE;
  std::vector<TiffKind> kinds;
  for (int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE,
                          COMPRESSION_DEFLATE, COMPRESSION_PACKBITS}) {
    for (int photometric : {kWhite, kBlack, kPalette})
      for (int bits : {1, 4, 8}) kinds.push_back({photometric, bits, compression});
    for (int photometric : {kWhite, kBlack}) kinds.push_back({photometric, 16, compression});
    for (int bits : {8, 16})
      kinds.push_back(
          {.Photometric = kRgb, .Bits = bits, .Compression = compression, .Samples = 3});
  }
  for (int compression : {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4})
    for (int photometric : {kWhite, kBlack})
      for (int fill : {1, 2})
        kinds.push_back({.Photometric = photometric,
                         .Bits = 1,
                         .Compression = compression,
                         .StripRows = 20,
                         .Fill = fill});
  for (int orientation = 2; orientation <= 8; ++orientation)
    kinds.push_back({.Photometric = kRgb,
                     .Bits = 8,
                     .Compression = COMPRESSION_LZW,
                     .Samples = 3,
                     .Orientation = orientation});
  for (const char* mode : {"wb", "wl8", "wb8"})
    for (int bits : {8, 16})
      kinds.push_back({.Photometric = kRgb,
                       .Bits = bits,
                       .Compression = COMPRESSION_LZW,
                       .StripRows = kHeight,
                       .Samples = 3,
                       .Predictor = 2,
                       .Mode = mode});
  kinds.push_back(
      {.Photometric = kPalette, .Bits = 8, .Compression = COMPRESSION_LZW, .Scale = 256});
  for (int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_DEFLATE})
    for (int photometric : {kWhite, kPalette, kRgb})
      for (int bits : {1, 4, 8, 16})
        if (photometric == kRgb ? bits >= 8 : photometric == kWhite || bits <= 8)
          kinds.push_back({.Photometric = photometric,
                           .Bits = bits,
                           .Compression = compression,
                           .Samples = photometric == kRgb ? 3 : 1,
                           .Tiles = true});
  // Left to the picture library.
  kinds.push_back(
      {.Photometric = kBlack, .Bits = 2, .Compression = COMPRESSION_LZW, .IsDirect = false});
  kinds.push_back({.Photometric = kRgb,
                   .Bits = 8,
                   .Compression = COMPRESSION_LZW,
                   .Samples = 3,
                   .IsDirect = false,
                   .Planes = true});
  kinds.push_back({.Photometric = PHOTOMETRIC_SEPARATED,
                   .Bits = 8,
                   .Compression = COMPRESSION_LZW,
                   .Samples = 4,
                   .IsDirect = false});
  std::vector<Kind> files;
  for (const TiffKind& kind : kinds)
    files.push_back({"tiff " + std::to_string(kind.Photometric) + ' ' + std::to_string(kind.Bits) +
                         " bits, " + std::to_string(kind.Compression) + ' ' + kind.Mode + ' ' +
                         std::to_string(kind.Orientation) + (kind.Tiles ? " in tiles" : ""),
                     TiffOf(kind, folder / "a.tif"), kind.IsDirect});
  return files;
}

std::string PngWith(int colours, int bits, int interlace, bool clearColour, int height = kHeight) {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  std::string bytes;
  png_set_write_fn(
      png, &bytes,
      [](png_structp to, png_bytep data, std::size_t size) {
        static_cast<std::string*>(png_get_io_ptr(to))->append(reinterpret_cast<char*>(data), size);
      },
      nullptr);
  png_set_IHDR(png, info, kWidth, height, bits, colours, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  std::vector<png_color> palette;
  for (int i = 0; i < 1 << std::min(bits, 8); ++i)
    palette.push_back({static_cast<png_byte>(i * 3), static_cast<png_byte>(255 - i), 77});
  if (colours == PNG_COLOR_TYPE_PALETTE)
    png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
  png_byte opacities[] = {0, 255, 128};
  png_color_16 clear{.index = 0, .red = 1, .green = 1, .blue = 1, .gray = 1};
  if (clearColour) png_set_tRNS(png, info, opacities, 2, &clear);
  png_write_info(png, info);
  const std::size_t rowBytes = png_get_rowbytes(png, info);
  std::string samples = Samples(rowBytes * height);
  std::vector<png_bytep> rows;
  for (int y = 0; y < height; ++y)
    rows.push_back(reinterpret_cast<png_bytep>(samples.data()) + y * rowBytes);
  png_write_image(png, rows.data());
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

std::vector<Kind> Pngs() {
  std::vector<Kind> files;
  const std::pair<int, std::vector<int>> kinds[] = {{PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}},
                                                    {PNG_COLOR_TYPE_PALETTE, {1, 2, 4, 8}},
                                                    {PNG_COLOR_TYPE_RGB, {8, 16}},
                                                    {PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}},
                                                    {PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}}};
  for (const auto& [colours, depths] : kinds)
    for (int bits : depths)
      for (int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
        for (bool clear : {false, true}) {
          if (clear && (colours & PNG_COLOR_MASK_ALPHA) != 0) continue;
          files.push_back({"png " + std::to_string(colours) + ' ' + std::to_string(bits) +
                               " bits " + std::to_string(interlace) + (clear ? " clear" : ""),
                           PngWith(colours, bits, interlace, clear),
                           (bits < 16 || interlace == PNG_INTERLACE_NONE) &&
                               !(clear && colours == PNG_COLOR_TYPE_RGB)});
        }
  // With as much data as takes the largest window of the compression, and several blocks of it.
  for (int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7}) {
    const std::string name = " high " + std::to_string(interlace);
    files.push_back({"png grey" + name, PngWith(PNG_COLOR_TYPE_GRAY, 1, interlace, false, 3000)});
    files.push_back(
        {"png palette" + name, PngWith(PNG_COLOR_TYPE_PALETTE, 8, interlace, true, 500)});
    files.push_back({"png rgb" + name, PngWith(PNG_COLOR_TYPE_RGB, 8, interlace, false, 11'000)});
  }
  return files;
}

std::string JpegWith(J_COLOR_SPACE stored, int factor, bool progressive, int quality, int restart) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &data, &size);
  info.image_width = kWidth;
  info.image_height = kHeight;
  info.input_components = stored == JCS_GRAYSCALE ? 1 : stored == JCS_CMYK ? 4 : 3;
  info.in_color_space = stored == JCS_YCbCr ? JCS_RGB : stored;
  jpeg_set_defaults(&info);
  jpeg_set_colorspace(&info, stored);
  jpeg_set_quality(&info, quality, TRUE);
  info.comp_info[0].h_samp_factor = factor & 3;
  info.comp_info[0].v_samp_factor = factor >> 2;
  info.restart_in_rows = restart;
  if (progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  const std::size_t rowBytes = static_cast<std::size_t>(kWidth * info.input_components);
  std::string samples = Samples(rowBytes * kHeight);
  while (info.next_scanline < info.image_height) {
    auto* row = reinterpret_cast<JSAMPROW>(samples.data() + info.next_scanline * rowBytes);
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::string bytes(reinterpret_cast<char*>(data), size);
  std::free(data);
  return bytes;
}

std::vector<Kind> Jpegs() {
  std::vector<Kind> files;
  for (J_COLOR_SPACE stored : {JCS_GRAYSCALE, JCS_YCbCr, JCS_RGB, JCS_CMYK})
    for (int factor : {5, 6, 10})  // 1 x 1, 2 x 1, 2 x 2
      for (bool progressive : {false, true})
        for (int quality : {30, 95})
          files.push_back({"jpeg " + std::to_string(stored) + ' ' + std::to_string(factor) +
                               (progressive ? " progressive " : " ") + std::to_string(quality),
                           JpegWith(stored, factor, progressive, quality, quality == 30),
                           stored != JCS_CMYK});
  return files;
}

std::vector<Kind> Bitmaps() {
  std::vector<Kind> files;
  Raster picture(kWidth, kHeight);
  for (std::size_t i = 0; i < picture.PixelCount(); ++i)
    picture.Pixels()[i] = i % 3 == 0 ? kBlackPixel : kWhitePixel;
  for (std::uint32_t infoSize : {12u, 40u, 108u, 124u})
    for (int bits : {1, 4, 8, 24, 32})
      for (bool topDown : {false, true}) {
        if (infoSize == 12 && (topDown || bits == 32)) continue;
        const test::BitmapKind kind{.InfoSize = infoSize, .Bits = bits, .TopDown = topDown};
        const std::string name = std::to_string(infoSize) + ' ' + std::to_string(bits);
        files.push_back({"bmp " + name, test::MakeBmp(kind, picture)});
        files.push_back({"dib " + name, test::MakeDib(kind, picture)});
      }
  return files;
}

/// Whether the file's own reader takes it.
bool IsDirect(const std::string& bytes) {
  PictureOperation operation;
  const PictureType type = ProbePicture("a", bytes).Type;
  const auto read = type == PictureType::Tif   ? ReadTiff(bytes, RasterOnHeap, operation)
                    : type == PictureType::Png ? ReadPng(bytes, RasterOnHeap, operation)
                    : type == PictureType::Jpg ? ReadJpeg(bytes, RasterOnHeap, operation)
                                               : ReadBitmap(bytes, RasterOnHeap, operation);
  return read.has_value();
}

struct Verdict {
  std::string Text;
  std::vector<std::uint32_t> Pixels;
  bool operator==(const Verdict&) const = default;
};

Verdict VerdictOf(const std::string& bytes, DecodeBy by) {
  try {
    const auto loaded = DecodePictureHere("a", bytes, {}, by);
    return {std::to_string(loaded->Picture.Width()) + ' ' + loaded->Warning,
            PixelsOf(loaded->Picture)};
  } catch (const RunTimeError& error) {
    return {error.what(), {}};
  }
}

void ExpectSame(const std::string& name, const std::string& bytes) {
  const Verdict fast = VerdictOf(bytes, DecodeBy::Fastest),
                library = VerdictOf(bytes, DecodeBy::PictureLibrary);
  EXPECT_EQ(fast.Text, library.Text) << name;
  EXPECT_TRUE(fast.Pixels == library.Pixels) << name;
}

std::vector<Kind> AllKinds() {
  std::vector<Kind> all = Tiffs();
  for (const auto& more : {Pngs(), Jpegs(), Bitmaps()})
    all.insert(all.end(), more.begin(), more.end());
  return all;
}

TEST(DirectReaders, GiveThePixelsOfThePictureLibrary) {
  for (const Kind& kind : AllKinds()) {
    EXPECT_EQ(IsDirect(kind.Bytes), kind.IsDirect) << kind.Name;
    ExpectSame(kind.Name, kind.Bytes);
  }
  for (const auto& file : fs::directory_iterator(fs::path(GRAPHIZE_SOURCE_DIR) / "tests/samples"))
    if (file.is_regular_file() && file.path().extension() != ".csv")
      ExpectSame(file.path().filename().string(), test::BytesOf(file.path()));
}

TEST(DirectReaders, LeaveTheVerdictOnDamageToThePictureLibrary) {
  std::mt19937 random(GTEST_FLAG_GET(random_seed));
  for (const Kind& kind : AllKinds())
    for (int i = 0; i < 4; ++i) {
      std::string bytes = kind.Bytes;
      const std::size_t reach = i % 2 == 1 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size();
      const std::size_t at = random() % reach;
      if (i == 0)
        bytes.resize(at);
      else
        bytes[at] ^= static_cast<char>(1 << random() % 8);
      ExpectSame(kind.Name + (i == 0 ? " cut at " : " damaged at ") + std::to_string(at), bytes);
    }
}

}  // namespace
}  // namespace graphize
