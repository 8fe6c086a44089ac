#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <fstream>
#include <random>

#include "base/run_time_error.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "raster/size_limits.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"

// Whatever is in a file: decoding it within this process gives a picture or an error that names it,
// and does nothing beside.

namespace graphize {
namespace {

using namespace std::string_literals;
using test::FromHex;
using test::LowFirst;
using test::TemporaryFolder;
using test::WriteBytes;
using testing::HasSubstr;

Raster Checks(int width, int height) {
  Raster picture(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      picture.Row(y)[x] = (x / 3 + y / 2) % 3 == 0
                              ? kBlackPixel
                              : 0xff000000u | static_cast<std::uint32_t>((x * 11 << 16) + y * 9);
  return picture;
}

/// One small file of every type and of several kinds.
std::vector<std::string> SoundFiles(const TemporaryFolder& folder) {
  std::vector<std::string> files;
  for (std::int16_t format = kTifFormat; format <= kJpgFormat; ++format)
    for (const Raster& picture : {Checks(21, 13), Raster::Filled(30, 4, kBlackPixel)}) {
      SavePicture(folder / "sound", format, 75, picture);
      files.push_back(test::BytesOf(folder / "sound"));
    }
  const Raster few = Checks(5, 4);
  files.insert(
      files.end(),
      {test::PngWithOpacity(), test::PngWithClearColour(), test::PngOf16Bits(), test::WebP(),
       test::CmykJpg(), test::MakeTga(few, 32, 0x38, 99),
       test::MakeDib({.InfoSize = 108, .Bits = 32, .Compression = 3}, few),
       test::MakeTif(2, 2, 5, 7, std::string(16, '\x33')),
       test::MakeTif(4, 2, 3, 1, "\1\2\3\4\5\6\7\x8", std::string(1536, '\x33')), test::BigTif(),
       test::WithChunk(test::PngOf16Bits(), "eXIf", test::Exif(6)), test::AnimatedWebP(),
       test::GifOnScreen(), test::MakeBmp({.Bits = 16, .Compression = 3}, few)});
  return files;
}

/// Loads `bytes`; a failure unless a usable picture or an error that names the file comes of it.
void ExpectPictureOrError(const std::string& bytes) {
  try {
    const auto loaded = DecodePictureHere("broken.tga", bytes);
    ASSERT_TRUE(loaded.has_value());
    const Raster& picture = loaded->Picture;
    EXPECT_EQ(DecodeRefusal(picture.Width(), picture.Height()), "");
    for (std::size_t i = 0; i < picture.PixelCount(); ++i)
      ASSERT_EQ(picture.Pixels()[i] >> 24, 255u);
  } catch (const RunTimeError& error) {
    EXPECT_THAT(error.what(), HasSubstr("broken.tga"));
  }
}

TEST(PicbufDamage, CutFiles) {
  const TemporaryFolder folder;
  for (const std::string& file : SoundFiles(folder)) {
    const std::size_t step = std::max<std::size_t>(1, file.size() / 120);
    for (std::size_t size = 0; size < file.size(); size += size < 64 ? 1 : step)
      ExpectPictureOrError(file.substr(0, size));
  }
}

TEST(PicbufDamage, FlippedBits) {
  const TemporaryFolder folder;
  std::mt19937 random(20240229);
  for (const std::string& file : SoundFiles(folder))
    for (int i = 0; i < 150; ++i) {
      std::string bytes = file;
      // Half of the damage goes to the header, where it does most.
      const std::size_t reach = i % 2 == 0 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size();
      for (int flips = 0; flips < 1 + i % 3; ++flips)
        bytes[random() % reach] ^= static_cast<char>(1 << random() % 8);
      ExpectPictureOrError(bytes);
    }
}

/// A small JPEG whose header says another size, height first.
std::string JpgClaiming(const TemporaryFolder& folder, const char* size) {
  SavePicture(folder / "small", kJpgFormat, 75, Raster::Filled(8, 8, kBlackPixel));
  std::string bytes = test::BytesOf(folder / "small");
  return bytes.replace(bytes.find("\xff\xc0") + 5, 4, FromHex(size));
}

TEST(PicbufDamage, GiantHeadersAreRefusedInNumbers) {
  const TemporaryFolder folder;
  const Raster dot = Raster::Filled(1, 1, kBlackPixel);
  std::string bmp = test::MakeBmp({}, dot), dib = test::MakeDib({.InfoSize = 12}, dot);
  bmp.replace(18, 8, LowFirst(60000, 4) + LowFirst(60000, 4));
  dib.replace(4, 4, FromHex("60ea60ea"));
  const std::pair<const char*, std::string> cases[] = {
      {"tif", test::MakeTif(60000, 60000, 2, 1, std::string(12, '\0'))},
      {"square tif", test::MakeTif(20000, 20000, 2, 1, std::string(12, '\0'))},
      {"tga", FromHex("00 00 02 0000000000 00000000 60ea60ea 18 20") + std::string(12, '\0')},
      {"bmp", bmp},
      {"dib", dib},
      {"gif", "GIF89a" + FromHex("60ea60ea 80 00 00 000000ffffff 2c00000000 60ea60ea 00 02")},
      {"frame of a gif",
       "GIF89a" +
           FromHex("05000500 80 00 00 000000ffffff 2c00000000 60ea60ea 00 02 02 4c01 00 3b")},
      {"pcx", FromHex("0a050108 00000000 5fea5fea") + std::string(200, '\0')},
      {"jpg", JpgClaiming(folder, "ea60ea60")},
      {"square jpg", JpgClaiming(folder, "50005000")},
      {"png", FromHex("89504e470d0a1a0a 0000000d49484452 0000ea60 0000ea60 0800000000 a5b92a9e")},
  };
  for (const auto& [name, bytes] : cases) {
    try {
      const auto loaded = DecodePictureHere("giant", bytes);
      ADD_FAILURE() << name << " was opened";
    } catch (const RunTimeError& error) {
      EXPECT_THAT(error.what(), HasSubstr("too large")) << name;
    }
  }
}

TEST(PicbufDamage, ACutPhotographIsShownWithAWarning) {
  const TemporaryFolder folder;
  SavePicture(folder / "cut.jpg", kJpgFormat, 75, Checks(100, 100));
  const std::string bytes = test::BytesOf(folder / "cut.jpg");
  WriteBytes(folder / "cut.jpg", bytes.substr(0, bytes.size() * 2 / 3));
  const auto loaded = LoadPicture(folder / "cut.jpg");
  EXPECT_EQ(loaded->Picture.Height(), 100);
  EXPECT_THAT(loaded->Warning, HasSubstr("damaged or incomplete"));
}

TEST(PicbufDamage, WhatWouldBeShownWrongIsSaid) {
  const TemporaryFolder folder;
  const std::string rgb(12, '\x70');
  const std::string palette = test::MakeTif(2, 2, 3, 1, "\1\2\3\4", std::string(1536, '\x33'));
  WriteBytes(folder / "cut.tif", palette.substr(0, palette.size() - 700));
  EXPECT_THAT(LoadPicture(folder / "cut.tif")->Warning, HasSubstr("damaged or incomplete"));
  WriteBytes(folder / "lab.tif", test::MakeTif(2, 2, 8, 1, rgb));
  try {
    LoadPicture(folder / "lab.tif");
    ADD_FAILURE();
  } catch (const RunTimeError& error) {
    EXPECT_THAT(error.what(), HasSubstr("L*a*b*"));
  }
}

/// A zlib stream (RFC 1950, 1951) of 7 million letters in 44 kB.
std::string LongText() {
  constexpr std::uint64_t kRuns = 27'000, kRun = 258, kLetters = 1 + kRuns * kRun;
  std::string bytes = FromHex("7801");
  std::uint32_t bits = 0;
  int count = 0;
  const auto put = [&](std::uint32_t value, int size) {
    for (bits |= value << count, count += size; count >= 8; count -= 8, bits >>= 8)
      bytes += static_cast<char>(bits);
  };
  put(0b011, 3);       // the last block, with the fixed codes
  put(0b10001001, 8);  // an "a", and runs of 258 more at distance 1
  for (std::uint64_t i = 0; i < kRuns; ++i) put(0b00000'10100011, 13);
  put(0, 7 + 7);
  const std::uint64_t low = 1 + 'a' * kLetters,
                      high = kLetters + 'a' * (kLetters * (kLetters + 1) / 2);
  const std::string adler =
      LowFirst(static_cast<std::uint32_t>(low % 65521 | high % 65521 << 16), 4);
  return bytes + std::string(adler.rbegin(), adler.rend());
}

/// A TIFF of one pixel with 3000 tags, all of which hold the same 700 kB; `behind` a sound one.
std::string TifOfMuch(bool behind) {
  const std::string sound = test::MakeTif(1, 1, 2, 1, "\x33\x33\x33");
  constexpr std::uint32_t kTags = 3000, kSize = 700'000, kOwn = 10;
  const std::string own = sound.substr(8 + 3 + 2, 12 * kOwn);
  const auto start = static_cast<std::uint32_t>(sound.size());
  const std::uint32_t values = start + 2 + 12 * (kOwn + kTags) + 4;
  std::string bytes = sound + LowFirst(kOwn + kTags, 2) + own;
  for (std::uint32_t i = 0; i < kTags; ++i)
    bytes += LowFirst(50'000 + i, 2) + LowFirst(7, 2) + LowFirst(kSize, 4) + LowFirst(values, 4);
  bytes += LowFirst(0, 4) + std::string(kSize, 'x');
  return bytes.replace(behind ? start - 4 : 4, 4, LowFirst(start, 4));
}

/// Kilobytes of this process, by their name in Linux's /proc/self/status.
long Kilobytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name)) return std::stol(line.substr(name.size() + 1));
  return 0;
}

TEST(PicbufDamage, MetadataTakeNoMoreMemoryThanTheFile) {
  std::string texts = test::PngWithOpacity(), comments = test::GifOnScreen(), segments;
  const std::string text = std::string(2, '\0') + LongText();
  for (int i = 0; i < 60; ++i)
    texts = test::WithChunk(texts, "zTXt", "key" + std::to_string(i) + text);
  std::string comment = "\x21\xfe";
  for (int i = 0; i < 40'000; ++i) comment += "\xff" + std::string(255, 'c');
  comments.insert(19, comment + '\0');
  for (int i = 0; i < 150; ++i)
    segments += "\xff\xe2\xff\xff" + "ICC_PROFILE"s + std::string(0xffff - 13, 'p');
  std::string photograph = test::CmykJpg();
  photograph.insert(2, segments);
  const std::string packets =
      test::WebPOf(test::WebPChunk("VP8X", FromHex("04000000 0f0000 070000")) +
                   test::WebP().substr(12) + test::WebPChunk("XMP ", std::string(10'000'000, 'x')));
  const std::pair<const char*, std::string> cases[] = {
      {"png", texts},    {"gif", comments},         {"jpg", photograph},
      {"webp", packets}, {"tif", TifOfMuch(false)}, {"second of a tif", TifOfMuch(true)}};
  for (const auto& [name, bytes] : cases) {
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak is counted from here
    const long before = Kilobytes("VmRSS");
    ASSERT_LT(Kilobytes("VmHWM"), before + 8'000);
    const auto loaded = DecodePictureHere("much", bytes);
    EXPECT_LE(loaded->Picture.Width(), 16) << name;
    EXPECT_EQ(loaded->Warning, "") << name;
    EXPECT_LT(Kilobytes("VmHWM") - before, 64'000 + 3 * std::ssize(bytes) / 1000) << name;
  }
}

TEST(PicbufDamage, HostileFilesStartNothingAndWriteNothing) {
  const TemporaryFolder folder, temporary;
  const std::string secret = (folder / "secret.tif").string(), mark = (folder / "mark").string();
  SavePicture(secret, kTifFormat, 1, Checks(4, 4));
  setenv("TMPDIR", temporary.Path().c_str(), 1);
  setenv("MAGICK_TMPDIR", temporary.Path().c_str(), 1);
  const std::string svg = "<svg width='9' height='9' xmlns:xlink='x'><image xlink:href='" + secret +
                          "' width='9' height='9'/><image xlink:href='|touch " + mark + "'/></svg>";
  const std::string postScript =
      "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n(%pipe%touch " + mark + ") (w) file\n";
  const std::string drawing = "push graphic-context\nviewbox 0 0 9 9\nimage over 0,0 0,0 '|touch " +
                              mark + "'\npop graphic-context\n";
  const std::string msl = "<?xml version='1.0'?><image><read filename='" + secret +
                          "'/><write filename='" + mark + "'/></image>";
  const std::string tgaHead = FromHex("00 00 02 0000000000 00000000 09000900 18 20");
  const std::string scripts[] = {svg, postScript, drawing, msl, "http://127.0.0.1/x.png"};
  const auto before = folder.Names();

  rusage childrenBefore{}, childrenAfter{};
  getrusage(RUSAGE_CHILDREN, &childrenBefore);
  for (const std::string& script : scripts)
    for (const char* name : {"a.jpg", "a.tif", "a.svg", "a.eps", "x.gz", "msl:a", "a.mvg"})
      // As it is, and behind the marks of types that do pass the probe.
      for (const std::string& mask : {""s, "\xff\xd8\xff"s, "GIF89a"s, "II*\0"s, tgaHead,
                                      "RIFF\x40\0\0\0WEBP"s, "\x89PNG\r\n\x1a\n"s}) {
        const std::filesystem::path path = folder / name;
        EXPECT_ANY_THROW({
          // A TGA of arbitrary pixels is a picture.
          if (DecodePictureHere(path, mask + script) && mask == tgaHead)
            throw RunTimeError("opened");
        }) << name;
      }
  getrusage(RUSAGE_CHILDREN, &childrenAfter);
  EXPECT_EQ(childrenAfter.ru_minflt, childrenBefore.ru_minflt) << "a process was started";
  EXPECT_EQ(folder.Names(), before);
  EXPECT_TRUE(temporary.Names().empty());
  unsetenv("TMPDIR");
  unsetenv("MAGICK_TMPDIR");
}

}  // namespace
}  // namespace graphize
