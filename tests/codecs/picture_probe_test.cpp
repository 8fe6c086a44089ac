#include "codecs/picture_probe.h"
#include "raster/size_limits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ascii_picture.h"
#include "support/picture_bytes.h"

namespace graphize {
namespace {

using namespace std::string_literals;
using test::FromHex;
using test::LowFirst;
using testing::HasSubstr;

const std::string kPcxHead =
    FromHex("0a 05 01 08 00 00 00 00 09 00 04 00") + std::string(116, '\0');
const std::string kTgaHead = FromHex("00 00 02 00 00 00 00 00 00 00 00 00 03 00 02 00 18 20");

TEST(PictureGate, TheContentTellsTheTypeWhateverTheName) {
  const Raster picture = test::Draw({"#.#", "..#"});
  struct Case {
    PictureType Type;
    std::string Bytes;
    int Width, Height;
  };
  const Case cases[] = {
      {PictureType::Tif, "II*\0\x08\0\0\0"s, 0, 0},
      {PictureType::Tif, "MM\0*\0\0\0\x08"s, 0, 0},
      {PictureType::Jpg, "\xff\xd8\xff\xe1"s, 0, 0},
      {PictureType::Png, test::PngOf16Bits(), 3, 1},
      {PictureType::WebP, test::WebP(), 0, 0},
      {PictureType::Gif, "GIF87a\x05\0\x07\0"s, 5, 7},
      {PictureType::Gif, "GIF89a\x05\x01\x07\0"s, 261, 7},
      {PictureType::Bmp, test::MakeBmp({}, picture), 3, 2},
      {PictureType::Bmp, test::MakeBmp({.InfoSize = 12}, picture), 3, 2},
      {PictureType::Dib, test::MakeDib({.TopDown = true}, picture), 3, 2},
      {PictureType::Dib, test::MakeDib({.InfoSize = 12, .Bits = 1}, picture), 3, 2},
      {PictureType::Pcx, kPcxHead, 10, 5},
      {PictureType::Tga, kTgaHead, 3, 2},
  };
  for (const Case& c : cases)
    for (const char* name : {"plot", "plot.tga", "plot.png", "plot.svg.gz"}) {
      const ProbeResult verdict = ProbePicture(name, c.Bytes);
      EXPECT_EQ(verdict.Refusal, "") << name;
      EXPECT_EQ(verdict.Type, c.Type) << name << " " << c.Bytes.substr(0, 4);
      EXPECT_EQ(verdict.Width, c.Width);
      EXPECT_EQ(verdict.Height, c.Height);
    }
}

TEST(PictureGate, AnUnusualTgaIsBelievedByItsName) {
  std::string placed = kTgaHead;
  placed[8] = 5;  // a position on the screen
  EXPECT_EQ(ProbePicture("PLOT.TGA", placed).Type, PictureType::Tga);
  EXPECT_EQ(ProbePicture("plot.jpg", placed).Type, PictureType::None);
  const std::pair<int, int> faults[] = {{1, 2},  {2, 0},   {2, 4},    {12, 0},
                                        {14, 0}, {16, 23}, {17, 0x60}};
  for (const auto& [place, value] : faults) {
    std::string bytes = kTgaHead;
    bytes[place] = static_cast<char>(value);
    EXPECT_EQ(ProbePicture("plot.tga", bytes).Type, PictureType::None) << place << " " << value;
  }
  EXPECT_TRUE(ProbePicture("a", FromHex("00000200000000000000000003000200 18 30")).Mirrored);
}

TEST(PictureGate, WhatIsNoPictureIsRefusedByItsName) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "The file is empty."},
      {"%PDF-1.4", "a PDF document"},
      {"%!PS-Adobe-3.0 EPSF", "PostScript"},
      {"\xef\xbb\xbf<?xml version='1.0'?>\n<!-- a -->\n<svg width='1'>", "an SVG drawing"},
      {"push graphic-context\nimage over 0,0 0,0 'x.png'", "a text file"},
      {"<!DOCTYPE HTML>\n<title>BM</title>", "a web page"},
      {"BM is how a letter begins, not always a bitmap", "a text file"},
      {"\x1f\x8b\x08\0"s, "gzip"},
      {"PK\3\4", "ZIP"},
      {"\0\0\1\0\1\0\x10\x10"s, "an icon"},
      {"\0\0\0\x1c"
       "ftypavif"s,
       "AVIF"},
      {"P6\n3 2\n255\n\xff\0\0"s, "PNM"},
      {"RIFF\x24\0\0\0WAVEfmt "s, "a sound"},
      {"RIFF\0WEBP"s, "a sound"},
      {"\0\1\2\3\4\5"s, "It is not a picture of a type that can be opened (tif, tga, bmp"},
      {"\xff\xd8", "It is not a picture"},
      {"II*", "a text file"},
  };
  for (const auto& [bytes, words] : cases) {
    const ProbeResult verdict = ProbePicture("plot.jpg", bytes);
    EXPECT_EQ(verdict.Type, PictureType::None) << words;
    EXPECT_THAT(verdict.Refusal, HasSubstr(words));
  }
}

TEST(PictureGate, SizesThatAreTooMuchAreToldInNumbers) {
  EXPECT_EQ(SizeRefusal(1, 1), "");
  EXPECT_EQ(SizeRefusal(32767, 1), "");
  EXPECT_EQ(SizeRefusal(10000, 15000), "");
  EXPECT_EQ(SizeRefusal(9933, 14043), "");
  EXPECT_THAT(SizeRefusal(32768, 1), HasSubstr("32768 x 1"));
  EXPECT_THAT(SizeRefusal(1, 32768), HasSubstr("32767"));
  EXPECT_THAT(SizeRefusal(20000, 20000), HasSubstr("20000 x 20000"));
  EXPECT_THAT(SizeRefusal(0, 5), HasSubstr("damaged"));
  EXPECT_THAT(SizeRefusal(5, -5), HasSubstr("damaged"));

  std::string pcx = kPcxHead, bmp = test::MakeBmp({}, test::Draw({"#"}));
  pcx[8] = pcx[9] = '\xff';
  EXPECT_EQ(ProbePicture("a", pcx).Refusal, "") << "65536 x 5: of that a part is opened";
  EXPECT_THAT(DecodeRefusal(1'000'001, 1), HasSubstr("1000001 x 1"));
  EXPECT_THAT(DecodeRefusal(80000, 5000), HasSubstr("400 million"));
  pcx[4] = 1, pcx[8] = 0, pcx[9] = 0;
  EXPECT_THAT(ProbePicture("a", pcx).Refusal, HasSubstr("0 x 5"));
  bmp.replace(22, 4, LowFirst(0x80000000u, 4));
  EXPECT_THAT(ProbePicture("a", bmp).Refusal, HasSubstr("1 x 2147483648"));
}

}  // namespace
}  // namespace graphize
