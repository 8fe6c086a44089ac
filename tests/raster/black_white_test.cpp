#include "raster/black_white.h"

#include <gtest/gtest.h>

#include "support/picture_bytes.h"

namespace graphize {
namespace {

TEST(BlackWhite, OneOtherColourAnywhereIsSeen) {
  const int width = 997, height = 11;  // no multiple of any block
  Raster picture(width, height);
  for (std::size_t i = 0; i < picture.PixelCount(); ++i)
    picture.Pixels()[i] = i % 3 == 0 ? kBlackPixel : kWhitePixel;
  EXPECT_TRUE(IsBlackAndWhite(picture));
  EXPECT_TRUE(IsBlackAndWhite(Raster()));
  EXPECT_TRUE(IsBlackAndWhite(Raster::Filled(5, 1, kBlackPixel)));

  for (std::size_t place : {std::size_t{0}, std::size_t{4095}, std::size_t{4096}, std::size_t{9000},
                            picture.PixelCount() - 1}) {
    const std::uint32_t old = picture.Pixels()[place];
    for (std::uint32_t colour : {0x000001u, 0x010000u, 0x000100u, 0x7fffffu, 0xfffffeu, 0xfeffffu,
                                 0xff00ffu, 0x800000u, 0x808080u, 0x404040u, 0xffff00u}) {
      picture.Pixels()[place] = 0xff000000u | colour;
      EXPECT_FALSE(IsBlackAndWhite(picture)) << place << " " << std::hex << colour;
    }
    picture.Pixels()[place] = old;
  }
  EXPECT_TRUE(IsBlackAndWhite(picture));
}

TEST(BlackWhite, TheMiddleOfTheLuminanceDivides) {
  // All greys, then a lattice of colours that has the primaries and many near the middle.
  std::vector<std::uint32_t> pixels;
  for (std::uint32_t grey = 0; grey < 256; ++grey) pixels.push_back(0xff000000u + grey * 0x010101u);
  for (std::uint32_t red = 0; red < 256; red += 15)
    for (std::uint32_t green = 0; green < 256; green += 5)
      for (std::uint32_t blue = 0; blue < 256; blue += 3)
        pixels.push_back(0xff000000u | red << 16 | green << 8 | blue);
  Raster picture = test::MakeRaster(static_cast<int>(pixels.size()), 1, pixels);
  ReduceToBlackAndWhite(picture);
  EXPECT_TRUE(IsBlackAndWhite(picture));
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const std::uint32_t p = pixels[i];
    const double luminance =
        (299.0 * (p >> 16 & 255) + 587.0 * (p >> 8 & 255) + 114.0 * (p & 255)) / 1000.0;
    ASSERT_EQ(picture.Pixels()[i], luminance < 127.5 ? 0xff000000u : 0xffffffffu) << std::hex << p;
  }
  EXPECT_EQ(picture.Pixels()[127], kBlackPixel);
  EXPECT_EQ(picture.Pixels()[128], kWhitePixel);
}

TEST(BlackWhite, WhatBecomesWhiteButIsDarkerThanItsPaperIsKnownToBeFaint) {
  constexpr int kWidth = 150, kHeight = 70;
  // Grey paper on the left, white paper on the right, and no paper at all in the last columns.
  Raster picture(kWidth, kHeight);
  const auto grey = [](std::uint32_t level) { return 0xff000000u + level * 0x010101u; };
  const auto paper = [](int x) { return x < 64 ? 180u : x < 128 ? 255u : 90u; };
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) picture.Row(y)[x] = grey(paper(x));
  // A line in each: black, faint and paper in turn.
  const std::uint32_t levels[][3] = {{120, 150, 170}, {120, 190, 240}};
  for (int x = 0; x < 128; ++x) picture.Row(66)[x] = grey(levels[x / 64][x % 3]);
  ReduceToBlackAndWhite(picture);
  EXPECT_TRUE(IsBlackAndWhite(picture));
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x)
      ASSERT_EQ(picture.Faint.Get(x, y), y == 66 && x < 128 && x % 3 == 1) << x << ' ' << y;
  }
  // It goes with the picture, and a raster made from other pixels has none.
  EXPECT_TRUE(picture.Clone().Faint.Get(1, 66));
  EXPECT_TRUE(Raster(kWidth, kHeight).Faint.IsEmpty());
}

}  // namespace
}  // namespace graphize
