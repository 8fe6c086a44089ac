#include "commands/find_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/do.h"
#include "commands/ink_commands.h"
#include "raster/black_white.h"
#include "support/calibrated.h"
#include "support/colour_plot.h"
#include "support/quiet_desktop.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

constexpr std::uint32_t kBlue = 0xff1f77b4, kRed = 0xffd62728;

class FindTest : public ::testing::Test {
 protected:
  FindTest() {
    test::ColourPlot drawn;
    drawn.Curve([](double u) { return 0.7 - 0.2 * u; }, {.Thickness = 2}, kBlue);
    drawn.Curve([](double u) { return 0.2 + 0.3 * u; }, {.Thickness = 2}, kRed);
    drawn.Symbols({{100, 100}, {150.4, 130}, {200, 40.6}}, {test::Symbol::Disc, 9}, kBlackPixel);
    SetPicture(ws.plot, drawn.Picture.Clone());
    ws.calibration = test::PixelCalibration();
  }
  Raster Shown() const { return ws.plot.Pixels.Clone(); }
  static bool Same(const Raster& a, const Raster& b) {
    return std::equal(a.Pixels(), a.Pixels() + a.PixelCount(), b.Pixels());
  }

  Workspace ws;
  Desktop desktop = test::QuietDesktop();
};

TEST_F(FindTest, CapturesTheSymbolsThatAreNotLeftOut) {
  const Outcome outcome = Do(ws, desktop, SymbolsStep{.X = 101, .Y = 99, .LeftOut = {2}});
  ASSERT_TRUE(outcome.IsDone()) << outcome.Reason;
  EXPECT_EQ(outcome.Points, 2);
  ASSERT_EQ(ws.store.CaptureCount, 2);
  EXPECT_NEAR(ws.store.CaptureX[1], 100, 0.1);
  EXPECT_NEAR(ws.store.CaptureX[2], 200, 0.1);
  EXPECT_THAT(ws.status.Status, testing::StartsWith("Found 2 symbols"));
  EXPECT_THAT(Do(ws, desktop, SymbolsStep{.X = 20, .Y = 20}).Reason,
              testing::HasSubstr("only paper"));
  EXPECT_THAT(Do(ws, desktop, SymbolsStep{.X = 101, .Y = 99, .Tolerance = 9}).Reason,
              testing::HasSubstr("tolerance"));
  EXPECT_EQ(ws.inkCheck.Text, "2 points: all on ink");
}

TEST_F(FindTest, ReadsAllCurvesOrThoseThatAreTakenIntoTheList) {
  ASSERT_TRUE(Do(ws, desktop, ReadAllStep{}).IsDone());
  ASSERT_EQ(ws.curves.Curves.size(), 2u);
  EXPECT_EQ(ws.curves.Active, 0);
  EXPECT_EQ(ws.curves.Curves[1].Name, "curve 2");
  for (int i = 0; i < 2; ++i) EXPECT_GT(PointsOf(ws.curves, ws.store, i).CaptureCount, 250);
  EXPECT_NE(ws.curves.Curves[0].MarkColour, ws.curves.Curves[1].MarkColour);

  // Into further curves, and all or nothing.
  EXPECT_FALSE(Do(ws, desktop, ReadAllStep{{{1, "a"}, {9, "b"}}}).IsDone());
  EXPECT_FALSE(Do(ws, desktop, ReadAllStep{{{1, "curve 1"}}}).IsDone());
  EXPECT_EQ(ws.curves.Curves.size(), 2u);
  ASSERT_TRUE(Do(ws, desktop, ReadAllStep{{{2, "a"}}}).IsDone());
  EXPECT_EQ(ActiveCurve(ws.curves).Name, "a");
}

/// A framed plot with a curve, a grid, a legend in a box and a title; `more` is drawn first.
test::ColourPlot LegendPlot(const std::function<void(test::ColourPlot&)>& more = {}) {
  test::ColourPlot drawn;
  drawn.Grid(0xffd8d8d8);
  drawn.Frame();
  if (more) more(drawn);
  drawn.Curve([](double u) { return 0.7 - 0.2 * u; }, {.Thickness = 2}, kBlue);
  test::PlotDrawing legend = drawn.Layer();
  legend.Polyline({{310, 36}, {332, 36}}, {.Thickness = 2});
  legend.Digits({338, 32}, "142");
  drawn.Put(legend, kBlue);
  test::PlotDrawing black = drawn.Layer();
  black.Polyline({{302, 28}, {362, 28}, {362, 54}, {302, 54}, {302, 28}}, {});
  black.Digits({180, 5}, "141");
  drawn.Put(black, kBlackPixel);
  return drawn;
}

TEST_F(FindTest, NamesWhatWasClickedInsteadOfReadingIt) {
  const test::ColourPlot drawn = LegendPlot();
  SetPicture(ws.plot, drawn.Picture.Clone());
  struct Case {
    float X, Y;
    const char *Curve, *Symbols;
  };
  for (const bool hasAxes : {true, false}) {
    ws.calibration = hasAxes ? drawn.Layer().Calibration() : AxisCalibration();
    for (const Case& test : {Case{320, 36, "a sample of the legend", "a sample of the legend"},
                             {345, 35, "a word", "a word"},
                             {340, 28, "a box", ""},
                             {40, 150, "the frame", "the frame"},
                             {39, 150, "the frame", "the frame"},
                             {190, 8, "", "outside the axes"},
                             {200, 140, "a line of the grid", ""},
                             {75, 220, "only paper", "only paper"}}) {
      SCOPED_TRACE(testing::Message() << test.X << "," << test.Y << " axes " << hasAxes);
      const Outcome curve = Do(ws, desktop, ReadStep{test.X, test.Y, {}});
      EXPECT_FALSE(curve.IsDone());
      EXPECT_THAT(curve.Reason, testing::HasSubstr(test.Curve));
      const Outcome symbols = Do(ws, desktop, SymbolsStep{.X = test.X, .Y = test.Y});
      EXPECT_FALSE(symbols.IsDone());
      EXPECT_THAT(symbols.Reason, testing::HasSubstr(test.Symbols));
    }
    EXPECT_TRUE(Do(ws, desktop, ReadStep{200, 116, {}}).IsDone());
  }
}

TEST_F(FindTest, WithoutAxesReadsTheCurvesWithinTheDrawnFrameAlone) {
  const test::ColourPlot drawn = LegendPlot([](test::ColourPlot& plot) {
    test::PlotDrawing loop = plot.Layer();
    std::vector<test::PixelPosition> eight;
    for (int i = 0; i <= 400; ++i) {
      const double t = i * 2 * 3.14159265358979 / 400;
      eight.push_back({200 + 120 * std::sin(t), 180 + 50 * std::sin(2 * t)});
    }
    loop.Polyline(eight, {.Thickness = 2});
    plot.Put(loop, kRed);
    std::vector<test::PixelPosition> row;
    for (int i = 0; i < 9; ++i) row.push_back({60 + 35.0 * i, 70});
    plot.Symbols(row, {test::Symbol::Disc, 11}, 0xff2ca02c);
  });
  SetPicture(ws.plot, drawn.Picture.Clone());
  ws.calibration = {};
  const PlotReading all = ReadAllAt(ws, desktop);
  ASSERT_EQ(all.Curves.size(), 2u);
  EXPECT_LT(Length(all.Curves[0].Colour - RgbOf(kBlue)), 30);
  EXPECT_EQ(all.Curves[0].Label.size(), 1u);
  EXPECT_LT(Length(all.Curves[1].Colour - RgbOf(kRed)), 30);
  EXPECT_GT(all.Curves[1].Reading.Points.size(), 450u) << "the loop is one";
}

TEST_F(FindTest, AnInkAloneGivesWayToAnotherAndToTheColours) {
  const auto done = [&](Step step) { return Do(ws, desktop, std::move(step)); };
  const Raster colours = Shown();
  const InkStep blue{0x1f, 0x77, 0xb4}, red{0xd6, 0x27, 0x28};
  ASSERT_TRUE(done(red).IsDone());
  const Raster redAlone = Shown();
  EXPECT_TRUE(IsBlackAndWhite(redAlone));
  ASSERT_TRUE(done(blue).IsDone());
  EXPECT_FALSE(Same(Shown(), redAlone));
  ASSERT_TRUE(done(ShowColoursStep{}).IsDone());
  EXPECT_TRUE(Same(Shown(), colours));
  EXPECT_FALSE(done(ShowColoursStep{}).IsDone());
  EXPECT_THAT(done(InkStep{250, 250, 250}).Reason, testing::HasSubstr("colour of the paper"));
  EXPECT_THAT(done(InkStep{0, 0xff, 0}).Reason, testing::HasSubstr("the nearest is "));
  ASSERT_TRUE(done(InkStep{0xe0, 0x20, 0x10}).IsDone());  // nearly the red
  EXPECT_TRUE(Same(Shown(), redAlone));
  ASSERT_TRUE(done(ShowColoursStep{}).IsDone());
  EXPECT_THAT(done(InkStep{0, 0, 0, 7}).Reason, testing::HasSubstr("tolerance"));
  ASSERT_TRUE(done(BlackWhiteStep{}).IsDone());
  EXPECT_THAT(done(blue).Reason, testing::HasSubstr("black and white"));
}

TEST(FindSteps, AreWrittenAndReadBack) {
  for (const char* text :
       {"symbols 12 34 mass 1", "symbols 12.5 34 box 0.75 without 2-4,9", "read-all 0",
        "read-all 2 1 \"\" 3 \"a b\"", "ink 214 39 40 1", "ink 0 0 255 1.5", "show-colours",
        "black-white auto", "black-white local", "black-white 127.5"}) {
    const auto step = StepOf(text);
    ASSERT_TRUE(std::holds_alternative<Step>(step)) << text << std::get<std::string>(step);
    EXPECT_EQ(TextOf(std::get<Step>(step)), text);
  }
  for (const char* text : {"symbols 1 2 middle 1", "read-all 2 1 \"\"", "ink 1 2 256 1"})
    EXPECT_TRUE(std::holds_alternative<std::string>(StepOf(text))) << text;
}

}  // namespace
}  // namespace graphize
