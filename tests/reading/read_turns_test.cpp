// Peaks, bends and corners: where a stroke turns within its own width.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include "support/curve_plot.h"

namespace graphize {
namespace {

using test::CurvePlot;
using test::kBlue;
using test::PixelPosition;
using test::PlotDrawing;
using test::Stroke;

TEST(ReadTurns, ReachesTheTopsOfAThinCurveThatIsDrawnFromPointToPoint) {
  const auto wave = [](double k) { return 0.5 + 0.45 * std::sin(k * 0.47); };
  const auto drawn = [&](double u) {
    const double k = std::floor(u * 60), part = u * 60 - k;
    return (1 - part) * wave(k) + part * wave(k + 1);
  };
  CurvePlot plot;
  const auto course = plot.Curve(drawn, {.Thickness = 1.2}, kBlue);
  const CurveReading reading = plot.Read(course[course.size() / 2]);
  int tops = 0;
  for (int k = 4; k < 57; ++k) {
    if ((wave(k) - wave(k - 1)) * (wave(k) - wave(k + 1)) <= 0) continue;
    ++tops;
    const PixelPosition top = plot.Layer().Place(k / 60.0, wave(k));
    double nearest = std::numeric_limits<double>::infinity();
    for (const CurvePoint& point : reading.Points) {
      if (std::fabs(point.X - top.X) < 6) {
        EXPECT_LT(Distance(point, course), 1) << point.X << ", " << point.Y;
      }
      nearest = std::min(nearest, std::hypot(point.X - top.X, point.Y - top.Y));
    }
    EXPECT_LT(nearest, 2.5) << top.X << ", " << top.Y;
  }
  EXPECT_EQ(tops, 7);
}

double Peak(double u, double wide, double at = 0.501) {
  return 1 / (1 + std::pow((u - at) / wide, 2));
}

TEST(ReadTurns, ClimbsAPeakWhoseSidesTouch) {
  struct Case {
    double Thickness, Wide, Tip, Aside;  // how far off the tip, and any point across, may be
    bool IsTrough = false, IsHard = false;
  };
  const Case cases[] = {
      {1.2, 0.004, 0.5, 0.6},
      {1.2, 0.02, 0.5, 0.6},
      {2, 0.004, 0.5, 0.4},
      {2, 0.012, 0.5, 0.4},
      {2, 0.012, 0.5, 0.4, true},
      {3, 0.004, 0.5, 0.4, true},
      {3, 0.02, 0.5, 0.4},
      {4, 0.03, 0.8, 0.9},
      {2, 0.02, 1, 1.5, false, true},
      {3, 0.03, 1, 1.5, false, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.Thickness << " " << c.Wide << " " << c.IsHard);
    CurvePlot plot;
    const double foot = c.IsTrough ? 0.9 : 0.1, height = c.IsTrough ? -0.75 : 0.75;
    const auto course = plot.Curve([&](double u) { return foot + height * Peak(u, c.Wide); },
                                   {.Thickness = c.Thickness}, kBlue);
    if (c.IsHard) plot.Harden();
    const CurveReading reading = plot.Read(course[60]);
    const auto out = [&](const auto& at) { return c.IsTrough ? -at.Y : at.Y; };
    const PixelPosition drawn = *std::ranges::min_element(course, {}, out);
    const auto tip = std::ranges::min_element(reading.Points, {}, out);
    EXPECT_NEAR(tip->Y, drawn.Y, c.Tip);
    EXPECT_NEAR(tip->X, drawn.X, c.Tip);
    for (const CurvePoint& point : reading.Points)
      EXPECT_LT(Distance(point, course), c.Aside) << point.X << ", " << point.Y;
    // Up one side and down the other, without a step back.
    const auto isSteep = [&](const CurvePoint& at) { return std::fabs(at.X - drawn.X) < 5; };
    for (auto at = reading.Points.begin() + 1; at != reading.Points.end(); ++at)
      if (isSteep(*at) && isSteep(at[-1])) {
        EXPECT_LE((out(*at) - out(at[-1])) * (at <= tip ? 1 : -1), 0.01) << at->X << ", " << at->Y;
      }
  }
}

/// A level base is the curve's own, not a line of the plot: it is interrupted below each peak.
TEST(ReadTurns, ReadsASpectrumOverALevelBase) {
  const std::array<double, 4> places = {0.2, 0.45, 0.49, 0.8}, heights = {0.6, 0.3, 0.7, 0.4};
  const auto spectrum = [&](double u) {
    double v = 0.12;
    for (std::size_t i = 0; i < places.size(); ++i)
      v += heights[i] * std::exp(-std::pow((u - places[i]) / 0.009, 2));
    return v;
  };
  for (const std::uint32_t ink : {kBlue, kBlackPixel}) {
    CurvePlot plot;
    plot.Frame();
    PlotDrawing layer = plot.Layer();
    const auto course = layer.Curve(spectrum, {.Thickness = 1.5}, 0.004, 0.996);
    plot.Put(layer, ink);
    for (const double u : {0.1, 0.2}) {
      const CurveReading reading = plot.Read(layer.Place(u, spectrum(u)));
      ASSERT_EQ(reading.Refusal, "");
      EXPECT_NEAR(reading.Points.front().X, course.front().X, 3);
      EXPECT_NEAR(reading.Points.back().X, course.back().X, 3);
      for (const double place : places) {
        const PixelPosition top = layer.Place(place, spectrum(place));
        EXPECT_TRUE(std::ranges::any_of(reading.Points, [&](const CurvePoint& point) {
          return std::hypot(point.X - top.X, point.Y - top.Y) < 0.8;
        })) << place;
      }
    }
  }
}

/// A bend into a level base is seen, however steep the side is.
TEST(ReadTurns, SeesTheFeetOfSteepPeaks) {
  for (const double thickness : {1.5, 2.0, 3.0})
    for (const double wide : {0.008, 0.015}) {
      const auto peak = [&](double u) {
        return 0.1 + 0.6 * std::exp(-std::pow((u - 0.5) / wide, 2));
      };
      CurvePlot plot;
      const auto course = plot.Curve(peak, {.Thickness = thickness}, kBlue);
      const CurveReading reading = plot.Read(course[60]);
      const double half = plot.Layer().Place(0.5, 0.4).Y;
      EXPECT_THAT(reading.Doubts, testing::IsEmpty()) << thickness << ", " << wide;
      int bridged = 0;
      for (const CurvePoint& point : reading.Points) {
        if (point.Y < half) continue;
        EXPECT_LT(Distance(point, course), 0.6) << thickness << ", " << wide;
        bridged += point.IsBridged ? 1 : 0;
      }
      EXPECT_LE(bridged, 1) << thickness << ", " << wide;
    }
}

TEST(ReadTurns, LeavesWhatStandsOnACrest) {
  struct Case {
    const char* Name;
    bool IsTold;
    std::function<void(PlotDrawing&, PixelPosition)> Draw;  // on the crest
  };
  const Stroke thin{.Thickness = 1.6};
  const auto line = [&](double dx0, double dy0, double dx1, double dy1) {
    return [=](PlotDrawing& layer, PixelPosition top) {
      layer.Polyline({{top.X + dx0, top.Y + dy0}, {top.X + dx1, top.Y + dy1}}, thin);
    };
  };
  const Case cases[] = {
      {"a leader", true, line(0, 0, 0, -22)},
      {"a bar", true, line(0, 20, 0, -20)},
      {"a bar with caps", true,
       [&](PlotDrawing& layer, PixelPosition top) {
         line(0, 0, 0, -16)(layer, top);
         line(-4, -16, 4, -16)(layer, top);
       }},
      {"a letter", false,
       [&](PlotDrawing& layer, PixelPosition top) {
         layer.Digits({top.X - 2.5, top.Y - 8}, "4");
       }},
  };
  const auto hill = [](double u) { return 0.2 + 0.4 * std::exp(-std::pow((u - 0.5) / 0.05, 2)); };
  for (const Case& c : cases) {
    CurvePlot plot;
    plot.Frame();
    const auto course = plot.Curve(hill, {.Thickness = 1.6}, kBlue);
    PlotDrawing layer = plot.Layer();
    const PixelPosition top = layer.Place(0.5, hill(0.5));
    c.Draw(layer, top);
    plot.Put(layer, kBlue);
    const CurveReading reading = plot.Read(course[60]);
    const CurvePoint& highest = *std::ranges::min_element(reading.Points, {}, &CurvePoint::Y);
    EXPECT_NEAR(highest.Y, top.Y, 1 + 2 * highest.Sigma) << c.Name << highest.Sigma;
    EXPECT_EQ(c.IsTold, !reading.Doubts.empty()) << c.Name;
  }
  // The crest may be as narrow as a peak.
  for (const double thickness : {1.0, 2.0}) {
    CurvePlot plot;
    const auto course =
        plot.Curve([](double u) { return 0.1 + 0.4 * Peak(u, 0.012); }, {.Thickness = 2}, kBlue);
    PlotDrawing layer = plot.Layer();
    const PixelPosition top = *std::ranges::min_element(course, {}, &PixelPosition::Y);
    layer.Polyline({top, {top.X, top.Y - 40}}, {.Thickness = thickness});
    plot.Put(layer, kBlue);
    const CurveReading reading = plot.Read(course[60]);
    const CurvePoint& highest = *std::ranges::min_element(reading.Points, {}, &CurvePoint::Y);
    EXPECT_NEAR(highest.Y, top.Y, 1 + 2 * highest.Sigma);
    EXPECT_GT(highest.Y, top.Y - 4) << thickness;
    EXPECT_THAT(reading.Doubts, testing::Contains(testing::HasSubstr("pixels farther")));
  }

  // A round crest goes as far as it is read, and so does a corner.
  CurvePlot plain;
  const auto wave =
      plain.Curve([](double u) { return 0.5 + 0.35 * std::sin(9 * u); }, {.Thickness = 2}, kBlue);
  EXPECT_THAT(plain.Read(wave[100]).Doubts, testing::IsEmpty());
}

/// A cut through a corner has ink of both arms: its middle would lie inside of it.
TEST(ReadTurns, PutsACornerWhereTheArmsMeet) {
  for (const double thickness : {1.5, 2.0, 3.0, 4.0, 8.0})
    for (const double run : {0.2, 0.1, 0.05, 0.01}) {
      SCOPED_TRACE(testing::Message() << thickness << ", " << run);
      CurvePlot plot;
      const auto step = [&](double u) { return 0.1 + 0.7 * std::clamp((u - 0.5) / run, 0.0, 1.0); };
      const auto course = plot.Curve(step, {.Thickness = thickness}, kBlue);
      const CurveReading reading = plot.Read(course[60]);
      EXPECT_THAT(reading.Doubts, testing::IsEmpty());
      double nearest[] = {9, 9};
      for (const CurvePoint& point : reading.Points) {
        EXPECT_LT(Distance(point, course), 0.5) << point.X << ", " << point.Y;
        EXPECT_FALSE(point.IsBridged) << point.X << ", " << point.Y;
        for (const int end : {0, 1}) {
          const PixelPosition corner = plot.Layer().Place(0.5 + end * run, 0.1 + 0.7 * end);
          nearest[end] = std::min(nearest[end], std::hypot(point.X - corner.X, point.Y - corner.Y));
        }
      }
      EXPECT_LT(nearest[0], 0.9);
      EXPECT_LT(nearest[1], 0.9);
    }
}

/// A step whose bends are round.
std::function<double(double)> RoundStep(double run, double radius) {
  return [=](double u) {
    const auto bend = [&](double z) {
      return radius * std::log1p(std::exp(-std::fabs(z) / radius)) + std::max(z, 0.0);
    };
    const double z = (u - 0.5) / run;
    return 0.1 + 0.7 * (bend(z) - bend(z - 1));
  };
}

/// Nothing becomes a corner that is round.
TEST(ReadTurns, LeavesARoundBendRound) {
  for (const double thickness : {1.5, 2.0, 4.0}) {
    CurvePlot plot;
    const auto course = plot.Curve(RoundStep(0.1, 0.15), {.Thickness = thickness}, kBlue);
    for (const CurvePoint& point : plot.Read(course[60]).Points)
      EXPECT_LT(Distance(point, course), 0.2) << thickness << ": " << point.X << ", " << point.Y;
  }
}

/// An arc of less than half a stroke has no inner edge.
TEST(ReadTurns, ReadsATightArcByItsOuterEdge) {
  for (const double thickness : {6.0, 8.0}) {
    CurvePlot plot;
    const auto course = plot.Curve(RoundStep(0.05, 0.02), {.Thickness = thickness}, kBlue);
    for (const CurvePoint& point : plot.Read(course[60]).Points)
      EXPECT_LT(Distance(point, course), 0.4) << thickness << ": " << point.X << ", " << point.Y;
  }
}

}  // namespace
}  // namespace graphize
