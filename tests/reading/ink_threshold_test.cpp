#include "reading/ink_threshold.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/colour_plot.h"

namespace graphize {
namespace {

using test::ColourPlot;
using Kind = InkThreshold::Kind;

constexpr std::uint32_t kPale = 0xffd8d8d8, kYellow = 0xfff0d020;

double Wave(double u) {
  return 0.5 + 0.35 * std::sin(9 * u);
}

TEST(InkThreshold, FindsTheInkWhereAFixedOneLosesItOrDrownsInShade) {
  struct Case {
    const char* Name;
    std::uint32_t Paper, Ink;
    double Fall, Fade, Grain;
    bool Auto;  // one level for all of it is enough
  };
  constexpr Case kCases[] = {
      {"clean", kWhitePixel, kBlackPixel, 0, 0, 0, true},
      {"pale", kWhitePixel, 0xffa0a0a0, 0, 0, 3, true},
      {"dark paper", 0xff706858, kBlackPixel, 0, 0, 3, true},
      {"uneven light", 0xfff4f0e4, 0xff302820, 0.6, 0, 4, false},
      {"faded", 0xfff4f0e4, 0xff404040, 0.1, 0.65, 4, false},
      {"yellow", kWhitePixel, kYellow, 0, 0, 3, false},
      {"light on dark", 0xff101828, 0xffe8d860, 0, 0, 4, true},
  };
  for (const Case& test : kCases) {
    SCOPED_TRACE(test.Name);
    ColourPlot plot(test.Paper);
    if (test.Paper == kWhitePixel && test.Ink != 0xffa0a0a0) plot.Grid(kPale);
    test::PlotDrawing layer = plot.Layer();
    layer.Curve(Wave, {.Thickness = 3}, 0.04, 0.96);
    layer.Frame({.Thickness = 2});
    plot.Put(layer, test.Ink);
    plot.Scan(test.Fall, test.Fade, test.Grain);
    const Raster truth = layer.GreyPicture();
    for (const Kind kind : {Kind::Auto, Kind::Local}) {
      if (kind == Kind::Auto && !test.Auto) continue;
      Raster reduced = plot.Picture.Clone();
      Reduce(reduced, {.Is = kind});
      ASSERT_TRUE(IsBlackAndWhite(reduced));
      int ink = 0, found = 0, paper = 0, wrong = 0;
      for (std::size_t i = 0; i < truth.PixelCount(); ++i) {
        const int level = static_cast<int>(truth.Pixels()[i] & 0xff);
        const bool isBlack = IsBlackPixel(reduced.Pixels()[i]);
        if (level < 64) ++ink, found += isBlack ? 1 : 0;
        if (level > 240) ++paper, wrong += isBlack ? 1 : 0;
      }
      EXPECT_GT(found, 0.995 * ink) << static_cast<int>(kind);
      EXPECT_LT(wrong, 0.0005 * paper) << static_cast<int>(kind);
    }
  }
}

TEST(InkThreshold, AnyPictureIsReducedWhateverItsSizeAndColours) {
  std::uint32_t random = 7;
  for (const auto& [width, height] : {std::pair(1, 1), {3, 70}, {200, 1}, {130, 131}}) {
    Raster noise(width, height);
    for (std::size_t i = 0; i < noise.PixelCount(); ++i) {
      random = random * 1664525u + 1013904223u;
      noise.Pixels()[i] = 0xff000000u | random >> 8;
    }
    for (const Kind kind : {Kind::Auto, Kind::Local}) {
      for (int flat = 0; flat < 2; ++flat) {
        Raster picture = flat ? Raster::Filled(width, height, 0xff808080) : noise.Clone();
        Reduce(picture, {.Is = kind});
        EXPECT_TRUE(IsBlackAndWhite(picture));
      }
    }
  }
  // Paper alone has no ink.
  ColourPlot empty(0xffe0d8c8);
  empty.Scan(0.5, 0, 3);
  Reduce(empty.Picture, {.Is = Kind::Local});
  int black = 0;
  for (std::size_t i = 0; i < empty.Picture.PixelCount(); ++i)
    black += IsBlackPixel(empty.Picture.Pixels()[i]) ? 1 : 0;
  EXPECT_LT(black, 12);
}

TEST(InkThreshold, LittleIsDoneBetweenTwoLooksWhetherToStop) {
  const int width = 2000, height = 1500;
  for (const Kind kind : {Kind::Fixed, Kind::Auto, Kind::Local}) {
    for (const std::uint32_t paper : {0xfff0f0f0u, 0xff101828u}) {
      Raster page = Raster::Filled(width, height, paper);
      for (int y = 0; y < height; y += 7) std::fill_n(page.Row(y), width, 0xff808080u);
      PictureOperation operation;
      EXPECT_TRUE(Reduce(page, {.Is = kind}, operation));
      EXPECT_GE(operation.Stopped.Looks() * (1 << 18), width * height) << static_cast<int>(kind);
      EXPECT_EQ(operation.Percent, 100);
      operation.Stopped = true;
      EXPECT_FALSE(Reduce(page, {.Is = kind}, operation)) << static_cast<int>(kind);
    }
  }
}

}  // namespace
}  // namespace graphize
