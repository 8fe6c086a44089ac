#include "tracing/ink_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>

#include "support/colour_plot.h"
#include "support/plot_drawing.h"

namespace graphize::test {
namespace {

using Points = std::vector<PlotPosition>;
using Counts = std::map<InkVerdict, int>;

constexpr int kWidth = 500, kHeight = 360;

PlotDrawing Paper() {
  return PlotDrawing(kWidth, kHeight, 60, 50, 440, 310);
}

PlotPosition At(PixelPosition place) {
  return {static_cast<float>(place.X), static_cast<float>(place.Y)};
}

/// Where the function runs, in whole columns as a trace has them.
Points Along(const PlotDrawing& drawing, const std::function<double(double)>& v, double first = 0.1,
             double last = 0.9, float aside = 0) {
  Points points;
  const double columns = drawing.Place(1, 0).X - drawing.Place(0, 0).X;
  for (int i = 0; i <= static_cast<int>((last - first) * columns); ++i) {
    const double u = first + i / columns;
    PlotPosition at = At(drawing.Place(u, v(u)));
    points.push_back({std::round(at.Column), std::round(2 * at.Row) / 2 + aside});
  }
  return points;
}

Counts Check(const Raster& picture, const Points& points, const AxisCalibration& axes) {
  Counts counts;
  for (const InkVerdict verdict : CheckInk(picture, axes, points)) ++counts[verdict];
  return counts;
}

double Rising(double u) {
  return 0.2 + 0.6 * u;
}
double Falling(double u) {
  return 0.8 - 0.6 * u;
}
/// Over at the crossing from the one to the other.
double Changing(double u) {
  return u < 0.5 ? Rising(u) : Falling(u);
}

/// Touches the frame's line over some forty columns.
double Crest(double u) {
  return 1 - 2 * (u - 0.5) * (u - 0.5);
}
/// A crest of which the frame hides what lies above it.
double CutOff(double u) {
  return std::min(1.1 - 7 * (u - 0.5) * (u - 0.5), 1.0);
}

constexpr double kLevel = 0.2;
/// Leaves the curve over paper, then jumps to a level line.
double Lost(double u) {
  return u < 0.4 ? Rising(u) : u < 0.55 ? Rising(0.4) : kLevel;
}
/// Jumps to it from the curve.
double Jumping(double u) {
  return u < 0.5 ? Rising(u) : kLevel;
}

TEST(InkCheck, PointsAreJudgedByWhatIsDrawnThere) {
  const auto thin = [](PlotDrawing& drawing) { drawing.Curve(Rising, {.Thickness = 2}); };
  const auto pale = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {.Thickness = 2, .Darkness = 0.15});
  };
  const auto dashed = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {.Thickness = 2, .Dash = 6, .Gap = 2});
  };
  const auto cross = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {.Thickness = 2});
    drawing.Curve(Falling, {.Thickness = 2});
    drawing.LinesAtV({0.5}, {});
    drawing.LinesAtU({0.5}, {});
  };
  const auto twin = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {});
    drawing.Curve([](double u) { return Rising(u) + 5 / 260.0; }, {});
  };
  const auto symbols = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {.Thickness = 2});
    for (double u = 0.1; u < 1; u += 0.2) drawing.Disc(drawing.Place(u, Rising(u)), 10);
  };
  const auto blot = [](PlotDrawing& drawing) {
    drawing.Curve(Rising, {.Thickness = 2});
    drawing.Curve(Rising, {.Thickness = 16}, 0.4, 0.7);
  };
  using Function = std::function<double(double)>;
  const Function midway = [](double u) { return Rising(u) + 2.5 / 260; };
  const Function off = [](double u) { return Rising(u) + 7 / 260.0; };
  const Function frameTop = [](double) { return 1.0; };
  const Function above = [](double) { return 1 + 9 / 260.0; };
  constexpr double kAll = 305;
  const struct {
    const char* Name;
    void (*Draw)(PlotDrawing&);
    Function V;
    float Aside;
    InkVerdict Verdict;
    double Least, Most;  // so many points have it
  } cases[] = {
      {"on ink", thin, Rising, 0, InkVerdict::OnInk, kAll, kAll},
      {"its edge", thin, Rising, 2, InkVerdict::OnInk, kAll, kAll},
      {"pale ink", pale, Rising, 0, InkVerdict::OnInk, kAll, kAll},
      {"beside", thin, off, 0, InkVerdict::NotOnInk, kAll, kAll},
      {"dashes", dashed, Rising, 0, InkVerdict::OnInk, kAll, kAll},
      {"crossing, straight on", cross, Rising, 0, InkVerdict::OnInk, kAll, kAll},
      {"crossing, changed over", cross, Changing, 0, InkVerdict::Leap, 1, 40},
      {"a corner alone", [](PlotDrawing& drawing) { drawing.Curve(Changing, {}); }, Changing, 0,
       InkVerdict::OnInk, kAll, kAll},
      {"all behind a jump from paper",
       [](PlotDrawing& drawing) {
         drawing.Curve(Rising, {.Thickness = 2}, 0, 0.4);
         drawing.LinesAtV({kLevel}, {});
       },
       Lost, 0, InkVerdict::Leap, 130, 137},
      {"a far jump",
       [](PlotDrawing& drawing) {
         drawing.Curve(Rising, {.Thickness = 2});
         drawing.LinesAtV({kLevel}, {});
       },
       Jumping, 0, InkVerdict::Leap, 2, 2},
      {"between two", twin, midway, 0, InkVerdict::BetweenStrokes, 0.7 * kAll, kAll},
      {"symbols", symbols, Rising, 0, InkVerdict::OnInk, kAll, kAll},
      {"a blot", blot, Rising, 0, InkVerdict::BetweenStrokes, 80, 130},
      {"a crest on the frame", [](PlotDrawing& drawing) { drawing.Curve(Crest, {.Thickness = 2}); },
       Crest, 0, InkVerdict::OnInk, kAll, kAll},
      {"cut off by the frame",
       [](PlotDrawing& drawing) {
         drawing.Curve(CutOff, {.Thickness = 2}, 0, 0.38);
         drawing.Curve(CutOff, {.Thickness = 2}, 0.62, 1);
       },
       CutOff, 0, InkVerdict::OnFrame, 40, 120},
      {"the frame", thin, frameTop, 0, InkVerdict::OnFrame, kAll, kAll},
      {"beyond it",
       [](PlotDrawing& drawing) {
         drawing.Polyline({drawing.Place(0, 1 + 9 / 260.0), drawing.Place(1, 1 + 9 / 260.0)}, {});
       },
       above, 0, InkVerdict::OnFrame, kAll, kAll},
      {"up to it", [](PlotDrawing& drawing) { drawing.Curve(Rising, {.Thickness = 2}); }, Rising, 0,
       InkVerdict::OnInk, kAll, kAll},
  };
  for (const auto& c : cases) {
    PlotDrawing drawing = Paper();
    drawing.Frame({.Thickness = 2}, 5, 6);
    c.Draw(drawing);
    const Counts counts =
        Check(drawing.GreyPicture(), Along(drawing, c.V, 0.1, 0.9, c.Aside), drawing.Calibration());
    const auto found = counts.find(c.Verdict);
    const int count = found == counts.end() ? 0 : found->second;
    EXPECT_GE(count, c.Least) << c.Name;
    EXPECT_LE(count, c.Most) << c.Name;
  }
}

TEST(InkCheck, SymbolsFramesEndsAndDarkPagesAreNotDoubted) {
  PlotDrawing drawing = Paper();
  drawing.Frame({.Thickness = 2}, 5, 6);
  drawing.Curve(Rising, {.Thickness = 2});
  drawing.Box(drawing.Place(0.3, 0.8), 12, {});
  Raster picture = drawing.Picture();
  const AxisCalibration axes = drawing.Calibration();
  const auto verdictAt = [&](double u, double v) {
    return CheckInk(picture, axes, Points{At(drawing.Place(u, v))}).front();
  };
  EXPECT_EQ(verdictAt(0.3, 0.8), InkVerdict::OnInk) << "the middle of a hollow symbol";
  EXPECT_EQ(verdictAt(0.5, 0.8), InkVerdict::NotOnInk);
  EXPECT_EQ(verdictAt(1, Rising(1)), InkVerdict::OnInk) << "where the curve meets the frame";
  // A whole column of a scan through a black area.
  drawing.Disc(drawing.Place(0.7, 0.3), 70);
  picture = drawing.Picture();
  Points scanned;
  for (float column = 315; column < 335; ++column)
    for (float row = 205; row < 260; ++row) scanned.push_back({column, row});
  EXPECT_EQ(Check(picture, scanned, axes)[InkVerdict::OnInk], static_cast<int>(scanned.size()));

  for (std::size_t i = 0; i < picture.PixelCount(); ++i) picture.Pixels()[i] ^= 0xffffffu;
  EXPECT_EQ(verdictAt(0.2, Rising(0.2)), InkVerdict::OnInk) << "white on black";
  EXPECT_EQ(verdictAt(0.5, 0.8), InkVerdict::NotOnInk);
  EXPECT_EQ(CheckInk(picture, {}, Points{{-5, 9}, {1e9f, 3}}),
            (std::vector{InkVerdict::NotOnInk, InkVerdict::NotOnInk}));
}

/// Near its tip a narrow peak has the ink of both its sides.
TEST(InkCheck, TheSidesOfAPeakAreNoDetour) {
  for (const double wide : {0.012, 0.02, 0.03}) {
    PlotDrawing drawing = Paper();
    Points points;
    for (const PixelPosition& at :
         drawing.Curve([&](double u) { return 0.2 + 0.7 / (1 + std::pow((u - 0.5) / wide, 2)); },
                       {.Thickness = 3}, 0.1, 0.9))
      points.push_back(At(at));
    const Counts counts = Check(drawing.GreyPicture(), points, drawing.Calibration());
    EXPECT_FALSE(counts.contains(InkVerdict::Leap)) << wide;
  }
}

TEST(InkCheck, WhereACurveGoesOnIsToldByItsOwnInk) {
  constexpr std::uint32_t kBlue = 0xff1f77b4u, kRed = 0xffd62728u, kGrey = 0xffb0b0b0u;
  const auto wave = [](double u) { return 0.5 + 0.4 * std::sin(30 * u); };
  ColourPlot crests(kWhitePixel, 0, kWidth, kHeight);
  PlotDrawing touched = crests.Layer();
  touched.LinesAtV({0.105, 0.895}, {});
  crests.Put(touched, kGrey);
  crests.Curve(wave, {.Thickness = 1.5}, kBlue);
  crests.Scan(0, 0, 15);
  for (int i = 0; i < 600; ++i)
    crests.Picture.Row(i * 397 % kHeight)[i * 211 % kWidth] = kBlackPixel;
  const Points along = Along(touched, wave);
  EXPECT_EQ(Check(crests.Picture, along, touched.Calibration())[InkVerdict::OnInk],
            static_cast<int>(along.size()));

  ColourPlot crossing(kWhitePixel, 0, kWidth, kHeight);
  crossing.Curve(Falling, {.Thickness = 1.5}, kBlue);
  crossing.Curve(Rising, {.Thickness = 1.5}, kRed);
  crossing.Scan(0, 0, 15);
  const auto changed = Check(crossing.Picture, Along(touched, Changing), touched.Calibration());
  ASSERT_TRUE(changed.contains(InkVerdict::Leap));
  EXPECT_LE(changed.at(InkVerdict::Leap), 40);
}

TEST(InkCheck, IsToldInOneLine) {
  using enum InkVerdict;
  EXPECT_EQ(InkCheckText(std::vector{OnInk}), "1 point: all on ink");
  EXPECT_EQ(InkCheckText(std::vector{OnInk, NotOnInk, NotOnInk, OnFrame}),
            "4 points: 2 not on ink, 1 on the frame");
  EXPECT_EQ(InkCheckText(std::vector{Leap, BetweenStrokes}),
            "2 points: 1 between two strokes, 1 where the direction leaps");
}

}  // namespace
}  // namespace graphize::test
