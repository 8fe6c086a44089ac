#include "tracing/scan.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <tuple>

#include "base/run_time_error.h"
#include "support/extraction_records.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

using Rows = std::vector<std::string>;

/// A rectangle whose shrunken inside is the given columns and rows.
ScanRectangle Around(int left, int top, int right, int bottom) {
  return {false, left - 2, top - 2, right + 2, bottom + 2};
}

TEST(ScanRectangle, GrowsWithTheDragAndScansOnlyDownwardToTheRight) {
  ScanRectangle rectangle;
  MoveScanCorner(rectangle, 5, 5);
  EXPECT_FALSE(ReleaseScanRectangle(rectangle));
  EXPECT_EQ(rectangle.Right, 0);
  const std::tuple<float, float, bool> cases[] = {
      {20, 30, true}, {10, 30, false}, {20, 10, false}, {3, 4, false}, {10.6f, 10.6f, true}};
  for (const auto& [x, y, scans] : cases) {
    StartScanRectangle(rectangle, 9.5f, 10.5f);
    EXPECT_EQ(std::pair(rectangle.Left, rectangle.Top), std::pair(10, 10));
    EXPECT_TRUE(rectangle.Active);
    MoveScanCorner(rectangle, 1000, 1000);
    MoveScanCorner(rectangle, x, y);
    EXPECT_EQ(ReleaseScanRectangle(rectangle), scans) << x << ' ' << y;
    EXPECT_FALSE(rectangle.Active);
    EXPECT_FALSE(ReleaseScanRectangle(rectangle));
  }
}

TEST(Scan, MarksAndCapturesTheBlackPixelsOnTheGrid) {
  constexpr int kFar = std::numeric_limits<std::int32_t>::max();
  const Rows picture = RowsOf("#...#. .##... .#o#.. #....#");
  const char* const all = "0,0 0,3 1,1 1,2 2,1 3,2 4,0 5,3";
  // Name, steps, rectangle, captured, shown, the boxes afterwards where they change.
  const std::tuple<const char*, const char*, const char*, ScanRectangle, const char*, const char*,
                   const char*>
      cases[] = {
          {"all, columns first", "1", "1", Around(0, 0, 5, 3), all, "?...?. .??... .???.. ?....?",
           nullptr},
          {"huge", "1", "1", ScanRectangle(false, -kFar - 1, -kFar - 1, kFar, kFar), all,
           "?...?. .??... .???.. ?....?", nullptr},
          {"huge steps", "32767", "32767", Around(0, 0, 5, 3), "0,0", "?...#. .##... .#?#.. #....#",
           nullptr},
          {"4 x 4 pixels", "1", "1", ScanRectangle(false, 0, 0, 3, 3), "",
           "#...#. .##... .#?#.. #....#", nullptr},
          {"steps that are none", "0", "-3", Around(1, 1, 2, 1), "1,1 2,1",
           "#...#. .??... .#?#.. #....#", "1 1"},
          {"empty boxes", "", "x", Around(1, 1, 2, 1), "1,1 2,1", "#...#. .??... .#?#.. #....#",
           "1 1"},
      };
  for (const auto& [name, stepX, stepY, rectangle, captured, shown, boxes] : cases) {
    const ScriptedDesktop desktop;
    ExtractionRecords records(picture);
    records.Control.Xrange = stepX;
    records.Control.Yrange = stepY;
    Scan(records.With(desktop), rectangle);
    EXPECT_EQ(records.Captured(), captured) << name;
    EXPECT_EQ(Show(records.Image), RowsOf(shown)) << name;
    EXPECT_EQ(records.Store.NPoints, records.Store.CaptureCount) << name;
    if (boxes) {
      EXPECT_EQ(records.Control.Xrange + " " + records.Control.Yrange, boxes) << name;
    }
  }
}

/// The obvious walk, one pixel after the other; what it captures.
std::string WalkPlainly(PlotImage& image, const ScanRectangle& r, int stepX, int stepY) {
  std::string captured;
  for (int x = r.Left + 2; x <= r.Right - 2; x += stepX) {
    for (int y = r.Top + 2; y <= r.Bottom - 2; y += stepY) {
      if (!IsBlack(image, x, y)) continue;
      SetPixel(image, x, y, MakeColour(255, 255, 0));
      captured += (captured.empty() ? "" : " ") + std::to_string(x) + "," + std::to_string(y);
    }
  }
  return captured;
}

TEST(Scan, FindsWhatAPlainWalkFindsInTheSameOrder) {
  std::mt19937 random(7);
  const auto pick = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  for (int round = 0; round < 60; ++round) {
    const int width = pick(1, 500), height = pick(1, 40);
    Rows picture(static_cast<std::size_t>(height));
    for (std::string& row : picture)
      for (int x = 0; x < width; ++x) row += random() % (round % 3 == 0 ? 2 : 40) == 0 ? '#' : '.';
    const int stepX = round % 2 ? 1 : pick(1, 200), stepY = pick(1, 3);
    const ScanRectangle rectangle{false, pick(-50, width), pick(-50, height), pick(0, width + 50),
                                  pick(0, height + 50)};
    const ScriptedDesktop desktop;
    ExtractionRecords fast(picture), slow(picture);
    fast.Control.Xrange = std::to_string(stepX);
    fast.Control.Yrange = std::to_string(stepY);
    Scan(fast.With(desktop), rectangle);
    ASSERT_EQ(fast.Captured(), WalkPlainly(slow.Image, rectangle, stepX, stepY)) << round;
    ASSERT_EQ(Show(fast.Image), Show(slow.Image)) << round;
    ClearMarks(fast.Image);
    ASSERT_EQ(Show(fast.Image), picture) << round;
  }
}

TEST(Scan, ASecondScanFindsNothingUnlessTheMarksAreBlack) {
  for (const int colour : {0, 14}) {
    const ScriptedDesktop desktop;
    ExtractionRecords records({"##", "##"});
    records.Control.Xrange = records.Control.Yrange = "1";
    records.Options.TraceColor = colour;
    for (int i = 0; i < 2; ++i) Scan(records.With(desktop), Around(0, 0, 1, 1));
    EXPECT_EQ(records.Store.CaptureCount, colour == 0 ? 8 : 4);
  }
}

TEST(Scan, TheLastCapturedPixelAndTheEndAreShown) {
  const ScriptedDesktop desktop;
  ExtractionRecords records({"#..", "..#", "...", ".#."});
  records.Control.Xrange = records.Control.Yrange = "1";
  Scan(records.With(desktop), Around(0, 0, 2, 3));
  EXPECT_EQ(records.Store.LastPixelX, 2);
  EXPECT_EQ(records.Store.LastPixelY, 3);  // upward
  EXPECT_EQ(records.Store.NPoints, 3);
  EXPECT_EQ(records.Store.Page.Lines[2].Point, 3);
  EXPECT_EQ(records.Cursor.XValue, "2.00000E+0");
}

TEST(Scan, ShowsItsProgressAndPutsTheStatusBack) {
  ScriptedDesktop desktop;
  ExtractionRecords records(Rows(60, std::string(600, '#')));
  records.Control.Xrange = records.Control.Yrange = "2";
  std::vector<int> progress;
  desktop.OnPump = [&] {
    EXPECT_TRUE(records.Status.ProgressVisible);
    EXPECT_EQ(records.Status.Status, "To stop the Scan hold down the ESC key");
    EXPECT_EQ(records.Store.NPoints, records.Store.ListCount);
    progress.push_back(records.Status.ProgressValue);
  };
  Scan(records.With(desktop), Around(0, 0, 599, 59));
  EXPECT_EQ(records.Store.CaptureCount, 300 * 30);
  EXPECT_EQ(progress.front(), 0);
  EXPECT_EQ(progress.back(), 100);
  EXPECT_GT(progress.size(), 900u);  // one for every ten points, and some for the search
  EXPECT_FALSE(records.Status.ProgressVisible);
  EXPECT_EQ(records.Status.Status, "before");
}

TEST(Scan, EscapeInTheSearchCapturesTheFirstColumnsWhole) {
  Rows picture(2000, std::string(600, '.'));
  for (std::size_t y = 0; y < picture.size(); ++y) picture[y][y * 37 % 600] = '#';
  const auto scan = [&](ExtractionRecords& records, int questions) {
    ScriptedDesktop desktop;
    desktop.EscapeAfter = questions;
    records.Control.Xrange = records.Control.Yrange = "1";
    Scan(records.With(desktop), Around(0, 0, 599, 1999));
    EXPECT_FALSE(records.Status.ProgressVisible);
  };
  ExtractionRecords whole(picture);
  scan(whole, -1);
  ASSERT_EQ(whole.Store.CaptureCount, 2000);
  int before = -1;
  for (const int questions : {0, 1, 3}) {
    ExtractionRecords records(picture);
    scan(records, questions);
    const int count = records.Store.CaptureCount;
    EXPECT_EQ(count == 0, questions == 0);
    EXPECT_GT(count, before);
    EXPECT_LT(count, 2000);
    before = count;
    EXPECT_EQ(records.Image.Marks.size(), static_cast<std::size_t>(count));
    EXPECT_TRUE(count == 0 || records.Store.CaptureX[count] != whole.Store.CaptureX[count + 1]);
    for (int i = 1; i <= count; ++i) {
      ASSERT_EQ(records.Store.CaptureX[i], whole.Store.CaptureX[i]);
      ASSERT_EQ(records.Store.CaptureY[i], whole.Store.CaptureY[i]);
    }
    for (int y = 0; y < 2000; ++y) {
      const int x = y * 37 % 600;
      const bool isMarked = GetPixel(records.Image, x, y) != kBlack;
      ASSERT_EQ(isMarked, count > 0 && x <= static_cast<int>(records.Store.CaptureX[count]));
    }
  }
}

TEST(Scan, EscapeOnACrowdedPageLeavesWholeColumns) {
  const int width = 3000, height = 2000;  // more black than is marked in one go
  for (const int questions : {3, 17, 18, 22, -1}) {
    PlotImage page;
    SetPicture(page, Raster::Filled(width, height, kBlackPixel));
    ScriptedDesktop desktop;
    desktop.EscapeAfter = questions;
    if (questions < 0) desktop.ExpectMessage("You reached the limit of data that can be stored.");
    ExtractionRecords records(std::move(page));
    records.CapturePressed = questions < 0;
    records.Control.Xrange = records.Control.Yrange = "1";
    Scan(records.With(desktop), Around(0, 0, width - 1, height - 1));
    const int rowsPerQuestion = (1 << 18) / width;
    const int columns = questions < 0 ? width : width * questions * rowsPerQuestion / height;
    ASSERT_EQ(records.Image.Marks.size(), static_cast<std::size_t>(columns) * height);
    for (const OverdrawnPixel& mark : records.Image.Marks)
      ASSERT_LT(static_cast<int>(mark.Index) % width, columns);
    ASSERT_EQ(records.Store.CaptureCount, questions < 0 ? 32767 : 0);
    for (int i = 1; i <= records.Store.CaptureCount; ++i) {
      ASSERT_EQ(records.Store.CaptureX[i], (i - 1) / height);
      ASSERT_EQ(height - records.Store.CaptureY[i], (i - 1) % height);
    }
  }
}

TEST(Scan, EscapeReleasedAndHeldAnewEndsTheCapturing) {
  Rows picture(2000, std::string(600, '.'));
  for (std::string& row : picture) row[0] = '#';
  const ScriptedDesktop desktop;
  ExtractionRecords records(picture);
  records.Control.Xrange = records.Control.Yrange = "1";
  Desktop callbacks = desktop.Callbacks();
  const std::string held = ".###..#";  // the search stops at the second question
  std::size_t question = 0;
  callbacks.EscapeHeld = [&] { return held.at(question++) == '#'; };
  Scan(records.With(callbacks), Around(0, 0, 599, 1999));
  EXPECT_EQ(records.Store.CaptureCount, 4);
  EXPECT_EQ(records.Status.Status, "Stopped: 4 points captured");
}

TEST(Scan, AFullStoreHoldsTheFirstColumnsOfACrowdedPage) {
  ScriptedDesktop desktop;
  desktop.ExpectMessage("You reached the limit of data that can be stored.");
  ExtractionRecords records(Rows(200, std::string(600, '#')));
  records.Control.Xrange = records.Control.Yrange = "1";
  records.Store.MaxPoints = 1500;
  Scan(records.With(desktop), Around(0, 0, 599, 199));
  ASSERT_EQ(records.Store.CaptureCount, 1500);
  for (int i = 1; i <= 1500; ++i) {
    ASSERT_EQ(records.Store.CaptureX[i], (i - 1) / 200);
    ASSERT_EQ(200 - records.Store.CaptureY[i], (i - 1) % 200);
  }
}

TEST(Scan, EscapeAndAFullStoreEndTheCapturing) {
  ScriptedDesktop desktop;
  desktop.EscapeAfter = 1 + 5;  // one question in the search of a small picture, then per point
  ExtractionRecords records({"####", "####"});
  records.Control.Xrange = records.Control.Yrange = "1";
  Scan(records.With(desktop), Around(0, 0, 3, 1));
  EXPECT_EQ(records.Captured(), "0,0 0,1 1,0 1,1 2,0");
  EXPECT_EQ(records.Status.Status, "Stopped: 5 of 8 points captured");

  for (const int capacity : {0, 5, 8}) {
    ScriptedDesktop asked;
    if (capacity < 8) asked.ExpectMessage("You reached the limit of data that can be stored.");
    ExtractionRecords full({"####", "####"});
    full.Control.Xrange = full.Control.Yrange = "1";
    full.Store.MaxPoints = static_cast<std::int16_t>(capacity);
    Scan(full.With(asked), Around(0, 0, 3, 1));
    EXPECT_EQ(full.Store.CaptureCount, capacity);
    EXPECT_EQ(Show(full.Image), (Rows{"????", "????"}));
  }
}

TEST(Scan, WhatItDidIsToldAndOnlyTheCaptureButtonCaptures) {
  const char* const none = "No black pixels here: the scan finds nothing else";
  // Pixel, capture button, questions until Escape, what is told, captured, the pixel afterwards.
  const std::tuple<const char*, bool, int, const char*, int, const char*> cases[] = {
      {".", true, -1, none, 0, "."},      {".", false, -1, none, 0, "."},
      {"#", true, -1, "before", 1, "?"},  {"#", true, 0, "Stopped: 0 points captured", 0, "#"},
      {"#", false, 0, "Stopped", 0, "#"}, {"#", false, -1, "before", 0, "?"}};
  for (const auto& [pixel, capture, escapeAfter, told, captured, shown] : cases) {
    ScriptedDesktop desktop;
    desktop.EscapeAfter = escapeAfter;
    ExtractionRecords records({pixel});
    records.CapturePressed = capture;
    Scan(records.With(desktop), Around(0, 0, 0, 0));
    EXPECT_EQ(records.Status.Status, told) << pixel << capture << escapeAfter;
    EXPECT_EQ(records.Store.CaptureCount, captured);
    EXPECT_EQ(records.Store.NPoints, captured);
    EXPECT_EQ(Show(records.Image), Rows{shown});
  }
}

TEST(Scan, WhatItCannotDoIsToldBeforeAnythingChanges) {
  ScriptedDesktop desktop;
  ExtractionRecords records({"##", "##"});
  records.Control.Xrange = "70000";
  EXPECT_THROW(Scan(records.With(desktop), Around(0, 0, 1, 1)), RunTimeError);
  records.Control.Xrange = "1";
  records.Calibration.XLog = true;
  desktop.ExpectMessage("X origin must be positive for Log Axis");
  Scan(records.With(desktop), Around(0, 0, 1, 1));
  EXPECT_TRUE(records.Image.Marks.empty());
  EXPECT_EQ(records.Status.Status, "before");
}

}  // namespace
}  // namespace graphize::test
