// The image tools by what must be true of them, and against slow and obvious ways.

#include "image_tools/picture_tools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <tuple>

#include "image_tools/colour_reduction.h"
#include "image_tools/nearest_colour.h"
#include "image_tools/neighbourhood_filters.h"
#include "image_tools/scaling.h"
#include "raster/black_white.h"
#include "support/ascii_picture.h"
#include "support/picture_bytes.h"

namespace graphize::test {
namespace {

/// Noise; larger than one band of rows where `width` * `height` is above 262144.
Raster Noise(int width, int height) {
  std::mt19937 random(width * 1000 + height);
  Raster picture(width, height);
  std::generate_n(picture.Pixels(), picture.PixelCount(),
                  [&] { return kBlackPixel | static_cast<std::uint32_t>(random() & 0xffffffu); });
  return picture;
}

Raster Apply(PictureTool tool, int amount, const Raster& picture) {
  auto result = RunTool(tool, amount, picture, nullptr, {});
  EXPECT_TRUE(result.has_value());
  return result ? std::move(*result) : Raster();
}

Raster ResizeInPalette(int amount, const Raster& picture) {
  const auto palette = QueryPalette(picture, {});
  EXPECT_TRUE(palette.has_value());
  return *RunTool(PictureTool::Resize, amount, picture, &*palette, {});
}

void ExpectSame(const Raster& a, const Raster& b) {
  ASSERT_EQ(a.Width(), b.Width());
  ASSERT_EQ(a.Height(), b.Height());
  EXPECT_TRUE(PixelsOf(a) == PixelsOf(b));
}

int PartOf(std::uint32_t pixel, int part) {
  return static_cast<int>(pixel >> (8 * part) & 0xffu);
}

/// A component where the picture goes on beyond its border.
int PartAt(const Raster& picture, int x, int y, int part) {
  return PartOf(
      picture.Row(std::clamp(y, 0, picture.Height() - 1))[std::clamp(x, 0, picture.Width() - 1)],
      part);
}

/// Each component by `value(x, y, part)`.
Raster Slowly(const Raster& picture, const std::function<int(int, int, int)>& value) {
  Raster result = Raster::Filled(picture.Width(), picture.Height(), kBlackPixel);
  for (int y = 0; y < picture.Height(); ++y)
    for (int x = 0; x < picture.Width(); ++x)
      for (int part = 0; part < 3; ++part)
        result.Row(y)[x] |= static_cast<std::uint32_t>(value(x, y, part)) << (8 * part);
  return result;
}

/// The weighted sum over a square neighbourhood whose weights are products of `weights`.
int WeightedSum(const Raster& picture, const std::vector<int>& weights, int x, int y, int part) {
  const int reach = static_cast<int>(weights.size()) / 2;
  int sum = 0;
  for (int j = -reach; j <= reach; ++j)
    for (int i = -reach; i <= reach; ++i)
      sum += weights[j + reach] * weights[i + reach] * PartAt(picture, x + i, y + j, part);
  return sum;
}

double Mean(const Raster& picture, int part) {
  double sum = 0;
  for (std::size_t i = 0; i < picture.PixelCount(); ++i) sum += PartOf(picture.Pixels()[i], part);
  return sum / static_cast<double>(picture.PixelCount());
}

/// The darkness of all pixels together.
double Ink(const Raster& picture) {
  return (255 - Mean(picture, 0)) * static_cast<double>(picture.PixelCount());
}

std::size_t CountOf(const Raster& picture, std::uint32_t pixel) {
  return static_cast<std::size_t>(
      std::count(picture.Pixels(), picture.Pixels() + picture.PixelCount(), pixel));
}

TEST(PictureTools, FiltersAreWhatTheirWeightsSay) {
  for (const auto& [width, height] : {std::pair{5, 5}, {17, 6}, {700, 500}}) {
    SCOPED_TRACE(width);
    const Raster picture = Noise(width, height);
    const auto mean3 = [&](int x, int y, int part) {
      return (WeightedSum(picture, {1, 2, 1}, x, y, part) + 8) / 16;
    };
    ExpectSame(Apply(PictureTool::Blur, 0, picture), Slowly(picture, [&](int x, int y, int part) {
                 return (WeightedSum(picture, {1, 4, 6, 4, 1}, x, y, part) + 128) / 256;
               }));
    ExpectSame(Apply(PictureTool::Soften, 10, picture), Slowly(picture, mean3));
    ExpectSame(Apply(PictureTool::Sharpen, 10, picture),
               Slowly(picture, [&](int x, int y, int part) {
                 const int value = PartAt(picture, x, y, part);
                 return std::clamp(3 * value - 2 * mean3(x, y, part), 0, 255);
               }));
    ExpectSame(Apply(PictureTool::EdgeDetect, 5, picture),
               Slowly(picture, [&](int x, int y, int part) {
                 int gradientX = 0, gradientY = 0;
                 for (const auto& [step, weight] : {std::pair{-1, 1}, {0, 2}, {1, 1}}) {
                   gradientX += weight * (PartAt(picture, x + 1, y + step, part) -
                                          PartAt(picture, x - 1, y + step, part));
                   gradientY += weight * (PartAt(picture, x + step, y + 1, part) -
                                          PartAt(picture, x + step, y - 1, part));
                 }
                 return std::min((std::abs(gradientX) + std::abs(gradientY)) / 4, 255);
               }));
  }
}

TEST(PictureTools, FiltersKeepWhatTheyMustKeep) {
  // Softened by half a picture keeps its mean away from its border.
  Raster picture = Raster::Filled(60, 40, 0xff8090a0u);
  const Raster noise = Noise(40, 20);
  for (int y = 0; y < 20; ++y) std::copy_n(noise.Row(y), 40, picture.Row(y + 10) + 10);
  EXPECT_NEAR(Mean(Apply(PictureTool::Soften, 5, picture), 0), Mean(picture, 0), 0.3);
  ExpectSame(Apply(PictureTool::Soften, 0, picture), picture);
  ExpectSame(Apply(PictureTool::Sharpen, 0, picture), picture);

  // More is more.
  const Raster step = Draw({"###...", "###...", "###...", "###..."});
  const Raster faint = Apply(PictureTool::EdgeDetect, 0, step);
  const Raster full = Apply(PictureTool::EdgeDetect, 5, step);
  EXPECT_EQ(faint.Row(1)[2], 0xff2a2a2au);
  EXPECT_EQ(full.Row(1)[2], kWhitePixel);
  EXPECT_EQ(full.Row(1)[3], kWhitePixel);
  EXPECT_EQ(full.Row(1)[0], kBlackPixel);
}

TEST(PictureTools, NegatingTwiceIsNothing) {
  const Raster picture = Noise(700, 500);
  const Raster negative = Apply(PictureTool::Negate, 0, picture);
  EXPECT_EQ(PixelsOf(Apply(PictureTool::Negate, 0, MakeRaster(2, 1, {0xff102030u, kBlackPixel}))),
            (std::vector<std::uint32_t>{0xffefdfcfu, kWhitePixel}));
  ExpectSame(Apply(PictureTool::Negate, 0, negative), picture);
}

TEST(PictureTools, QuarterTurnsMovePixelsAndChangeNone) {
  for (const auto& [width, height] : {std::pair{1, 1}, {7, 3}, {700, 500}}) {
    const Raster picture = Noise(width, height);
    Raster turned = picture.Clone();
    for (int i = 0; i < 4; ++i) turned = Apply(PictureTool::Rotate, 90, turned);
    ExpectSame(turned, picture);
    const Raster right = Apply(PictureTool::Rotate, 90, picture);
    EXPECT_EQ(right.Row(0)[right.Width() - 1], picture.Row(0)[0]) << "clockwise";
    ExpectSame(Apply(PictureTool::Rotate, -90, right), picture);
    ExpectSame(Apply(PictureTool::Rotate, 180, picture), Apply(PictureTool::Rotate, 90, right));
    ExpectSame(Apply(PictureTool::Rotate, -180, picture), Apply(PictureTool::Rotate, 180, picture));
    ExpectSame(Apply(PictureTool::Rotate, 0, picture), picture);
  }
}

TEST(PictureTools, OtherAnglesTurnOnWhite) {
  // A square with a dot to the right of its middle.
  Raster picture = Raster::Filled(101, 61, 0xffc0c0c0u);
  for (int y = 28; y < 33; ++y) std::fill_n(picture.Row(y) + 88, 5, kBlackPixel);
  for (int degrees : {1, 30, 45, 89, -30, -135, 179}) {
    SCOPED_TRACE(degrees);
    const Raster turned = Apply(PictureTool::Rotate, degrees, picture);
    const double angle = degrees * std::acos(-1.0) / 180;
    const double c = std::fabs(std::cos(angle)), s = std::fabs(std::sin(angle));
    EXPECT_NEAR(turned.Width(), 101 * c + 61 * s, 1);
    EXPECT_NEAR(turned.Height(), 101 * s + 61 * c, 1);
    const int right = turned.Width() - 1, bottom = turned.Height() - 1;
    for (const auto& [x, y] : {std::pair{0, 0}, {right, 0}, {0, bottom}, {right, bottom}})
      if (std::abs(degrees) % 90 > 1 && std::abs(degrees) % 90 < 89) {
        EXPECT_EQ(turned.Row(y)[x], kWhitePixel);
      }
    EXPECT_EQ(turned.Row(bottom / 2)[right / 2], 0xffc0c0c0u) << "the middle stays";
    const double dotX = right / 2.0 + 40 * std::cos(angle);
    const double dotY = bottom / 2.0 + 40 * std::sin(angle);
    EXPECT_EQ(turned.Row(static_cast<int>(std::lround(dotY)))[std::lround(dotX)], kBlackPixel);
    // Nothing is cut: as much ink and as much grey as before.
    EXPECT_NEAR(Ink(turned) / (101 * 61 * 63 + 25 * 192), 1, 0.005);
  }
}

TEST(PictureTools, TurnedLinesKeepTheInkOfTheirEdges) {
  for (const auto& [width, height] : {std::pair{1, 400}, {400, 1}}) {
    const Raster line = Raster::Filled(width, height, kBlackPixel);
    EXPECT_NEAR(Ink(Apply(PictureTool::Rotate, 30, line)) / (400 * 255), 1, 0.02);
  }
}

TEST(PictureTools, ScalingKeepsAndMixes) {
  const Raster noise = Noise(700, 500), letters = Draw({"#..#", ".##.", "#...", "..##"});
  ExpectSame(Apply(PictureTool::Resize, 100, noise), noise);
  ExpectSame(Apply(PictureTool::Stretch, 100, noise), noise);
  ExpectSame(ResizeInPalette(100, letters), letters);
  ExpectSame(Apply(PictureTool::Stretch, 50, Apply(PictureTool::Stretch, 200, noise)), noise);
  EXPECT_EQ(Show({.Pixels = Apply(PictureTool::Stretch, 200, Draw({"#.", ".."}))}),
            (std::vector<std::string>{"##..", "##..", "....", "...."}));
  const Raster flat = Raster::Filled(37, 23, 0xff123456u);
  for (int percent : {3, 50, 99, 101, 300})
    EXPECT_EQ(CountOf(Apply(PictureTool::Resize, percent, flat), 0xff123456u),
              Apply(PictureTool::Resize, percent, flat).PixelCount())
        << percent;

  // Half the size: each pixel is the mean of four.
  const Raster half = Apply(PictureTool::Resize, 50, noise);
  for (int y = 0; y < half.Height(); ++y)
    for (int x = 0; x < half.Width(); ++x)
      for (int part = 0; part < 3; ++part) {
        const int sum = PartAt(noise, 2 * x, 2 * y, part) + PartAt(noise, 2 * x + 1, 2 * y, part) +
                        PartAt(noise, 2 * x, 2 * y + 1, part) +
                        PartAt(noise, 2 * x + 1, 2 * y + 1, part);
        ASSERT_EQ(PartAt(half, x, y, part), (sum + 1) / 4) << x << ", " << y;
      }
  for (int percent : {7, 33, 90, 150, 300})
    for (int part = 0; part < 3; ++part)
      EXPECT_NEAR(Mean(Apply(PictureTool::Resize, percent, noise), part), Mean(noise, part), 0.6)
          << percent;

  // Seen from both sides a picture scales to its mirror image.
  const Raster large = Apply(PictureTool::Resize, 170, noise);
  ExpectSame(Apply(PictureTool::Rotate, 180, large),
             Apply(PictureTool::Resize, 170, Apply(PictureTool::Rotate, 180, noise)));
}

TEST(PictureTools, AScaledPictureWithFewColoursKeepsThem) {
  Raster page = Raster::Filled(200, 200, kWhitePixel);
  for (int i = 0; i < 200; ++i) page.Row(100)[i] = page.Row(i)[50] = kBlackPixel;
  for (int i = 0; i < 80; ++i) page.Row(i)[i + 100] = 0xffff0000u;
  for (int percent : {50, 130, 150, 300}) {
    const Raster scaled = ResizeInPalette(percent, page);
    const std::size_t black = CountOf(scaled, kBlackPixel), red = CountOf(scaled, 0xffff0000u);
    EXPECT_EQ(black + red + CountOf(scaled, kWhitePixel), scaled.PixelCount()) << percent;
    // No line breaks.
    for (int x = 0; x < scaled.Width(); ++x) {
      bool found = false;
      for (int y = 0; y < scaled.Height(); ++y) found = found || scaled.Row(y)[x] == kBlackPixel;
      ASSERT_TRUE(found) << percent << " % column " << x;
    }
  }
  const std::vector<std::uint32_t> colours = {kBlackPixel, 0xff808080u, kWhitePixel};
  NearestColour nearest(colours);
  EXPECT_EQ(nearest.Of(0xff404040u), kBlackPixel) << "as near to either: the darker one";
  EXPECT_EQ(nearest.Of(0xff414141u), 0xff808080u);
  EXPECT_EQ(nearest.Of(0xffff0000u), 0xff808080u);
}

TEST(PictureTools, GreysAreWhatTheyWouldBeAmongColours) {
  for (const unsigned levels : {2u, 5u, 256u}) {
    Raster page = Noise(700, 500);
    for (std::size_t i = 0; i < page.PixelCount(); ++i)
      page.Pixels()[i] =
          kBlackPixel | (page.Pixels()[i] & 0xffu) * levels / 256 * 255 / (levels - 1) * 0x010101u;
    const auto palette = QueryPalette(page, {});
    ASSERT_EQ(palette->Colours().size(), levels);
    for (const int degrees : {3, 45, -100})
      ExpectSame(*RunTool(PictureTool::Rotate, degrees, page, &*palette, {}),
                 Apply(PictureTool::Rotate, degrees, page));
    for (const int percent : {40, 99, 150, 300}) {
      Raster expected = Apply(PictureTool::Resize, percent, page);
      NearestColour(palette->Colours())
          .Replace(expected.Pixels(), static_cast<int>(expected.PixelCount()));
      ExpectSame(ResizeInPalette(percent, page), expected);
    }
  }
}

TEST(PictureTools, ColoursAreCountedWhereverTheyStand) {
  Raster page = Raster::Filled(1000, 900, 0xff777777u);  // in bands of rows
  for (int i = 0; i < 255; ++i)
    page.Row(i * 3)[i] = i % 2 == 0 ? 0xff000000u + i * 0x010101u : 0xff00ff00u + i;
  const auto palette = QueryPalette(page, {});
  ASSERT_TRUE(palette.has_value());
  EXPECT_FALSE(palette->AreGrey());
  EXPECT_EQ(palette->Colours().size(), 256u);
  EXPECT_TRUE(std::ranges::is_sorted(palette->Colours()));
  page.Row(899)[999] = 0xff123456u;
  EXPECT_FALSE(QueryPalette(page, {}).has_value());
}

TEST(PictureTools, SizesOfResults) {
  using enum PictureTool;
  const char* const kTooLarge = "The picture would be too large: ";
  const char* const kNoMemory = "There is not enough memory: ";
  // Tool, amount, size, result, too small, how the refusal begins with 1 MB of free memory.
  const std::tuple<PictureTool, int, PictureSize, PictureSize, bool, const char*> cases[] = {
      {Blur, 0, {1, 1}, {1, 1}, true, ""},
      {Blur, 0, {4, 5}, {4, 5}, true, ""},
      {Blur, 0, {5, 5}, {5, 5}, false, ""},
      {EdgeDetect, 5, {1, 1}, {1, 1}, true, ""},
      {Sharpen, 5, {3, 2}, {3, 2}, true, ""},
      {Soften, 5, {3, 3}, {3, 3}, false, ""},
      {Negate, 0, {1, 1}, {1, 1}, false, ""},
      {Rotate, 45, {1, 1}, {2, 2}, false, ""},
      {Rotate, -90, {300, 200}, {200, 300}, false, ""},
      {Rotate, 180, {32767, 1}, {32767, 1}, false, ""},
      {Rotate, 30, {32767, 20000}, {38378, 33705}, false, kTooLarge},
      {Resize, 0, {640, 480}, {0, 0}, true, ""},
      {Resize, 1, {49, 300}, {0, 3}, true, ""},
      {Resize, 1, {50, 300}, {1, 3}, false, ""},
      {Resize, 150, {5, 3}, {8, 5}, false, ""},
      {Resize, 300, {10922, 1}, {32766, 3}, false, ""},
      {Stretch, 300, {10923, 1}, {32769, 3}, false, kTooLarge},
      {Stretch, 200, {9933, 14043}, {19866, 28086}, false, kTooLarge},
      {Resize, 150, {9933, 14043}, {14900, 21065}, false, kNoMemory},
      {Blur, 0, {500, 500}, {500, 500}, false, ""},
      {Blur, 0, {501, 500}, {501, 500}, false, kNoMemory},
  };
  for (const auto& [tool, amount, size, expected, tooSmall, words] : cases) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(tool) << " by " << amount << " of "
                                    << size.Width << " x " << size.Height);
    const PictureSize result = ResultSize(tool, amount, size);
    EXPECT_EQ(result.Width, expected.Width);
    EXPECT_EQ(result.Height, expected.Height);
    EXPECT_EQ(IsTooSmall(tool, amount, size), tooSmall);
    const std::string refusal = ResultRefusal(tool, amount, size, 1'000'000);
    EXPECT_EQ(refusal.empty(), *words == '\0') << refusal;
    EXPECT_TRUE(refusal.starts_with(words)) << refusal;
  }
  EXPECT_TRUE(ResultRefusal(Resize, 150, {9933, 14043}, 2'000'000'000).empty());
  EXPECT_GT(FreeMemory(), 1'000'000);
}

TEST(PictureTools, AllToolsGiveTheSizeThatWasSaid) {
  const Raster picture = Noise(31, 17);
  for (int i = 0; i < kPictureTools; ++i)
    for (int amount : {4, 7, 10}) {
      const auto tool = static_cast<PictureTool>(i);
      const auto [width, height] = ResultSize(tool, amount, {31, 17});
      const Raster result = Apply(tool, amount, picture);
      EXPECT_EQ(result.Width(), width) << i;
      EXPECT_EQ(result.Height(), height) << i;
      EXPECT_TRUE(std::all_of(result.Pixels(), result.Pixels() + result.PixelCount(),
                              [](std::uint32_t pixel) { return pixel >> 24 == 0xff; }))
          << i;
    }
}

TEST(PictureTools, WhatIsStoppedGivesNothing) {
  const Raster picture = Noise(40, 30);
  PictureOperation stopped;
  stopped.Stopped = true;
  EXPECT_FALSE(Blur(picture, stopped));
  EXPECT_FALSE(Soften(picture, 5, stopped));
  EXPECT_FALSE(Sharpen(picture, 5, stopped));
  EXPECT_FALSE(DetectEdges(picture, 5, stopped));
  EXPECT_FALSE(Resize(picture, 60, 45, nullptr, stopped));
  EXPECT_FALSE(Stretch(picture, 60, 45, stopped));
  EXPECT_FALSE(Rotate(picture, 30, false, stopped));
  EXPECT_FALSE(Rotate(picture, 90, false, stopped));
  EXPECT_FALSE(CutOut(picture, 0, 0, 9, 9, stopped));
  EXPECT_FALSE(ColourTable::Of(picture, stopped));
  Raster reduced = picture.Clone();
  EXPECT_FALSE(ReduceToPalette(reduced, stopped));
}

TEST(PictureTools, LittleIsDoneBetweenTwoLooksWhetherToStop) {
  const int width = 3000, height = 1000;
  constexpr int kBand = 1 << 18;
  const std::int64_t all = width * height;
  const Raster noise = Noise(width, height);
  Raster greys = noise.Clone();
  for (std::size_t i = 0; i < greys.PixelCount(); ++i)
    greys.Pixels()[i] = kBlackPixel | (greys.Pixels()[i] & 0xffu) * 0x010101u;
  PictureOperation unwatched;
  Raster reduced = noise.Clone(), few = noise.Clone();
  ReduceToPalette(few, unwatched);
  const auto table = ColourTable::Of(few, unwatched);
  ASSERT_TRUE(table.has_value());
  // What is done, how many pixels are worked on, and how many at most between two looks.
  const std::tuple<const char*, std::function<void(PictureOperation&)>, std::int64_t, int> cases[] =
      {
          {"count colours", [&](auto& o) { ColourTable::Of(greys, o); }, all, kBand},
          {"blur", [&](auto& o) { Blur(noise, o); }, all, kBand},
          {"soften", [&](auto& o) { Soften(noise, 5, o); }, all, kBand},
          {"edges", [&](auto& o) { DetectEdges(noise, 5, o); }, all, kBand},
          {"stretch", [&](auto& o) { Stretch(noise, 6000, 2000, o); }, 4 * all, kBand},
          {"resize", [&](auto& o) { Resize(noise, 6000, 2000, nullptr, o); }, 4 * all, kBand},
          {"resize in a palette", [&](auto& o) { Resize(few, 6000, 2000, &*table, o); }, 4 * all,
           6000},
          {"rotate", [&](auto& o) { Rotate(noise, 30, false, o); }, 2 * all, kBand},
          {"turn", [&](auto& o) { Rotate(noise, 90, false, o); }, all, kBand},
          {"cut out", [&](auto& o) { CutOut(noise, 0, 0, width, height, o); }, all, kBand},
          {"palette", [&](auto& o) { ReduceToPalette(reduced, o); }, all, width},
          {"black and white", [&](auto& o) { ReduceToBlackAndWhite(reduced, 99, o); }, all,
           64 * width},
      };
  for (const auto& [name, run, pixels, most] : cases) {
    PictureOperation operation;
    run(operation);
    EXPECT_GE(std::int64_t{operation.Stopped.Looks()} * most, pixels) << name;
    EXPECT_EQ(operation.Percent, 100) << name;
  }
}

TEST(PictureTools, ReductionToAPaletteKeepsBlackAndWhite) {
  // Smooth colours with some exact black, exact white and almost black.
  Raster picture(256, 256);
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x)
      picture.Row(y)[x] = kBlackPixel | static_cast<unsigned>(x) << 16 |
                          static_cast<unsigned>(y) << 8 | static_cast<unsigned>(255 - x);
  std::fill_n(picture.Row(10), 40, kBlackPixel);
  std::fill_n(picture.Row(20), 40, kWhitePixel);
  for (int part = 0; part < 3; ++part)  // their mean rounds to black
    std::fill_n(picture.Row(30 + part), 40, kBlackPixel | 1u << (8 * part));
  Raster reduced = picture.Clone();
  EXPECT_FALSE(QueryPalette(reduced, {}));
  PictureOperation unwatched;
  ASSERT_TRUE(ReduceToPalette(reduced, unwatched));
  EXPECT_TRUE(QueryPalette(reduced, {}));
  double error = 0;
  for (std::size_t i = 0; i < picture.PixelCount(); ++i) {
    const std::uint32_t before = picture.Pixels()[i], after = reduced.Pixels()[i];
    ASSERT_EQ(before == kBlackPixel, after == kBlackPixel) << i;
    if (before == kWhitePixel) {
      ASSERT_EQ(after, kWhitePixel);
    }
    for (int part = 0; part < 3; ++part)
      error += std::abs(PartOf(before, part) - PartOf(after, part));
  }
  EXPECT_LT(error / (3.0 * 256 * 256), 8);

  Raster again = reduced.Clone();
  ASSERT_TRUE(ReduceToPalette(again, unwatched));
  ExpectSame(again, reduced);
}

}  // namespace
}  // namespace graphize::test
