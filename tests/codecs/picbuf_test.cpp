#include "codecs/picbuf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "base/run_time_error.h"
#include "codecs/bitmap_header.h"
#include "codecs/file_format.h"
#include "raster/black_white.h"
#include "raster/orientation.h"
#include "support/ascii_picture.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::PixelsOf;
using test::TemporaryFolder;
using test::WriteBytes;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kFormats[] = {kTifFormat, kTgaFormat, kBmpFormat, kGifFormat,
                            kDibFormat, kPcxFormat, kJpgFormat, kPngFormat};

/// A picture whose pixels are `colour(x, y)` in 0xRRGGBB.
template <class Colour>
Raster Paint(int width, int height, const Colour& colour) {
  Raster picture(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      picture.Row(y)[x] = 0xff000000u | static_cast<std::uint32_t>(colour(x, y));
  return picture;
}

struct NamedPicture {
  const char* Name;
  Raster Picture;
  int Colours;
};

std::vector<NamedPicture> Pictures() {
  std::vector<NamedPicture> pictures;
  const auto add = [&](const char* name, Raster picture, int colours) {
    pictures.push_back({name, std::move(picture), colours});
  };
  add("one black pixel", Raster::Filled(1, 1, kBlackPixel), 1);
  add("all white", Raster::Filled(9, 3, kWhitePixel), 1);
  add("all black", Raster::Filled(9, 3, kBlackPixel), 1);
  add("lines", Paint(67, 41, [](int x, int y) { return x * y % 7 != 0 ? 0xffffff : 0; }), 2);
  add("red on blue", Paint(67, 41, [](int x, int y) { return x == y ? 0xff0000 : 0x0000ff; }), 2);
  add("greys", Paint(67, 41, [](int x, int y) { return (x * 3 + y) % 256 * 0x010101; }), 256);
  add("256 colours", Paint(67, 41, [](int x, int y) { return (x * 41 + y) % 256 * 0x010a07; }),
      256);
  add("257 colours", Paint(257, 2, [](int x, int) { return x * 0x00fe03; }), 257);
  add("many colours", Paint(67, 41, [](int x, int y) { return x * 3 << 16 | y * 6 << 8 | x; }),
      2747);
  return pictures;
}

Raster Loaded(const fs::path& path) {
  return std::move(LoadPicture(path).value().Picture);
}

/// The words of the error that loading ends with, or what else happens.
std::string LoadError(const fs::path& path) {
  try {
    return LoadPicture(path).has_value() ? "a picture" : "stopped";
  } catch (const RunTimeError& error) {
    return error.what();
  }
}

std::string SaveError(const fs::path& path, int format, const Raster& picture) {
  try {
    return SavePicture(path, format, 0, picture) ? "saved" : "stopped";
  } catch (const RunTimeError& error) {
    return error.what();
  }
}

TEST(Picbuf, LosslessTypesGiveBackEveryPixel) {
  const TemporaryFolder folder;
  for (const NamedPicture& p : Pictures())
    for (int format : kFormats) {
      if (format == kJpgFormat || (format == kGifFormat && p.Colours > 256)) continue;
      ASSERT_TRUE(SavePicture(folder / "file", format, 0, p.Picture));
      const auto loaded = LoadPicture(folder / "file");
      EXPECT_EQ(loaded->Warning, "");
      EXPECT_EQ(loaded->Picture.Width(), p.Picture.Width());
      EXPECT_EQ(PixelsOf(loaded->Picture), PixelsOf(p.Picture)) << p.Name << ", format " << format;
    }
}

TEST(Picbuf, NothingThatWasInMemoryGetsIntoAFile) {
  Raster picture = Raster::Filled(720, 520, kWhitePixel);
  std::mt19937 random(7);
  for (int dot = 0; dot < 3000; ++dot)
    picture.Pixels()[random() % picture.PixelCount()] =
        static_cast<std::uint32_t>(random()) | 0xff000000u;
  for (int format = kTifFormat; format <= kPngFormat; ++format) {
    std::vector<std::string> files;
    for (const int filling : {0x11, 0xee}) {
      mallopt(M_PERTURB, filling);
      files.push_back(*EncodePicture(format, format == kTifFormat ? 1 : 80, picture));
    }
    mallopt(M_PERTURB, 0);
    EXPECT_EQ(files.front(), files.back()) << format;
  }
}

TEST(Picbuf, LossyTypesStayClose) {
  const TemporaryFolder folder;
  const Raster smooth = Paint(64, 48, [](int x, int y) { return x * 4 << 16 | y * 5 << 8 | 128; });
  for (const auto& [format, option, tolerance] :
       {std::tuple{kJpgFormat, 75, 12}, {kJpgFormat, 100, 6}, {kGifFormat, 0, 40}}) {
    SavePicture(folder / "file", format, option, smooth);
    const Raster loaded = Loaded(folder / "file");
    int worst = 0;
    for (std::size_t i = 0; i < smooth.PixelCount(); ++i)
      for (int shift : {0, 8, 16, 24})
        worst = std::max(worst, std::abs(static_cast<int>(loaded.Pixels()[i] >> shift & 255) -
                                         static_cast<int>(smooth.Pixels()[i] >> shift & 255)));
    EXPECT_LE(worst, tolerance) << format << " " << option;
    EXPECT_GT(worst, 0);
  }
  // A line drawing survives a JPEG after its reduction.
  const Raster lines =
      Paint(80, 60, [](int x, int y) { return x % 16 < 3 || y < 4 ? 0 : 0xffffff; });
  SavePicture(folder / "file", kJpgFormat, 75, lines);
  Raster loaded = Loaded(folder / "file");
  ReduceToBlackAndWhite(loaded);
  EXPECT_EQ(PixelsOf(loaded), PixelsOf(lines));
  const auto small = fs::file_size(folder / "file");
  SavePicture(folder / "file", kJpgFormat, 100, lines);
  EXPECT_GT(fs::file_size(folder / "file"), small);
}

TEST(Picbuf, FewColoursTakeFewBits) {
  const TemporaryFolder folder;
  const Raster lines = Pictures()[3].Picture.Clone();
  SavePicture(folder / "bmp", kBmpFormat, 0, lines);
  EXPECT_EQ(ReadBitmapHeader(BytesOf(folder / "bmp"))->Bits, 1);
  SavePicture(folder / "dib", kDibFormat, 0, lines);
  EXPECT_EQ(BytesOf(folder / "dib"), BytesOf(folder / "bmp").substr(14));
  for (int format : kFormats) {
    SavePicture(folder / "file", format, 0, lines);
    EXPECT_LT(fs::file_size(folder / "file"), 67u * 41u * 4u / 3u) << format;
  }
}

TEST(Picbuf, AFileIsOpenedByItsContentWhateverItsName) {
  const TemporaryFolder folder;
  const Raster picture = test::Draw({"#.#", "..#"});
  const char* names[] = {"plot.jpg", "PLOT.TIF",  "noname",       "two words.gz",
                         "fd:0",     "plot.svg",  "@list",        "plot.png[1-3]",
                         "%d.png",   "Größe.pcx", "msl:plot.msl", "-"};
  for (int format : kFormats) {
    if (format == kJpgFormat) continue;
    SavePicture(folder / "file", format, 0, picture);
    for (const char* name : names) {
      fs::copy_file(folder / "file", folder / name, fs::copy_options::overwrite_existing);
      EXPECT_EQ(PixelsOf(Loaded(folder / name)), PixelsOf(picture)) << name;
    }
  }
}

TEST(Picbuf, BitmapsOfEveryKindAreReadAsFileAndBare) {
  const TemporaryFolder folder;
  const Raster lines = Paint(13, 9, [](int x, int y) { return x * y % 4 != 0 ? 0xffffff : 0; });
  std::vector<test::BitmapKind> kinds;
  for (int bits : {1, 4, 8, 24}) kinds.push_back({12, bits});
  for (std::uint32_t size : {40u, 52u, 56u, 108u, 124u})
    for (int bits : {1, 4, 8, 16, 24, 32})
      for (std::uint32_t compression : {0u, 3u})
        for (bool topDown : {false, true})
          if (compression == 0 || bits == 16 || bits == 32)
            kinds.push_back({size, bits, compression, topDown});
  for (const test::BitmapKind& kind : kinds)
    for (const std::string& bytes : {test::MakeBmp(kind, lines), test::MakeDib(kind, lines)}) {
      SCOPED_TRACE(testing::Message() << "header " << kind.InfoSize << ", bits " << kind.Bits
                                      << ", compression " << kind.Compression << ", top down "
                                      << kind.TopDown << ", starts " << int{bytes[0]});
      WriteBytes(folder / "plot.dib", bytes);
      EXPECT_EQ(PixelsOf(Loaded(folder / "plot.dib")), PixelsOf(lines));

      // Cut into bands and put together it is the same.
      const BitmapHeader header = *ReadBitmapHeader(bytes);
      const std::int64_t rows = BitmapBandRows(header, bytes, 30);
      ASSERT_GT(rows, 0);
      std::vector<std::uint32_t> all;
      for (std::int64_t first = 0; first < 9; first += rows) {
        WriteBytes(folder / "band", BitmapBand(header, bytes, first, std::min(rows, 9 - first)));
        const auto band = PixelsOf(Loaded(folder / "band"));
        all.insert(all.begin(), band.begin(), band.end());
      }
      const Raster whole = ApplyOrientation(test::MakeRaster(13, 9, all), kind.TopDown ? 4 : 1);
      EXPECT_EQ(PixelsOf(whole), PixelsOf(lines));
    }
}

TEST(Picbuf, LargeBitmapsComeInBands) {
  const TemporaryFolder folder;
  const Raster large =
      Paint(2500, 2400, [](int x, int y) { return (x * 7919 ^ y * 104729) & 0xffffff; });
  for (bool topDown : {false, true}) {
    WriteBytes(folder / "large.bmp", test::MakeBmp({.TopDown = topDown}, large));
    const Raster loaded = Loaded(folder / "large.bmp");
    ASSERT_EQ(loaded.Height(), 2400);
    EXPECT_TRUE(std::equal(large.Pixels(), large.Pixels() + large.PixelCount(), loaded.Pixels()));
  }
  const std::string bytes = BytesOf(folder / "large.bmp");
  WriteBytes(folder / "large.bmp", bytes.substr(0, bytes.size() - 7000));
  EXPECT_THAT(LoadError(folder / "large.bmp"), HasSubstr("damaged"));
}

TEST(Picbuf, PicturesOfOtherProgramsShowWhatTheyMean) {
  const TemporaryFolder folder;
  const Raster two = test::MakeRaster(2, 1, {0xff102030u, 0xffffffffu});
  using Pixels = std::vector<std::uint32_t>;
  const Pixels plain = PixelsOf(two), mixed = {0xff878f97u, 0xffffffffu};
  const std::string rgb("\x10\x20\x30\xff\xff\xff", 6);
  // The same pixels with a fourth byte, which the header calls opacity or does not speak of.
  std::string spare = test::MakeBmp({124, 32, 3}, two);
  spare[spare.size() - 5] = '\x80';
  spare[spare.size() - 1] = '\xff';
  std::string opacity = spare;
  opacity.replace(14 + 52, 4, test::LowFirst(0xff000000u, 4));
  // A palette written as multiples of 256, as many programs do, and of 257.
  std::string high(1536, '\0'), both = high;
  for (std::size_t i = 0; i < 1536; i += 2)
    high[i + 1] = both[i] = both[i + 1] = static_cast<char>(i / 2);
  const std::string codes("\0\1\x80\xff", 4);
  const Pixels greys = {0xff000000u, 0xff010101u, 0xff808080u, 0xffffffffu};
  // Components of other sizes than a byte are spread over all of it.
  const auto packed = [](int bits, const char* masks, const char* pixels) {
    std::string bytes =
        test::MakeDib({.Bits = bits, .Compression = 3}, Raster::Filled(3, 1, kBlackPixel));
    bytes.resize(40);
    return bytes + test::FromHex(masks) + test::FromHex(pixels);
  };
  struct Case {
    const char* Name;
    std::string Bytes;
    Pixels Expected;
    int Height = 1;
  };
  const Case cases[] = {
      {"palette", test::MakeTif(4, 1, 3, 1, codes, both), greys},
      {"palette of high bytes", test::MakeTif(4, 1, 3, 1, codes, high), greys},
      {"64-bit offsets", test::BigTif(), {0xff000000u, 0xff404040u, 0xff808080u, 0xffffffffu}},
      {"5, 6 and 5 bits",
       packed(16, "00f80000 e0070000 1f000000", "ffff 1084 0108 0000"),
       {0xffffffffu, 0xff848284u, 0xff080008u}},
      {"4 bits",
       packed(16, "000f0000 f0000000 0f000000", "ff0f 8008 0100 0000"),
       {0xffffffffu, 0xff888800u, 0xff000011u}},
      {"10 bits",
       packed(32, "0000f03f 00fc0f00 ff030000", "ffffff3f 00000020 02000000"),
       {0xffffffffu, 0xff800000u, 0xff000000u}},
      {"PNG on its side",
       test::WithChunk(test::PngOf16Bits(), "eXIf", test::Exif(6)),
       {0xff000000u, 0xff808080u, 0xff000000u},
       3},
      {"mirrored PNG",
       test::WithChunk(test::PngWithOpacity(), "eXIf", test::Exif(2)),
       {0xff010203u, 0xffff7f7fu, 0xffffffffu}},
      {"first frame on its screen",
       test::GifOnScreen(),
       {0xffffffffu, 0xff000000u, 0xffff0000u, 0xffffffffu}},
      {"clear background", test::PngWithOpacity(), {0xffffffffu, 0xffff7f7fu, 0xff010203u}},
      {"clear colour", test::PngWithClearColour(), {0xffffffffu, 0xff848484u, 0xffffffffu}},
      {"16 bits", test::PngOf16Bits(), {0xff000000u, 0xff808080u, 0xff000000u}},
      {"opacity 0 everywhere", test::MakeTga(two, 32, 0x28, 0), plain},
      {"half clear", test::MakeTga(two, 32, 0x28, 128), mixed},
      {"spare byte", test::MakeTga(two, 32, 0x20, 128), plain},
      {"half clear bitmap", opacity, mixed},
      {"spare byte of a bitmap", spare, plain},
      {"from the left, bottom up", test::MakeTga(two, 24, 0x00), plain},
      {"from the right, top down", test::MakeTga(two, 24, 0x30), plain},
      {"mirrored", test::MakeTif(2, 1, 2, 2, rgb), {0xffffffffu, 0xff102030u}},
      {"on its side", test::MakeTif(2, 1, 2, 6, rgb), plain, 2},
      {"upright", test::MakeTif(2, 1, 2, 1, rgb), plain},
      {"inks",
       test::MakeTif(2, 1, 5, 1, std::string("\0\xff\xff\0\0\0\0\0", 8)),
       {0xffff0000u, 0xffffffffu}},
  };
  for (const Case& c : cases) {
    WriteBytes(folder / "file", c.Bytes);
    const auto loaded = LoadPicture(folder / "file");
    EXPECT_EQ(PixelsOf(loaded->Picture), c.Expected) << c.Name;
    EXPECT_EQ(loaded->Warning, "") << c.Name;
    EXPECT_EQ(loaded->Picture.Height(), c.Height) << c.Name;
  }
  // Pixels of 16 x 8: the whole picture, the first frame on a larger screen, and one mirrored.
  const std::string mirrored =
      test::WebPOf(test::WebPChunk("VP8X", test::FromHex("08000000 0f0000 070000")) +
                   test::WebP().substr(12) + test::WebPChunk("EXIF", test::Exif(2)));
  for (const std::string& bytes : {test::WebP(), test::CmykJpg(), test::AnimatedWebP(), mirrored}) {
    WriteBytes(folder / "file", bytes);
    Raster loaded = Loaded(folder / "file");
    if (bytes == test::AnimatedWebP()) {
      ASSERT_EQ(loaded.Width(), 20);
      ASSERT_EQ(loaded.Height(), 10);
      Raster frame(16, 8);
      for (int y = 0; y < 8; ++y) std::copy_n(loaded.Row(y + 2) + 2, 16, frame.Row(y));
      EXPECT_EQ(loaded.Row(1)[2] & loaded.Row(9)[1] & loaded.Row(2)[18], kWhitePixel);
      loaded = std::move(frame);
    }
    ASSERT_EQ(loaded.Width(), 16);
    ASSERT_EQ(loaded.Height(), 8);
    std::uint32_t red = loaded.Row(3)[2], white = loaded.Row(3)[13];
    if (bytes == mirrored) std::swap(red, white);
    EXPECT_TRUE((red >> 16 & 255) > 230 && (red >> 8 & 255) < 25 && (red & 255) < 25) << red;
    EXPECT_TRUE((white >> 16 & 255) > 230 && (white >> 8 & 255) > 230) << white;
  }
}

TEST(Picbuf, ACameraHeldOnItsSideIsTurned) {
  const TemporaryFolder folder;
  const Raster wide = Paint(48, 16, [](int x, int) { return x < 24 ? 0 : 0xffffff; });
  SavePicture(folder / "file", kJpgFormat, 90, wide);
  std::string bytes = BytesOf(folder / "file");
  const std::string exif = test::FromHex("ffe10022 457869660000 49492a0008000000") +
                           test::FromHex("0100 1201 0300 01000000 06000000 00000000");
  WriteBytes(folder / "file", bytes.insert(2, exif));
  const Raster loaded = Loaded(folder / "file");
  ASSERT_EQ(loaded.Height(), 48);
  EXPECT_LT(loaded.Row(2)[8] & 255, 20u);
  EXPECT_GT(loaded.Row(45)[8] & 255, 235u);
}

TEST(Picbuf, ErrorsNameTheFileAndTheReason) {
  const TemporaryFolder folder;
  WriteBytes(folder / "empty.tif", "");
  WriteBytes(folder / "drawing.jpg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
  const std::pair<const char*, const char*> cases[] = {{"empty.tif", "The file is empty."},
                                                       {"missing.tif", "No such file"},
                                                       {"drawing.jpg", "an SVG drawing"}};
  for (const auto& [name, reason] : cases)
    EXPECT_THAT(LoadError(folder / name), AllOf(HasSubstr(name), HasSubstr(reason)));
  EXPECT_THAT(LoadError(folder.Path()), HasSubstr("Is a directory"));

  const Raster picture = test::Draw({"#"});
  const auto before = folder.Names();
  EXPECT_THAT(SaveError(folder / "gone/plot.tif", kTifFormat, picture),
              AllOf(HasSubstr("plot.tif"), HasSubstr("No such file")));
  EXPECT_THAT(SaveError(folder / "plot.png", kNoFormat, picture),
              AllOf(HasSubstr("plot.png"), HasSubstr("tif, tga, bmp, gif, dib, pcx, jpg or png")));
  EXPECT_THAT(SaveError(folder / "plot.tif", kPngFormat + 1, picture), HasSubstr("must end in"));
  EXPECT_THAT(SaveError(folder / "plot.tif", kTifFormat, Raster()), HasSubstr("no picture"));
  EXPECT_EQ(folder.Names(), before);
}

TEST(Picbuf, PagesEnlargedByHalfAreSavedAndComeBack) {
  const TemporaryFolder folder;
  Raster large = Raster::Filled(13050, 13050, kWhitePixel);  // of 9000 x 9000
  large.Row(13049)[13000] = kBlackPixel;
  ASSERT_TRUE(SavePicture(folder / "large", kTifFormat, 0, large));
  const Raster loaded = Loaded(folder / "large");
  ASSERT_EQ(loaded.PixelCount(), large.PixelCount());
  EXPECT_TRUE(std::equal(large.Pixels(), large.Pixels() + large.PixelCount(), loaded.Pixels()));
}

TEST(Picbuf, AFileThatChangesMeanwhileIsNotCalledDamaged) {
  const TemporaryFolder folder;
  const fs::path file = folder / "large.tif";
  SavePicture(file, kTifFormat, 1, Paint(4000, 3000, [](int x, int y) { return x * y; }));
  for (const std::uintmax_t size : {fs::file_size(file) + 1, std::uintmax_t{100}}) {
    try {
      LoadPicture(file, [&](int) { return fs::resize_file(file, size), true; });
      ADD_FAILURE() << "cut to " << size;
    } catch (const RunTimeError& error) {
      EXPECT_THAT(error.what(), HasSubstr("changed while it was being opened"));
    }
  }
}

TEST(Picbuf, StoppingIsNoErrorAndLeavesTheOldFile) {
  const TemporaryFolder folder;
  const Raster large =
      Paint(4000, 3000, [](int x, int y) { return (x ^ y) * 0x010203 & 0xffffff; });
  std::vector<int> percents;
  const PictureProgress watch = [&](int percent) { return percents.push_back(percent), true; };
  ASSERT_TRUE(SavePicture(folder / "large.tif", kTifFormat, 1, large, watch));
  ASSERT_TRUE(LoadPicture(folder / "large.tif", watch).has_value());
  EXPECT_FALSE(percents.empty());
  EXPECT_THAT(percents, testing::Each(AllOf(testing::Ge(0), testing::Le(100))));

  const PictureProgress stop = [](int) { return false; };
  EXPECT_FALSE(LoadPicture(folder / "large.tif", stop).has_value());
  WriteBytes(folder / "old.tif", "old");
  EXPECT_FALSE(SavePicture(folder / "old.tif", kTifFormat, 1, large, stop));
  EXPECT_EQ(BytesOf(folder / "old.tif"), "old");
  EXPECT_THAT(folder.Names(), testing::ElementsAre("large.tif", "old.tif"));
}

}  // namespace
}  // namespace graphize
