#include <random>

#include "raster/curve_marks.h"
#include "raster/mark_edges.h"
#include "raster/picture_scaling.h"
#include "raster/plot_image.h"
#include "raster/viewport.h"

namespace graphize {
namespace {

Raster Noise(int width, int height, unsigned seed, bool darkGround = false) {
  std::mt19937 random(seed);
  Raster raster(width, height);
  for (std::size_t i = 0; i < raster.PixelCount(); ++i) {
    const std::uint32_t ground = darkGround ? kBlackPixel : kWhitePixel;
    raster.Pixels()[i] = random() % 3 != 0 ? ground : 0xff000000u | (random() & 0xffffffu);
  }
  return raster;
}

/// The obvious way to a level: whole pictures, halved one after the other.
Raster Halved(const Raster& raster, bool darkGround) {
  Raster half = Raster::Filled((raster.Width() + 1) / 2, (raster.Height() + 1) / 2, 0);
  for (int y = 0; y < half.Height(); ++y) {
    for (int x = 0; x < half.Width(); ++x) {
      for (int shift = 0; shift < 32; shift += 8) {
        int sum = 0, least = 255, most = 0;
        for (const int row : {2 * y, std::min(2 * y + 1, raster.Height() - 1)}) {
          for (const int column : {2 * x, std::min(2 * x + 1, raster.Width() - 1)}) {
            const int channel = static_cast<int>(raster.Row(row)[column] >> shift & 0xff);
            sum += channel;
            least = std::min(least, channel);
            most = std::max(most, channel);
          }
        }
        const int mixed = (sum + 4 * (darkGround ? most : least) + 4) / 8;
        half.Row(y)[x] |= static_cast<std::uint32_t>(mixed) << shift;
      }
    }
  }
  return half;
}

/// Screen pixels as a person would say them: enlarged, what lies at each one's corner; smaller, the
/// level's pixel.
void ExpectObvious(const Raster& picture, Pyramid& pyramid, double scale, int left, int top,
                   const Raster& part) {
  Raster shown = picture.Clone();
  int factor = static_cast<int>(scale);
  if (scale < 1) {
    for (double level = 1; level > scale; level /= 2) shown = Halved(shown, pyramid.DarkGround());
    factor = 1;
  }
  int differ = 0;
  for (int y = 0; y < part.Height(); ++y)
    for (int x = 0; x < part.Width(); ++x)
      differ += part.Row(y)[x] != shown.Row((top + y) / factor)[(left + x) / factor] ? 1 : 0;
  EXPECT_EQ(differ, 0) << "scale " << scale << " at " << left << ' ' << top;
}

TEST(Zoom, PaintingIsTheObviousOneAtEveryWholeScaleAndFollowsChanges) {
  std::mt19937 random(3);
  for (const bool dark : {false, true}) {
    PlotImage image;
    SetPicture(image, Noise(2301, 1203, 5, dark));
    Pyramid pyramid;
    const auto follow = [&] { pyramid.Follow(image.Pixels, std::exchange(image.Dirty, {})); };
    follow();
    EXPECT_EQ(pyramid.DarkGround(), dark);
    for (int round = 0; round < 3; ++round) {
      for (const double scale : {1.0 / 64, 1.0 / 8, 0.25, 0.5, 1.0, 2.0, 5.0, 32.0}) {
        const int width = ZoomedLength(scale, image.Width());
        const int height = ZoomedLength(scale, image.Height());
        const int left = round == 0 ? 0 : static_cast<int>(random() % width);
        const int top = round == 0 ? 0 : static_cast<int>(random() % height);
        Raster part(std::min(width - left, 700), std::min(height - top, 300));
        PaintScaled(part, left, top, image.Pixels, pyramid, {scale, 0, 0});
        ExpectObvious(image.Pixels, pyramid, scale, left, top, part);
      }
      // A small mark, one that makes tiles anew, and all of it taken back.
      if (round == 0) DrawBox(image, 700, 300, 741, 340, 0x3040, true);
      if (round == 0) DrawLine(image, 0, 1202, 2300, 0, kBlack);
      if (round == 1) DrawBox(image, 900, 0, 2300, 1202, 0x20ff20, true);
      follow();
    }
    EXPECT_LT(pyramid.Bytes(), image.Pixels.PixelCount() * 4 / 10 + 7 * 256 * 1024);
  }
}

TEST(Zoom, BetweenWholeScalesEveryPixelIsSeenAndReadWhereItIsShown) {
  Raster picture = Raster::Filled(997, 500, kWhitePixel);
  for (int y = 0; y < 500; ++y) picture.Row(y)[613] = kBlackPixel;
  for (int x = 0; x < 997; ++x) picture.Row(311)[x] = kBlackPixel;
  Pyramid pyramid;
  pyramid.Follow(picture, {});
  for (const double ratio : {1.0, 1.25, 1.5, 2.0})
    for (const double zoom : {1.0 / 64, 0.037, 0.25, 0.31, 0.5, 0.83, 1.0, 1.37, 3.0, 8.0}) {
      const PictureScaling scaling{ratio * zoom, 7.25 * ratio, -3 * ratio};
      Raster part(1500, 900);
      const int left = static_cast<int>(612 * scaling.Scale + scaling.Left) - 700;
      const int top = static_cast<int>(311 * scaling.Scale + scaling.Top) - 450;
      PaintScaled(part, left, top, picture, pyramid, scaling);
      int columns = 0, rows = 0;
      for (int x = 0; x < part.Width(); ++x) {
        const int column = PictureColumn(scaling, left + x);
        if ((part.Row(0)[x] & 0xff) > 224) continue;
        ++columns;
        const double pixels = std::max(1 / scaling.Scale, 1.0);
        EXPECT_TRUE(column < 613 + pixels && column + 2 * pixels > 613) << column << ' ' << zoom;
      }
      for (int y = 0; y < part.Height(); ++y) rows += (part.Row(y)[0] & 0xff) <= 224 ? 1 : 0;
      const int whole = static_cast<int>(scaling.Scale);
      EXPECT_TRUE(columns >= std::max(whole, 1) && columns <= whole + 1) << zoom << ' ' << ratio;
      EXPECT_TRUE(rows >= std::max(whole, 1) && rows <= whole + 1) << zoom << ' ' << ratio;
    }
  // A line of one pixel from afar.
  Raster four(1, 1), last(1, 1);
  PaintScaled(four, 153, 0, picture, pyramid, {0.25, 0, 0});
  PaintScaled(last, 9, 0, picture, pyramid, {1.0 / 64, 0, 0});
  EXPECT_NEAR(*four.Pixels() & 0xff, 112, 2);
  EXPECT_NEAR(*last.Pixels() & 0xff, 210, 2);
}

TEST(Zoom, MarksThatStandOutFromNothingHaveAnEdgeWhateverPartIsPainted) {
  PlotImage image;
  Raster picture = Raster::Filled(60, 40, kWhitePixel);
  for (int y = 0; y < 40; ++y) std::fill_n(picture.Row(y) + 40, 20, 0xff101010u);
  for (int x = 0; x < 40; ++x) picture.Row(30)[x] = kBlackPixel;
  SetPicture(image, std::move(picture));
  const Colour yellow = MakeColour(255, 255, 0), red = MakeColour(255, 0, 0);
  const struct {
    int X, Y;
    Colour Mark, Edge;
  } marks[] = {{5, 5, yellow, kBlack},
               {12, 5, red, kNoColour},
               {19, 5, MakeColour(0, 255, 0), kBlack},
               {26, 5, MakeColour(240, 240, 240), kBlack},
               {50, 5, MakeColour(0, 0, 160), kWhite},
               {50, 15, yellow, kNoColour},
               {5, 30, yellow, kNoColour}};
  for (const auto& mark : marks) SetPixel(image, mark.X, mark.Y, mark.Mark);
  // The lines of a shading.
  for (int x = 10; x < 20; x += 2) DrawLine(image, x, 15, x, 24, yellow);
  Pyramid pyramid;
  pyramid.Follow(image.Pixels, {});
  struct Area {
    int Left, Top, Width, Height;
  };
  const auto paint = [&](const Area& area, const MarkScaling& scaling) {
    Raster part(area.Width, area.Height);
    PaintScaled(part, area.Left, area.Top, image.Pixels, pyramid,
                {scaling.Zoom * scaling.Ratio, scaling.Left, scaling.Top});
    PaintMarkEdges(part, area.Left, area.Top, image, scaling);
    return part;
  };
  const Raster seen = paint({0, 0, 60, 40}, {});
  for (const auto& mark : marks) {
    int edge = 0;
    for (int y = mark.Y - 1; y <= mark.Y + 1; ++y)
      for (int x = mark.X - 1; x <= mark.X + 1; ++x)
        edge +=
            seen.Row(y)[x] != image.Pixels.Row(y)[x] && seen.Row(y)[x] == PixelOfColour(mark.Edge)
                ? 1
                : 0;
    EXPECT_EQ(edge, mark.Edge == kNoColour ? 0 : 8) << mark.X << ' ' << mark.Y;
    EXPECT_EQ(seen.Row(mark.Y)[mark.X], PixelOfColour(mark.Mark));
  }
  EXPECT_EQ(seen.Row(20)[9], kBlackPixel);
  EXPECT_EQ(seen.Row(20)[11], kWhitePixel) << "between the lines of a shading";
  for (const MarkScaling& scaling :
       {MarkScaling{}, {0.25, 1, 3, 2}, {0.5, 1.25, 0, 0}, {3, 1.5, -7.5, 4.25}, {8, 2, 0, 0}}) {
    const Raster whole = paint({0, 0, 300, 200}, scaling);
    for (const Area area : {Area{4, 4, 2, 3}, {6, 5, 90, 1}, {33, 17, 64, 64}}) {
      const Raster part = paint(area, scaling);
      int differ = 0;
      for (int y = 0; y < area.Height; ++y)
        for (int x = 0; x < area.Width; ++x)
          differ += part.Row(y)[x] != whole.Row(area.Top + y)[area.Left + x] ? 1 : 0;
      EXPECT_EQ(differ, 0) << scaling.Zoom << ' ' << area.Left;
    }
  }
}

TEST(Zoom, ThePixelAtThePointerStaysThereWhileTheZoomChanges) {
  std::mt19937 random(7);
  for (int round = 0; round < 400; ++round) {
    Viewport view{.Width = 900, .Height = 700};
    ShowFromCorner(view, 30000, 20000);
    SetZoom(view, 4, 0, 0);
    ScrollTo(view, 40000 + static_cast<int>(random() % 9000),
             30000 + static_cast<int>(random() % 9000));
    // On a screen of 125 % the pointer lies between logical pixels.
    const double x = static_cast<double>(random() % 1100) / 1.25, y = 300;
    const int column = PixelAt(view.Zoom, view.X + x), row = PixelAt(view.Zoom, view.Y + y);
    for (const int steps : {1, 3, -2, 5, -4, -3}) {
      SetZoom(view, NextZoom(view.Zoom, steps), x, y);
      EXPECT_EQ(PixelAt(view.Zoom, view.X + x), column) << view.Zoom;
      EXPECT_EQ(PixelAt(view.Zoom, view.Y + y), row) << view.Zoom;
    }
  }
}

TEST(Zoom, WhatTheEdgeOfASmallPictureTookFromThePointerComesBack) {
  Viewport view{.Width = 900, .Height = 900};
  ShowFromCorner(view, 640, 480);
  const auto row = [&] { return PixelAt(view.Zoom, view.Y + 215); };
  for (const double zoom : {2.0, 3.0, 4.0}) SetZoom(view, zoom, 530, 215);
  EXPECT_EQ(PixelAt(view.Zoom, view.X + 530), 530);
  EXPECT_EQ(row(), 215);
  SetZoom(view, 2, 530, 215);
  const int shown = row();
  EXPECT_NE(shown, 215) << "the edge";
  ScrollTo(view, view.X - 1, view.Y);
  SetZoom(view, 4, 530, 215);
  EXPECT_EQ(row(), shown) << "another view";
}

TEST(Zoom, StepsFittingAndPlacesKeepTheirLimits) {
  double zoom = 1;
  for (int i = 0; i < 40; ++i) zoom = NextZoom(zoom, -1);
  EXPECT_EQ(zoom, kSmallestZoom);
  for (int i = 0; i < 40; ++i) {
    const double next = NextZoom(zoom, 1);
    EXPECT_LE(next, 2 * zoom);
    EXPECT_EQ(next < kLargestZoom ? NextZoom(next, -1) : zoom, zoom);
    zoom = next;
  }
  EXPECT_EQ(zoom, kLargestZoom);
  EXPECT_EQ(NextZoom(0.37, 1), 0.5);
  EXPECT_EQ(NextZoom(0.37, -1), 0.25);

  Viewport view{.Width = 400, .Height = 300};
  ShowFromCorner(view, 1000, 500);
  EXPECT_EQ(view.Zoom, 1);
  EXPECT_TRUE(IsCutOff(view));
  ZoomToFit(view);
  EXPECT_DOUBLE_EQ(view.Zoom, 0.4);
  EXPECT_FALSE(IsCutOff(view));
  view.Width = 200;
  ResetScrBars(view, 1000, 500);
  EXPECT_DOUBLE_EQ(view.Zoom, 0.2) << "it goes on fitting";
  SetZoom(view, 99, 0, 0);
  EXPECT_EQ(view.Zoom, kLargestZoom);
  ResetScrBars(view, 10, 10);
  EXPECT_EQ(view.MaximumX, 120);
  for (const double at : {1.0 / 64, 0.3, 1.0, 7.0})
    for (const int pixel : {0, 1, 63, 64, 32766}) {
      const int first = FirstPlaceOf(at, pixel), last = LastPlaceOf(at, pixel);
      EXPECT_TRUE(first <= last && PixelAt(at, first) <= pixel && PixelAt(at, last + 1) > pixel);
      const int mark = PlaceOfMark(at, static_cast<float>(pixel));
      EXPECT_TRUE(mark >= first - 1 && mark <= last) << at << ' ' << pixel;
    }
  EXPECT_EQ(PlaceOfMark(1, 140.5f), 140);
  EXPECT_EQ(PlaceOfMark(8, 140.5f), 1128) << "between two enlarged pixels";
}

}  // namespace
}  // namespace graphize
