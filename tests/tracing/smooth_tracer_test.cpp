#include "tracing/smooth_tracer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

#include "support/plot_drawing.h"
#include "support/trace_cases.h"

namespace graphize::test {
namespace {

TEST(SmoothTracer, EmitsTheMeanRowAndTheEdgesBesideTheStroke) {
  ExpectTraces(
      TraceSmooth,
      {
          {"thick stroke, half to even", ".. ## ## ## ## ..", 0, 1, "2", "3",
           "0,2 0,5 0,0 1,2 1,5 1,0", true},
          {"mean of an uneven stroke", ".... #### ...# ...# ....", 0, 1, "2", "3",
           "0,1 1,1 2,1 3,2"},
          {"hollow stroke", ".... #### .... ####", 0, 2, "2", "1", "0,2 1,2 2,2 3,2"},
          {"strokes further apart than the Y increment", ".... #### .... .... ####", 0, 2, "2", "1",
           "0,1 1,1 2,1 3,1"},
          {"break of X increment columns", "##..## ......", 0, 0, "2", "3", "0,0 1,0 4,0 5,0"},
          {"longer break", "##...## .......", 0, 0, "2", "3", "0,0 1,0"},
          {"no break within the increment", "##.#", 0, 0, "0", "3", "0,0 1,0"},
          {"negative increments, like 0", "### ### ### ... ###", 0, 1, "-7", "-7", "0,1 1,1 2,1"},
          {"narrows to its lower edge and widens again", "#.. #.. #.. #.. #.# ##.", 0, 2, "0", "0",
           "0,2 1,5 2,4"},
          {"narrows to its upper edge", "##. #.# #.. #.. #.. #..", 0, 2, "0", "0", "0,2 1,0 2,1"},
          {"behind a break only rows near the mean count", "#.. #.. #.. #.. #.. #.#", 0, 2, "2",
           "0", "0,2"},
          {"start near the curve", "## .. .. ..", 0, 3, "2", "1", "0,0 1,0"},
          {"start too far away", "## .. .. .. ..", 0, 4, "0", "1", ""},
          {"first and last row of the picture", "### ... ... ###", 0, 3, "2", "1", "0,3 1,3 2,3"},
      });
}

TEST(SmoothTracer, SteepStretchesStayOnTheirStroke) {
  const char* const cross =
      "##.......## ..#.....#.. ...#...#... ....#.#.... .....#..... "
      "....#.#.... ...#...#... ..#.....#.. ##.......##";
  ExpectTraces(TraceSmooth, {
                                {"a step of the curve itself, another stroke beside its middle",
                                 "##..... ..#.... ..#.... ..#.... ..#.... ..##### "
                                 "..#.... ..#.... ..#.... ..#.... ..#.... ...####",
                                 0, 0, "2", "1", "0,0 1,0 2,6 3,11 4,11 5,11 6,11"},
                                {"the same upward",
                                 "...#### ..#.... ..#.... ..#.... ..#.... ..##### "
                                 "..#.... ..#.... ..#.... ..#.... ..#.... ##.....",
                                 0, 11, "2", "1", "0,11 1,11 2,6 3,0 4,0 5,0 6,0"},
                                {"a line that crosses, another stroke at its middle",
                                 "..#... ..#... ..#... ..#... ###### ..#... ..#... ..#### "
                                 "..#... ..#... ..#... ..#... ..#... ..#... ..#...",
                                 0, 4, "2", "1", "0,4 1,4 2,4 3,4 4,4 5,4"},
                                {"crossing strokes keep their ways", cross, 0, 0, "2", "1",
                                 "0,0 1,0 2,1 3,2 4,4 5,4 6,4 7,6 8,7 9,8 10,8"},
                                {"and so does the other", cross, 0, 8, "2", "1",
                                 "0,8 1,8 2,7 3,6 4,4 5,4 6,4 7,2 8,1 9,0 10,0"},
                            });
}

TEST(SmoothTracer, DotsThatCrossAreNotFollowedOverAHole) {
  // A level curve with a hole, crossed by a steep dotted line whose dots touch it beside the hole.
  std::string rows;
  for (int y = 0; y < 24; ++y) {
    for (int x = 0; x < 16; ++x) {
      const int dot = y + 5 * (x - 7);
      rows += (y == 12 && x != 9) || (dot >= 13 && dot <= 16) ? '#' : '.';
    }
    rows += ' ';
  }
  ExpectTraces(TraceSmooth, {{"dots", rows, 0, 12, "2", "3",
                              "0,12 1,12 2,12 3,12 4,12 5,12 6,12 7,14 8,10 10,12 11,12 12,12 "
                              "13,12 14,12 15,12"}});
}

TEST(SmoothTracer, ACurveIsKeptWhereOthersCrossIt) {
  std::vector<std::pair<double, Stroke>> others;  // slopes in rows per column
  for (const double slope : {-30.0, -6.0, -2.0, -0.7, 1.2, 3.0, 9.0})
    for (const double thickness : {1.0, 2.0})
      for (const double gap : {0.0, 2.0})
        others.push_back({slope, {.Thickness = thickness, .Dash = 3, .Gap = gap}});
  for (const auto& [slope, other] : others) {
    for (const double thickness : {1.0, 2.0, 4.0}) {
      PlotDrawing drawing(240, 200, 0, 0, 239, 199);
      const auto row = [](double x) { return 80.2 + 0.16 * x; };
      drawing.Polyline({{4, row(4)}, {230, row(230)}}, {.Thickness = thickness});
      const double dx = 90 / std::abs(slope), dy = std::copysign(90, slope);
      drawing.Polyline({{120 - dx, row(120) - dy}, {120 + dx, row(120) + dy}}, other);
      PlotImage image;
      SetPicture(image, drawing.Picture());
      ExtractionRecords records(std::move(image));
      const ScriptedDesktop desktop;
      TraceSmooth(records.With(desktop), 4, 81);
      const PointStore& store = records.Store;
      EXPECT_GE(store.CaptureX[store.CaptureCount], 229);
      int astray = 0;
      for (int i = 1; i <= store.CaptureCount; ++i)
        if (std::abs(200 - store.CaptureY[i] - row(store.CaptureX[i])) > 2) ++astray;
      // As long as the other one is within the Y increment the mean is of both.
      const double together = (3 + other.Thickness) / std::abs(slope - 0.16);
      EXPECT_LE(astray, 2 + together) << slope << ", " << other.Thickness
                                      << (other.Gap > 0 ? " dots" : "") << " across " << thickness;
    }
  }
}

/// A plot in which a line is traced from its first point, and what comes out beside the truth.
struct TracedLine {
  PlotDrawing Drawing{300, 220, 20, 15, 270, 195};
  std::vector<PixelPosition> Line;
  std::optional<int> EmptyRow = std::nullopt;  // lost in the scan
  const char* XIncrement = "2";

  void ExpectFollowed(const char* name) const {
    Raster picture = Drawing.Picture();
    if (EmptyRow) std::fill_n(picture.Row(*EmptyRow), picture.Width(), kWhitePixel);
    PlotImage image;
    SetPicture(image, std::move(picture));
    ExtractionRecords records(std::move(image));
    records.Control.Xrange = XIncrement;
    const ScriptedDesktop desktop;
    const auto single = [](double at) { return static_cast<float>(std::lround(at)); };
    TraceSmooth(records.With(desktop), single(Line.front().X), single(Line.front().Y));
    const PointStore& store = records.Store;
    ASSERT_GT(store.CaptureCount, 0) << name;
    EXPECT_NEAR(store.CaptureX[store.CaptureCount], Line.back().X, 4) << name;
    int astray = 0;
    for (int i = 1; i <= store.CaptureCount; ++i) {
      const auto next = std::find_if(Line.begin(), Line.end() - 1,
                                     [&](const auto& at) { return at.X >= store.CaptureX[i]; });
      const auto before = next == Line.begin() ? next : next - 1;
      const auto [low, high] = std::minmax(before->Y, next->Y);
      const double row = 220 - store.CaptureY[i];
      if (row < low - 8 || row > high + 8) ++astray;
    }
    EXPECT_LE(astray, store.CaptureCount / 25) << name;
  }
};

TEST(SmoothTracer, ALineIsFollowedToItsEndAndNoFarther) {
  for (const int ticks : {6, -6}) {
    for (const double v : {0.03, 0.25, 0.35, 0.62, 0.9}) {
      TracedLine framed{.XIncrement = "8"};
      framed.Drawing.Frame({.Thickness = 2}, 10, ticks);
      for (int i = 0; i <= 10; ++i) framed.Drawing.Digits({275, 12.0 + 18 * i}, "50");
      framed.Line =
          framed.Drawing.Curve([v](double u) { return v + 0.9 * (1 - v) * (1 - u) * (1 - u); },
                               {.Thickness = 2}, 0.05, 1);
      framed.ExpectFollowed("into the frame");
    }
  }
  for (const int kind : {0, 1, 2}) {
    TracedLine symbols;
    symbols.Line = {{30, 60}, {60, 150}, {90, 40}, {130, 30}, {150, 170}, {200, 100}, {220, 20}};
    symbols.Drawing.Polyline(symbols.Line, {});
    for (const PixelPosition& at : symbols.Line) {
      if (at.X == symbols.Line.back().X) break;
      if (kind < 2) symbols.Drawing.Disc(at, 6 + 5 * kind);
      if (kind == 2) symbols.Drawing.Box(at, 9, {});
    }
    symbols.ExpectFollowed("symbols");
  }
  std::mt19937 random(4);
  for (const unsigned amplitude : {20, 40, 60}) {
    TracedLine noise;
    for (int x = 30; x < 260; ++x)
      noise.Line.push_back(
          {static_cast<double>(x), 60.0 + static_cast<double>(random() % amplitude)});
    noise.Drawing.Polyline(noise.Line, {});
    noise.ExpectFollowed("noise");
  }
  for (const double waves : {8.0, 14.0}) {
    TracedLine dashed{.XIncrement = "12"};
    dashed.Line = dashed.Drawing.Curve([=](double u) { return 0.5 + 0.4 * std::sin(waves * u); },
                                       {.Thickness = 2, .Dash = 9, .Gap = 7}, 0.05, 0.93);
    dashed.ExpectFollowed("dashes");
  }
  TracedLine steep;
  steep.Drawing.Polyline(steep.Line = {{30, 170}, {100, 165}, {104, 30}, {200, 25}}, {});
  for (int row = 70; row < 105; ++row) {
    steep.EmptyRow = row;
    steep.ExpectFollowed("an empty row");
  }
}

}  // namespace
}  // namespace graphize::test
