#include "reading/find_symbols.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "reading/ink_mask.h"
#include "reading/read_all.h"
#include "support/colour_plot.h"

namespace graphize {
namespace {

using test::ColourPlot;
using test::PixelPosition;
using test::Symbol;
using test::SymbolLook;

constexpr std::uint32_t kBlue = 0xff1f77b4, kRed = 0xffd62728, kPale = 0xffd8d8d8;

double Wave(double u) {
  return 0.5 + 0.3 * std::sin(9 * u);
}
double Rising(double u) {
  return 0.15 + 0.7 * u;
}

/// Twelve places on a wave, at all parts of a pixel.
std::vector<PixelPosition> Places(const ColourPlot& plot) {
  std::vector<PixelPosition> places;
  for (int i = 0; i < 12; ++i) {
    const double u = 0.06 + 0.081 * i;
    places.push_back(plot.Layer().Place(u, Wave(u)));
  }
  return places;
}

SymbolFinding Find(const ColourPlot& plot, PixelPosition at, const SymbolRequest& request = {}) {
  SymbolRequest asked = request;
  asked.X = std::round(at.X + 1);
  asked.Y = std::round(at.Y - 1);
  PictureOperation operation;
  return FindSymbols(
      plot.Picture,
      FrameOf(plot.Layer().Calibration(), plot.Picture.Width(), plot.Picture.Height()), asked,
      operation);
}

TEST(FindSymbols, FindsTheCentresOfAllOfOneKindWhateverIsDrawnWithThem) {
  const auto nothing = [](ColourPlot&) {};
  const auto line = [](ColourPlot& plot) {
    test::PlotDrawing layer = plot.Layer();
    layer.Polyline(Places(plot), {.Thickness = 1.5});
    plot.Put(layer, kBlue);
  };
  const auto others = [](ColourPlot& plot) {
    plot.Symbols({{150, 60}, {250, 50}, {330, 230}, {90, 230}}, {Symbol::Square, 10}, kBlue);
    plot.Symbols({{200, 60}, {60, 60}}, {Symbol::Disc, 10}, kRed);
  };
  struct Case {
    const char* Name;
    SymbolLook Look;
    std::function<void(ColourPlot&)> Before, After;
    double Rms;
  };
  const Case cases[] = {
      {"filled", {Symbol::Disc, 8.5}, nothing, nothing, 0.06},
      {"triangles", {Symbol::Triangle, 10}, nothing, nothing, 0.06},
      {"hard", {Symbol::Disc, 8.5, 0, true}, nothing, nothing, 0.2},
      {"open", {Symbol::Square, 10, 1.4}, nothing, nothing, 0.1},
      {"crosses", {Symbol::Plus, 10, 1.4}, nothing, nothing, 0.1},
      {"on a line", {Symbol::Disc, 9}, line, nothing, 0.15},
      {"open on a line", {Symbol::Disc, 10, 1.4}, line, nothing, 0.25},
      {"on a black grid",
       {Symbol::Disc, 9},
       [](ColourPlot& plot) { plot.Grid(kBlackPixel); },
       nothing,
       0.1},
      {"among others", {Symbol::Disc, 10}, others, nothing, 0.06},
      {"under a curve",
       {Symbol::Disc, 10},
       nothing,
       [](ColourPlot& plot) { plot.Curve(Rising, {.Thickness = 2}, kRed); },
       0.15},
      {"overlapping",
       {Symbol::Disc, 10},
       nothing,
       [](ColourPlot& plot) {
         std::vector<PixelPosition> beside = Places(plot);
         beside.resize(4);
         for (PixelPosition& at : beside) at = {at.X + 6, at.Y + 3};
         plot.Symbols(beside, {Symbol::Disc, 10}, kBlue);
       },
       0.15},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.Name);
    ColourPlot plot;
    plot.Frame();
    test.Before(plot);
    std::vector<PixelPosition> truth = Places(plot);
    plot.Symbols(truth, test.Look, kBlue);
    test.After(plot);
    const PixelPosition click = truth[7];
    if (std::string(test.Name) == "overlapping")
      for (int i = 0; i < 4; ++i) truth.push_back({truth[i].X + 6, truth[i].Y + 3});
    const SymbolFinding finding = Find(plot, click);
    ASSERT_EQ(finding.Symbols.size(), truth.size()) << finding.Refusal;
    double squares = 0;
    for (const PixelPosition& centre : truth) {
      double nearest = 99;
      for (const FoundSymbol& symbol : finding.Symbols)
        nearest = std::min(nearest, std::hypot(symbol.X - centre.X, symbol.Y - centre.Y));
      squares += nearest * nearest;
    }
    EXPECT_LT(std::sqrt(squares / static_cast<double>(truth.size())), test.Rms);
    for (std::size_t i = 1; i < finding.Symbols.size(); ++i)
      EXPECT_LE(finding.Symbols[i - 1].X, finding.Symbols[i].X);
  }
}

TEST(FindSymbols, TakesTheCentreOfTheBoxAndLeavesOutWhatIsBlocked) {
  ColourPlot plot;
  const std::vector<PixelPosition> places = Places(plot);
  plot.Symbols(places, {Symbol::Triangle, 12}, kBlue);
  const SymbolFinding mass = Find(plot, places[3]);
  const ReadingWall wall{static_cast<int>(places[5].X), static_cast<int>(places[5].Y), 9};
  const SymbolFinding box = Find(plot, places[3], {.Centre = SymbolCentre::Box, .Walls = {wall}});
  ASSERT_EQ(mass.Symbols.size(), 12u);
  ASSERT_EQ(box.Symbols.size(), 11u);
  // A triangle's box reaches farther up from its centre of mass than down; its tip, which fills no
  // pixel, is cut short.
  EXPECT_NEAR(mass.Symbols[0].Y - box.Symbols[0].Y, 12 * 0.62 / 4, 0.5);
  EXPECT_NEAR(mass.Symbols[0].X, box.Symbols[0].X, 0.1);
}

TEST(FindSymbols, SaysWhatWasClickedInsteadOfASymbolAndWhatIsDoubtful) {
  ColourPlot plot;
  plot.Grid(kBlackPixel);
  plot.Frame();
  const auto course = plot.Curve(Wave, {.Thickness = 2}, kRed);
  const auto at = [&](double u, double v) {
    const PixelPosition place = plot.Layer().Place(u, v);
    return PixelPosition{place.X - 1, place.Y + 1};
  };
  EXPECT_THAT(Find(plot, at(0.5, 0.9)).Refusal, testing::HasSubstr("only paper"));
  EXPECT_THAT(Find(plot, at(0.3, 0.75)).Refusal, testing::HasSubstr("a line of the grid"));
  EXPECT_THAT(Find(plot, at(0, 0.4)).Refusal, testing::HasSubstr("the frame"));
  EXPECT_THAT(Find(plot, course[900]).Refusal, testing::HasSubstr("a curve, no symbol"));
  EXPECT_THAT(Find(ColourPlot(), {50, 50}).Refusal, testing::HasSubstr("one colour"));
  ColourPlot grain;
  std::uint32_t random = 5;
  for (std::size_t i = 0; i < grain.Picture.PixelCount(); ++i) {
    random = random * 1664525u + 1013904223u;
    if (random >> 28 < 3) grain.Picture.Pixels()[i] = kBlackPixel;
  }
  EXPECT_THAT(Find(grain, {200, 150}).Refusal, testing::HasSubstr("nothing that could be told"));

  ColourPlot covered;
  const std::vector<PixelPosition> places = Places(covered);
  covered.Symbols(places, {Symbol::Disc, 12}, kBlue);
  covered.Symbols({{places[4].X + 5, places[4].Y}}, {Symbol::Square, 11}, kRed);
  const SymbolFinding finding = Find(covered, places[8]);
  ASSERT_EQ(finding.Symbols.size(), 12u);
  for (std::size_t i = 0; i < 12; ++i)
    EXPECT_EQ(finding.Symbols[i].Doubt, i == 4 ? "partly hidden" : "");
}

TEST(FindSymbols, DoubtsTheSampleOfALegend) {
  for (const bool withLine : {false, true}) {
    ColourPlot plot;
    std::vector<PixelPosition> places = Places(plot);
    places.push_back({310, 40});
    test::PlotDrawing legend = plot.Layer();
    legend.Digits({328, 36}, "1405");
    plot.Put(legend, kBlackPixel);
    if (withLine) {
      test::PlotDrawing line = plot.Layer();
      line.Polyline({{297, 40}, {323, 40}}, {.Thickness = 1.5});
      plot.Put(line, kBlue);
    }
    plot.Symbols(places, {Symbol::Disc, 9}, kBlue);
    const SymbolFinding finding = Find(plot, places[2]);
    ASSERT_EQ(finding.Symbols.size(), 13u);
    for (const FoundSymbol& symbol : finding.Symbols)
      EXPECT_EQ(symbol.Doubt, std::hypot(symbol.X - 310, symbol.Y - 40) < 2
                                  ? "beside letters, as in a legend"
                                  : "");
  }
}

TEST(InkMask, LeavesTheInkOfAColourAlone) {
  ColourPlot plot;
  plot.Grid(kPale);
  plot.Frame();
  plot.Curve(Wave, {.Thickness = 3}, kBlue);
  plot.Curve(Rising, {.Thickness = 3}, kRed);
  std::vector<std::uint32_t> found;
  for (const PictureInk& ink : InksOf(plot.Picture, PaperOf(plot.Picture)))
    for (const std::uint32_t colour : {kBlackPixel, kPale, kBlue, kRed})
      if (Length(ink.Colour - RgbOf(colour)) < 30) found.push_back(colour);
  EXPECT_THAT(found, testing::UnorderedElementsAre(kBlackPixel, kPale, kBlue, kRed));

  ColourPlot alone;
  alone.Curve(Wave, {.Thickness = 3}, kBlackPixel);
  PictureOperation operation;
  const auto mask = InkAlone(plot.Picture, kBlue, 1, operation);
  ASSERT_TRUE(mask && mask->Width() == 400);
  int ink = 0, taken = 0, wrong = 0;
  for (std::size_t i = 0; i < mask->PixelCount(); ++i) {
    const bool isBlack = IsBlackPixel(mask->Pixels()[i]);
    const std::uint32_t level = alone.Picture.Pixels()[i] & 0xff;
    if (level < 64) ++ink, taken += isBlack ? 1 : 0;
    wrong += level > 230 && isBlack ? 1 : 0;
  }
  EXPECT_GT(taken, 0.93 * ink);  // the other curve covers some
  EXPECT_LT(wrong, 4);
  EXPECT_FALSE(InkAlone(plot.Picture, 0xfffcfcfc, 1, operation).has_value());
}

TEST(ReadAllCurves, ReadsEveryInkOfThePlotInTheOrderOfItsLegend) {
  ColourPlot plot;
  plot.Grid(kPale);
  plot.Frame();
  plot.Curve(Rising, {.Thickness = 2}, kBlue);
  plot.Curve(Wave, {.Thickness = 2}, kRed);
  plot.Curve([](double u) { return 0.9 - 0.2 * u; }, {.Thickness = 2, .Dash = 9, .Gap = 5},
             0xff2ca02c);
  int row = 28;
  for (const std::uint32_t ink : {kRed, 0xff2ca02cu, kBlue}) {
    test::PlotDrawing legend = plot.Layer();
    legend.Polyline({{320, row * 1.0}, {342, row * 1.0}}, {.Thickness = 2});
    legend.Digits({350, row - 4.0}, "12");
    plot.Put(legend, ink);
    row += 14;
  }
  PictureOperation operation;
  const PlotReading all =
      ReadAllCurves(plot.Picture, FrameOf(plot.Layer().Calibration(), 400, 300), {}, {}, operation);
  std::vector<std::uint32_t> inks;
  for (const PlotCurve& curve : all.Curves) {
    EXPECT_GT(curve.Reading.Points.size(), 250u);
    for (const std::uint32_t ink : {kBlackPixel, kPale, kRed, 0xff2ca02cu, kBlue})
      if (Length(curve.Colour - RgbOf(ink)) < 30) inks.push_back(ink);
  }
  EXPECT_THAT(inks, testing::ElementsAre(kRed, 0xff2ca02c, kBlue));
}

TEST(Reading, AnyPictureIsSearchedWithoutHarm) {
  std::uint32_t random = 11;
  const auto next = [&](std::uint32_t most) {
    random = random * 1664525u + 1013904223u;
    return (random >> 8) % most;
  };
  for (int i = 0; i < 30; ++i) {
    const int width = 1 + static_cast<int>(next(90)), height = 1 + static_cast<int>(next(90));
    Raster picture = Raster::Filled(width, height, kWhitePixel);
    // Noise, boxes of few colours, or both.
    for (std::uint32_t spots = next(60); spots > 0; --spots) {
      const int left = static_cast<int>(next(static_cast<std::uint32_t>(width))),
                top = static_cast<int>(next(static_cast<std::uint32_t>(height)));
      const std::uint32_t ink = 0xff000000u | next(3) * 0x7f0000u | next(2) * 0x60u;
      for (int y = top; y < std::min(top + 9, height); ++y)
        for (int x = left; x < std::min(left + 9, width); ++x)
          picture.Row(y)[x] = i % 3 == 0 ? 0xff000000u | next(1u << 24) : ink;
    }
    AxisCalibration axes;
    if (i % 2 == 0)
      axes = test::PlotDrawing(width, height, 2, 2, width - 2, height - 2).Calibration();
    const AxesFrame frame = FrameOf(axes, width, height);
    PictureOperation operation;
    const double x = next(static_cast<std::uint32_t>(width)),
                 y = next(static_cast<std::uint32_t>(height));
    const SymbolFinding finding = FindSymbols(picture, frame, {.X = x, .Y = y}, operation);
    EXPECT_NE(finding.Symbols.empty(), finding.Refusal.empty());
    for (const FoundSymbol& symbol : finding.Symbols) {
      EXPECT_TRUE(std::isfinite(symbol.X + symbol.Y + symbol.Sigma));
    }
    InkAlone(picture, picture.Row(0)[0], 1, operation);
    ReadAllCurves(picture, frame, {}, {}, operation);
  }
  PictureOperation stopped;
  stopped.Stopped = true;
  const Raster picture = Raster::Filled(50, 50, kWhitePixel);
  EXPECT_TRUE(FindSymbols(picture, {}, {.X = 5, .Y = 5}, stopped).IsStopped);
  EXPECT_TRUE(ReadAllCurves(picture, {}, {}, {}, stopped).IsStopped);
}

}  // namespace
}  // namespace graphize
