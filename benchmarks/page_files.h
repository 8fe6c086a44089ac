#pragma once

#include <Magick++.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "base/temporary_folder.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"

namespace graphize {

constexpr int kPageWidth = 9933, kPageHeight = 14043;  // A4 at 1200 dpi: 139 million pixels

/// A frame, a grid and two curves, as on a scanned sheet; `paper` and `ink` are its two colours.
inline Raster DrawPage(std::uint32_t paper, std::uint32_t ink) {
  Raster page = Raster::Filled(kPageWidth, kPageHeight, paper);
  for (int y = 0; y < kPageHeight; ++y) {
    std::uint32_t* row = page.Row(y);
    if (y % 1200 < 6) std::fill_n(row, kPageWidth, ink);
    for (int x = 0; x < kPageWidth; x += 1200) std::fill_n(row + x, 6, ink);
  }
  for (int x = 0; x < kPageWidth; ++x)
    for (double phase : {0.0, 1.0}) {
      const int middle = static_cast<int>(kPageHeight / 2.0 + 5000 * std::sin(x / 900.0 + phase));
      for (int y = middle - 8; y <= middle + 8; ++y) page.Row(y)[x] = ink;
    }
  return page;
}

/// The page as a file of each type, in a folder that is removed at the end.
class PageFiles {
 public:
  PageFiles() {
    const Raster page = DrawPage(kWhitePixel, kBlackPixel);
    SavePicture(folder_ / "tif", kTifFormat, 1, page);
    SavePicture(folder_ / "jpg", kJpgFormat, 75, page);
    Raster colours = page.Clone();
    for (int x = 0; x < kPageWidth; ++x) colours.Row(0)[x] = 0xff000000u | static_cast<unsigned>(x);
    SavePicture(folder_ / "bmp", kBmpFormat, 0, colours);
    SavePicture(folder_ / "rgb", kTifFormat, 1, colours);
    Magick::Image image(kPageWidth, kPageHeight, "BGRP", Magick::CharPixel, page.Pixels());
    image.depth(8);
    Write("png", "PNG", image);
    image.compressType(Magick::Group4Compression);
    image.type(Magick::BilevelType);
    Write("g4", "TIFF", image);
    std::mt19937 random(3);
    for (std::size_t i = 0; i < colours.PixelCount(); ++i)
      colours.Pixels()[i] ^= static_cast<std::uint32_t>(random()) & 0x070707u;
    Write("noise", "PNG", {kPageWidth, kPageHeight, "BGRP", Magick::CharPixel, colours.Pixels()});
    SavePicture(folder_ / "small", kPngFormat, 0, Raster::Filled(800, 600, kWhitePixel));
  }

  std::filesystem::path operator[](const char* type) const { return folder_ / type; }

 private:
  void Write(const char* name, const char* coder, Magick::Image image) {
    image.magick(coder);
    Magick::Blob bytes;
    image.write(&bytes);
    std::ofstream(folder_ / name, std::ios::binary)
        .write(static_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.length()));
  }

  TemporaryFolder folder_;
};

inline const PageFiles& Pages() {
  static const PageFiles pages;
  return pages;
}

/// As where the system allows no process for it, and no reader of the type's own.
inline LoadedPicture DecodeHere(const std::filesystem::path& path) {
  std::string bytes;
  if (ReadWholeFile(path, std::size_t{2} << 30, bytes)) std::abort();
  return *DecodePictureHere(path.filename().string(), bytes, {}, DecodeBy::PictureLibrary);
}

}  // namespace graphize
