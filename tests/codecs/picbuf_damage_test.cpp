#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <random>

#include "base/run_time_error.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "raster/size_limits.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"

// Whatever is in a file: loading it gives a picture or an error that names it, and does nothing
// beside.

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
  files.insert(files.end(),
               {test::PngWithOpacity(), test::PngWithClearColour(), test::PngOf16Bits(),
                test::WebP(), test::CmykJpg(), test::MakeTga(few, 32, 0x38, 99),
                test::MakeDib({.InfoSize = 108, .Bits = 32, .Compression = 3}, few),
                test::MakeTif(2, 2, 5, 7, std::string(16, '\x33'))});
  return files;
}

/// Loads `bytes`; a failure unless a usable picture or an error that names the file comes of it.
void ExpectPictureOrError(const TemporaryFolder& folder, const std::string& bytes) {
  std::filesystem::remove(folder / "broken.tga");  // overwriting would wait for the disk
  WriteBytes(folder / "broken.tga", bytes);
  try {
    const auto loaded = LoadPicture(folder / "broken.tga");
    ASSERT_TRUE(loaded.has_value());
    const Raster& picture = loaded->Picture;
    EXPECT_EQ(SizeRefusal(picture.Width(), picture.Height()), "");
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
      ExpectPictureOrError(folder, file.substr(0, size));
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
      ExpectPictureOrError(folder, bytes);
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
      {"square jpg", JpgClaiming(folder, "40004000")},
      {"png", FromHex("89504e470d0a1a0a 0000000d49484452 0000ea60 0000ea60 0800000000 a5b92a9e")},
      {"webp",
       FromHex("52494646 1a000000 57454250 5650384c 0d000000 2f ffffff0f 0000000000000000")},
  };
  for (const auto& [name, bytes] : cases) {
    WriteBytes(folder / "giant", bytes);
    try {
      const auto loaded = LoadPicture(folder / "giant");
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
        WriteBytes(path, mask + script);
        EXPECT_ANY_THROW({
          // A TGA of arbitrary pixels is a picture.
          if (LoadPicture(path) && mask == tgaHead) throw RunTimeError("opened");
        }) << name;
        std::filesystem::remove(path);
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
