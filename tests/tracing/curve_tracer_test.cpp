#include "tracing/curve_tracer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <set>
#include <tuple>

#include "base/run_time_error.h"
#include "support/extraction_records.h"
#include "support/scripted_desktop.h"
#include "support/trace_cases.h"
#include "tracing/blockers.h"
#include "tracing/scan.h"
#include "tracing/smooth_tracer.h"

namespace graphize::test {
namespace {

using Rows = std::vector<std::string>;
constexpr Tracer kTracers[] = {TraceNew, TraceSmooth};

/// A wave around row 60 in a picture of 300 x 120, drawn so that columns join.
ExtractionRecords WaveRecords(int thickness) {
  const auto row = [](int x) { return static_cast<int>(60 + 40 * std::sin(x / 15.0)); };
  Raster raster = Raster::Filled(300, 120, kWhitePixel);
  for (int x = 0; x < raster.Width(); ++x) {
    const std::pair<int, int> ends = std::minmax({row(x), row(x + 1)});
    for (int y = ends.first; y < ends.second + thickness; ++y) raster.Row(y)[x] = kBlackPixel;
  }
  PlotImage image;
  SetPicture(image, std::move(raster));
  return ExtractionRecords(std::move(image));
}

/// The trace step by step as it is described, one pixel after the other.
std::string TracePlainly(const PlotImage& image, int x, int top, int xIncrement, int yIncrement) {
  std::string text;
  const auto add = [&](int column, double row) {
    text += (text.empty() ? "" : " ") + std::to_string(column) + "," +
            ShortestText(static_cast<float>(row));
  };
  int bottom = top;
  while (x < image.Width()) {
    const int limit = x + xIncrement;
    int nextTop = -1, nextBottom = -1;
    while (true) {
      for (int y = top; y <= bottom; ++y) {
        if (!IsBlack(image, x, y)) continue;
        if (IsBlack(image, x + 1, y))
          nextTop = nextBottom = y;
        else if (IsBlack(image, x + 1, y - 1))
          nextTop = nextBottom = y - 1;
        else if (IsBlack(image, x + 1, y + 1))
          nextTop = nextBottom = y + 1;
      }
      const auto walk = [&](int& edge, int& next, int way, auto mayGoOn) {
        int gap = 0;
        while (true) {
          if (IsBlack(image, x, edge)) {
            if (IsBlack(image, x + 1, edge)) next = edge;
            if (IsBlack(image, x + 1, edge + way)) next = edge + way;
            gap = 0;
          } else {
            ++gap;
          }
          edge += way;
          if (gap > yIncrement || !mayGoOn(edge)) break;
        }
        edge -= way * gap;
      };
      walk(bottom, nextBottom, 1, [&](int row) { return row <= image.Height() - 1; });
      walk(top, nextTop, -1, [](int row) { return row >= 2; });
      if (nextTop != -1 || nextBottom != -1) break;
      if (++x > limit) return text;
    }
    if (nextTop == -1) nextTop = nextBottom;
    if (nextBottom == -1) nextBottom = nextTop;
    add(x, (top + bottom) / 2.0);
    add(x, bottom);
    add(x, top);
    top = nextTop;
    bottom = nextBottom;
    ++x;
  }
  return text;
}

TEST(CurveTracer, FindsWhatAPlainTraceFinds) {
  std::mt19937 random(11);
  const auto pick = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  std::size_t points = 0;
  for (int round = 0; round < 400; ++round) {
    // Strokes that wander, fork, break off and run along the borders.
    Rows rows(static_cast<std::size_t>(pick(1, 16)), std::string(60, '.'));
    const int height = static_cast<int>(rows.size());
    for (int stroke = 0; stroke < 3; ++stroke) {
      int y = pick(0, height - 1);
      for (std::size_t x = 0; x < 60; ++x) {
        const int last = y;
        y = std::clamp(y + pick(-2, 2), 0, height - 1);
        if (pick(0, 11) == 0) continue;
        for (int i = std::min(last, y); i <= std::min(std::max(last, y) + stroke, height - 1); ++i)
          rows[static_cast<std::size_t>(i)][x] = '#';
      }
    }
    const int start = pick(-1, height), xIncrement = pick(0, 4), yIncrement = pick(0, 3);
    const ScriptedDesktop desktop;
    ExtractionRecords records(rows);
    const std::string expected = TracePlainly(records.Image, 0, start, xIncrement, yIncrement);
    records.Control.Xrange = std::to_string(xIncrement);
    records.Control.Yrange = std::to_string(yIncrement);
    records.Check(true, true, true);
    TraceNew(records.With(desktop), 0, static_cast<float>(start));
    ASSERT_EQ(records.Captured(), expected) << round;
    points += static_cast<std::size_t>(records.Store.CaptureCount);
  }
  EXPECT_GT(points, 10000u);
}

TEST(CurveTracer, WhatItFollowsAndBridges) {
  const char* const broken = "........ ........ ###..### ........";
  ExpectTraces(TraceNew,
               {
                   // The last column of a curve has no continuation and is not emitted.
                   {"edges beside it", "..... ..... ..... ##### .....", 0, 3, "2", "3",
                    "0,3 0,4 0,2 1,3 1,4 1,2 2,3 2,4 2,2 3,3 3,4 3,2", true},
                   {"dark grey is no curve", ".... .... ##oo ....", 0, 2, "2", "3", "0,2"},
                   {"a break of two columns", broken, 0, 2, "3", "3", "0,2 1,2 5,2 6,2"},
                   {"as wide as the increment", broken, 0, 2, "2", "3", "0,2 1,2"},
                   {"negative increments, like 0", "... ... ### ### ### ... ###", 0, 2, "-7", "-7",
                    "0,3 1,3"},
                   {"empty increments", broken, 0, 2, "", "", "0,2 1,2"},
                   {"huge increments", broken, 0, 2, "32767", "32767", "0,2 1,2 5,2 6,2"},
               });
}

TEST(CurveTracer, StartsWithNothingToFollowEmitNothing) {
  const char* const line = ".... .... #### ....";
  for (const Tracer tracer : kTracers) {
    ExpectTraces(tracer, {
                             {"white", line, 0, 0, "0", "0", ""},
                             {"left of the picture", line, -20, 2, "2", "3", ""},
                             {"right of the picture", line, 4, 2, "2", "3", ""},
                             {"far above", line, 0, -30000, "2", "3", ""},
                             {"far below", line, 0, 30000, "2", "3", ""},
                             {"no picture", "", 0, 0, "2", "3", ""},
                         });
  }
  ExpectTraces(TraceNew, {{"last column", line, 3, 2, "2", "3", ""},
                          {"one-pixel picture", "#", 0, 0, "2", "3", ""}});
  ExpectTraces(TraceSmooth, {{"last column", line, 3, 2, "2", "3", "3,2"},
                             {"one-pixel picture", "#", 0, 0, "2", "3", "0,0"}});
}

TEST(CurveTracer, PositionsAndIncrementsBeyondSixteenBitsAreToldBeforeAnythingChanges) {
  for (const Tracer tracer : kTracers) {
    const ScriptedDesktop desktop;
    ExtractionRecords records({"....", "....", "####"});
    EXPECT_THROW(tracer(records.With(desktop), 40000, 2), RunTimeError);
    EXPECT_THROW(tracer(records.With(desktop), 0, -1e30f), RunTimeError);
    records.Control.Yrange = "99999";
    EXPECT_THROW(tracer(records.With(desktop), 0, 2), RunTimeError);
    EXPECT_EQ(records.Store.CaptureCount, 0);
    EXPECT_TRUE(records.Image.Marks.empty());
  }
}

TEST(CurveTracer, MarksWhatItEmitsAndCapturesOnlyWithTheCaptureButton) {
  const Rows line = {".....", ".....", ".....", "#####", "....."};
  // Name, capture button, calibrated, checked, colour of the marks, captured, the curve's row.
  const std::tuple<const char*, bool, bool, bool, int, int, const char*> cases[] = {
      {"capturing", true, true, true, 14, 4, "????#"},
      {"testing", false, true, true, 14, 0, "????#"},
      {"axes being redefined", true, false, true, 14, 0, "????#"},
      {"no points chosen", true, true, false, 14, 0, "#####"},
      {"black marks do not hold it up", true, true, true, 0, 4, "#####"},
  };
  for (const auto& [name, capture, calibrated, checked, colour, captured, row] : cases) {
    const ScriptedDesktop desktop;
    ExtractionRecords records(line);
    records.Options.TraceColor = colour;
    records.CapturePressed = capture;
    records.Calibration.Defined[2] = calibrated;
    records.Check(checked, false, false);
    TraceNew(records.With(desktop), 0, 3);
    EXPECT_EQ(records.Store.CaptureCount, captured) << name;
    EXPECT_EQ(Show(records.Image)[3], row) << name;
    EXPECT_EQ(records.Commands.Data, captured > 0) << name;
    ClearMarks(records.Image);
    EXPECT_EQ(Show(records.Image), line) << name;
  }
}

TEST(CurveTracer, AColouredWallEndsTheTraceUnlessTheCurveIsBackWithinReach) {
  for (const auto& [increment, last] : {std::pair{"3", 3}, {"5", 8}}) {
    const ScriptedDesktop desktop;
    ExtractionRecords records({"..........", "..........", "##########", ".........."});
    DrawBox(records.Image, 5, 0, 7, 3, 0x000001, true);
    records.Control.Xrange = increment;
    TraceNew(records.With(desktop), 0, 2);
    EXPECT_EQ(records.Store.CaptureX[records.Store.CaptureCount], last) << increment;
  }
}

TEST(CurveTracer, EscapeAndAFullStoreKeepWhatWasCaptured) {
  for (const Tracer tracer : kTracers) {
    for (const int columns : {0, 1, 5}) {
      ScriptedDesktop desktop;
      desktop.EscapeAfter = columns;
      ExtractionRecords records = WaveRecords(2);
      tracer(records.With(desktop), 0, 60);
      EXPECT_EQ(records.Store.CaptureCount, columns);
      EXPECT_EQ(records.Store.NPoints, columns);
    }
    for (const int capacity : {0, 1, 4, 5}) {
      ScriptedDesktop desktop;
      desktop.ExpectMessage("You reached the limit of data that can be stored.");
      ExtractionRecords records = WaveRecords(2);
      records.Check(true, true, true);
      records.Store.MaxPoints = static_cast<std::int16_t>(capacity);
      tracer(records.With(desktop), 0, 60);
      EXPECT_EQ(records.Store.CaptureCount, capacity);
      EXPECT_EQ(records.Image.Marks.size(), static_cast<std::size_t>(capacity) + 1)
          << "the point that found no room is marked, too";
    }
  }
}

TEST(CurveTracer, ALogOriginThatIsNotPositiveIsToldOnce) {
  for (const Tracer tracer : kTracers) {
    for (const bool bothLog : {false, true}) {
      ScriptedDesktop desktop;
      desktop.ExpectMessage("Y origin must be positive for Log Axis");
      ExtractionRecords records = WaveRecords(2);
      records.Calibration.XLog = bothLog;
      records.Calibration.ValueX[0] = 1;
      records.Calibration.YLog = true;
      tracer(records.With(desktop), 0, 60);
      EXPECT_EQ(records.Store.CaptureCount, 0);
      EXPECT_TRUE(records.Image.Marks.empty());
    }
  }
}

TEST(CurveTracer, ScrollsSoThatTheTraceStaysInSightWithoutChangingItsPoints) {
  for (const Tracer tracer : kTracers) {
    ScriptedDesktop inView;
    ExtractionRecords whole = WaveRecords(2);
    tracer(whole.With(inView), 0, 60);
    EXPECT_EQ(whole.View.X, 0);
    ASSERT_GT(whole.Store.CaptureCount, 290);

    ScriptedDesktop desktop;
    ExtractionRecords part = WaveRecords(2);
    part.Options.XJump = 20;
    part.Options.YJump = 10;
    part.View = {.X = 0, .Y = 40, .Width = 80, .Height = 40};
    ResetScrBars(part.View, part.Image.Width(), part.Image.Height());
    desktop.OnPump = [&] {
      const int x = part.Cursor.PlotX, y = part.Cursor.PlotY;
      EXPECT_TRUE(x >= part.View.X && x < part.View.X + part.View.Width) << x;
      EXPECT_TRUE(y >= part.View.Y - 1 && y <= part.View.Y + part.View.Height) << y;
      EXPECT_EQ(part.Store.NPoints, part.Store.ListCount);
      EXPECT_EQ(part.Panel.LiveXPixel, std::to_string(x));
    };
    Desktop callbacks = desktop.Callbacks();
    callbacks.EscapeHeld = [&] {
      const int margin = part.View.X + part.View.Width - part.Cursor.PlotX;
      EXPECT_TRUE(part.View.X == part.View.MaximumX || margin >= 9) << part.Cursor.PlotX;
      return false;
    };
    tracer(part.With(callbacks), 0, 60);
    EXPECT_EQ(part.Captured(), whole.Captured());
    EXPECT_EQ(part.View.X, part.View.MaximumX);
    EXPECT_GT(desktop.Pumps, 10);
  }
}

TEST(CurveTracer, ARunTallerThanTheViewDoesNotScrollItUpAndDown) {
  for (const Tracer tracer : kTracers) {
    const ScriptedDesktop desktop;
    PlotImage image;
    SetPicture(image, Raster::Filled(40, 500, kWhitePixel));
    for (int y = 100; y < 400; ++y) std::fill_n(image.Pixels.Row(y), 40, kBlackPixel);
    ExtractionRecords records(std::move(image));
    records.View = {.X = 0, .Y = 100, .Width = 40, .Height = 100};
    ResetScrBars(records.View, 40, 500);
    tracer(records.With(desktop), 0, 150);
    EXPECT_GE(records.Store.CaptureCount, 39);
    EXPECT_EQ(desktop.Pumps, 1);
    EXPECT_EQ(records.View.Y, 350);
  }
}

TEST(CurveTracer, TheEndShowsTheNewestPointAndItsReading) {
  const ScriptedDesktop desktop;
  ExtractionRecords records({"....", "....", "####", "...."});
  TraceNew(records.With(desktop), 0, 2);
  EXPECT_EQ(records.Cursor.XValue, "2.00000E+0");
  EXPECT_EQ(records.Cursor.YValue, "2.00000E+0");
  EXPECT_EQ(records.Store.Page.Lines[2].Point, 3);
  EXPECT_EQ(records.Store.NPoints, 3);
}

TEST(CurveTracer, TheStatusPanelTellsWhatHasComeOut) {
  const Rows line = {".....", ".....", ".....", "#####", "....."};
  // Start row, capture button, checked, room, questions until Escape, what is told.
  const std::tuple<float, bool, bool, int, int, const char*> cases[] = {
      {3, true, true, 100, -1, "4 points captured"},
      {3, false, true, 100, -1, "4 points marked"},
      {3, true, true, 100, 1, "Stopped: 1 point captured"},
      {3, true, true, 100, 0, "Stopped: 0 points captured"},
      {3, true, true, 2, -1, "2 points captured"},
      {3, true, true, 4, -1, "4 points captured"},
      {3, true, false, 100, -1, "Nothing to capture: no point of the curve is checked"},
      {0, true, true, 100, -1, "No curve here: the tracers follow only black pixels"},
      {0, false, false, 100, -1, "No curve here: the tracers follow only black pixels"},
  };
  for (const auto& [row, capture, checked, room, escapeAfter, told] : cases) {
    ScriptedDesktop desktop;
    desktop.EscapeAfter = escapeAfter;
    if (room < 4) desktop.ExpectMessage("You reached the limit of data that can be stored.");
    ExtractionRecords records(line);
    records.Control.Yrange = "1";
    records.CapturePressed = capture;
    records.Store.MaxPoints = static_cast<std::int16_t>(room);
    records.Check(checked, false, false);
    TraceNew(records.With(desktop), 0, row);
    EXPECT_EQ(records.Status.Status, told);
  }
}

TEST(CurveTracer, MarksThatHideTheCurveAreTold) {
  const char *const thin = "...... ...... ...... ###### ......",
                    *const thick = "...... ...... ###### ###### ......",
                    *const two = "###### ...... ...... ...... ...... ######";
  using Place = std::pair<float, float>;
  // The picture, the start of an earlier trace, blocker, start, told.
  const std::tuple<const char*, std::optional<Place>, bool, Place, bool> cases[] = {
      {thin, Place(0, 3), false, {0, 3}, true},   // starts on them
      {thin, Place(3, 3), false, {0, 3}, true},   // ends at them
      {thick, Place(0, 3), false, {0, 2}, true},  // goes along beside them
      {thick, Place(0, 3), false, {0, 3}, true},
      {thin, std::nullopt, false, {0, 3}, false},
      {thin, std::nullopt, true, {0, 3}, false},
      {thin, Place(0, 3), false, {0, 0}, false},  // there is nothing
      {two, Place(0, 0), false, {0, 5}, false},
  };
  for (const Tracer tracer : kTracers) {
    for (const auto& [picture, earlier, blocker, start, told] : cases) {
      const ScriptedDesktop desktop;
      ExtractionRecords records(RowsOf(picture));
      records.Control.Yrange = "1";
      if (earlier) tracer(records.With(desktop), earlier->first, earlier->second);
      BlockerList blockers;
      if (blocker)
        PaintBlocker(blockers, records.Image, records.Commands, records.Options, 3, 3, 2);
      records.Options.TraceColor = 12;  // chosen since
      tracer(records.With(desktop), start.first, start.second);
      EXPECT_EQ(records.Status.Status.find("arks of an earlier trace cover") != std::string::npos,
                told)
          << picture << start.second << records.Status.Status;
    }
  }
}

TEST(CurveTracer, TheListFollowsEveryPointOrWaitsForTheEnd) {
  const auto scan = [](const ExtractionContext& context, float, float) {
    context.Control.Xrange = context.Control.Yrange = "1";
    Scan(context, {.Active = true, .Left = -2, .Top = -2, .Right = 302, .Bottom = 130});
    return TraceEnd();
  };
  for (const Tracer tracer : {kTracers[0], kTracers[1], static_cast<Tracer>(scan)}) {
    for (const bool refresh : {false, true}) {
      ScriptedDesktop desktop;
      ExtractionRecords records = WaveRecords(2);
      records.Options.RefreshList = refresh ? -1 : 0;
      std::set<int> shown;
      desktop.OnPump = [&] {
        for (const ListPage::Line& line : records.Store.Page.Lines) shown.insert(line.Point);
      };
      records.Store.Page.Lines[4].Point = -1;
      tracer(records.With(desktop), 0, 60);
      const int count = records.Store.ListCount;
      EXPECT_GT(count, 250);
      EXPECT_EQ(shown.count(count / 2) + shown.count(count / 2 + 1), refresh ? 2u : 0u);
      EXPECT_EQ(records.Store.Page.Lines[4].Point, count);
    }
  }
}

TEST(CurveTracer, ColumnsStrictlyIncrease) {
  for (const Tracer tracer : kTracers) {
    for (const int thickness : {1, 2, 7}) {
      const ScriptedDesktop desktop;
      ExtractionRecords records = WaveRecords(thickness);
      tracer(records.With(desktop), 0, 60);
      EXPECT_GE(records.Store.CaptureCount, 299) << thickness;
      for (int i = 2; i <= records.Store.CaptureCount; ++i)
        ASSERT_GT(records.Store.CaptureX[i], records.Store.CaptureX[i - 1]) << thickness;
    }
  }
}

}  // namespace
}  // namespace graphize::test
