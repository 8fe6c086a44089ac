#include "data/resampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>

#include "data/list_edit.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

void ExpectNear(const RowList& actual, const RowList& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(actual[i].X, expected[i].X, 1e-5 * std::fabs(expected[i].X)) << "row " << i;
    EXPECT_NEAR(actual[i].Y, expected[i].Y, 1e-5 * std::fabs(expected[i].Y)) << "row " << i;
  }
}

TEST(ReSampleList, InterpolatesAtEvenSteps) {
  const std::tuple<const char*, RowList, SamplePlan, RowList> cases[] = {
      {"in the middle", {{0, 0}, {10, 10}}, {3, 0, 10}, {{0, 0}, {5, 5}, {10, 10}}},
      {"both ends extended", {{0, 0}, {1, 1}, {2, 4}}, {3, -1, 5}, {{-1, -1}, {2, 4}, {5, 13}}},
      {"from high to low", {{0, 0}, {1, 1}, {2, 4}}, {3, 2, 0}, {{2, 4}, {1, 1}, {0, 0}}},
      {"no range", {{0, 0}, {10, 10}}, {3, 4, 4}, {{4, 4}, {4, 4}, {4, 4}}},
      {"log X", {{1, 5}, {100, 9}}, {3, 1, 100, true}, {{1, 5}, {10, 7}, {100, 9}}},
      {"log Y", {{0, 1}, {2, 100}}, {3, 0, 2, false, true}, {{0, 1}, {1, 10}, {2, 100}}},
      {"a power law",
       {{0.01f, 1e-6f}, {100, 1e6f}},
       {5, 0.01f, 100, true, true},
       {{0.01f, 1e-6f}, {0.1f, 1e-3f}, {1, 1}, {10, 1e3f}, {100, 1e6f}}},
      {"X twice, never between",
       {{0, 0}, {1, 5}, {1, 7}, {2, 7}},
       {3, 0, 2},
       {{0, 0}, {1, 5}, {2, 7}}},
      {"falling, log X", {{100, 9}, {1, 5}}, {3, 1, 100, true}, {{1, 5}, {10, 7}, {100, 9}}},
      {"a bad point that no segment uses",
       {{0, 0}, {2, 2}, {-9, 0}, {9, 0}},
       {3, 0, 2},
       {{0, 0}, {1, 1}, {2, 2}}},
  };
  for (const auto& [name, captured, plan, expected] : cases) {
    SCOPED_TRACE(name);
    PointStore store = MakeStore(captured);
    EXPECT_EQ(ReSampleList(store, plan, false, ScriptedDesktop()), SampleEnd::Done);
    ExpectNear(ListRows(store), expected);
    EXPECT_EQ(CapturedRows(store), captured);
    EXPECT_FALSE(store.ListIsCaptured);
    EXPECT_EQ(store.NPoints, store.ListCount);
    XY2List(store);
    EXPECT_EQ(ListRows(store), captured);
  }
}

TEST(ReSampleList, AfterRowsAreClearedTheCurveEndsAtItsLastPoint) {
  for (const int last : {2, 3}) {
    PointStore store = MakeStore({{0, 0}, {1, 7}, {2, 9}, {3, 3}, {4, 4}});
    store.Page.SelectionActive = true;
    store.Page.SelectionStart = 2;
    store.Page.SelectionEnd = static_cast<std::int16_t>(last);
    ClearSelected(store);
    ASSERT_EQ(store.CaptureCount, 5);
    EXPECT_EQ(ReSampleList(store, {2, 3, 6}, false, ScriptedDesktop()), SampleEnd::Done);
    ExpectNear(ListRows(store), {{3, 3}, {6, 6}});
  }
}

TEST(ReSampleList, FindsTheSegmentThatAPlainSearchFinds) {
  std::mt19937 random(6);
  for (int round = 0; round < 300; ++round) {
    // Unordered, rising and falling, with repeats.
    RowList points(2 + random() % 12);
    for (Row& row : points)
      row = {static_cast<float>(random() % 20), static_cast<float>(random() % 100)};
    const auto byX = [](const Row& a, const Row& b) { return a.X < b.X; };
    if (round % 3 > 0) std::stable_sort(points.begin(), points.end(), byX);
    if (round % 3 > 1) std::reverse(points.begin(), points.end());
    PointStore store = MakeStore(points);
    const SampleEnd end = ReSampleList(store, {40, -1.5f, 21.5f}, false, ScriptedDesktop());
    RowList expected;
    for (int k = 0; k < 40; ++k) {
      const double x = -1.5 + k * (23.0 / 39);
      std::size_t j = 0;
      const auto liesIn = [&] {
        return std::min(points[j].X, points[j + 1].X) <= x &&
               x <= std::max(points[j].X, points[j + 1].X);
      };
      while (j + 2 < points.size() && points[j + 1].X < x) ++j;
      if (!liesIn())
        for (j = 0; j + 1 < points.size() && !liesIn();) ++j;
      if (j + 1 == points.size())
        j = std::fabs(x - points[0].X) <= std::fabs(x - points[j].X) ? 0 : j - 1;
      const double run = points[j + 1].X - points[j].X;
      if (run == 0) break;
      const double y = points[j].Y + (x - points[j].X) * (points[j + 1].Y - points[j].Y) / run;
      expected.push_back({static_cast<float>(x), static_cast<float>(y)});
    }
    const RowList actual = ListRows(store);
    ASSERT_EQ(actual.size(), expected.size());
    EXPECT_EQ(end == SampleEnd::Done, expected.size() == 40);
    for (std::size_t i = 0; i < actual.size(); ++i)
      ASSERT_NEAR(actual[i].Y, expected[i].Y, 1e-3 + 1e-5 * std::fabs(expected[i].Y));
  }
}

TEST(ReSampleList, ABadPointEndsItWithTheRowsMadeUntilThen) {
  const std::tuple<const char*, RowList, SamplePlan, RowList> cases[] = {
      {"one X", {{5, 0}, {5, 10}}, {3, 0, 10}, {}},
      {"one X, log Y", {{5, 1}, {5, 10}}, {3, 0, 10, false, true}, {}},
      {"one point", {{5, 0}}, {3, 0, 10}, {}},
      {"nothing captured", {}, {3, 0, 10}, {}},
      {"log of 0 at the start", {{1, 1}, {10, 2}}, {3, 0, 10, true}, {}},
      {"log of less at the end", {{1, 1}, {10, 2}}, {3, 1, -1, true}, {}},
      {"captured X of 0, log", {{0, 1}, {10, 2}}, {3, 1, 10, true}, {}},
      {"captured X below 0 behind, log",
       {{1, 1}, {10, 2}, {-1, 3}},
       {3, 1, 100, true},
       {{1, 1}, {10, 2}}},
      {"captured Y of 0, log",
       {{0, 1}, {1, 10}, {2, 0}},
       {3, 0, 2, false, true},
       {{0, 1}, {1, 10}}},
      {"Y not a number", {{0, 0}, {1, 1}, {2, kNaN}}, {3, 0, 2}, {{0, 0}, {1, 1}}},
      {"X not a number", {{0, 0}, {1, 1}, {kNaN, 1}, {3, 3}}, {4, 0, 3}, {{0, 0}, {1, 1}}},
      {"infinite", {{0, 0}, {1, 1}, {kInfinity, kInfinity}}, {3, 0, 2}, {{0, 0}, {1, 1}}},
      {"limits infinite", {{0, 0}, {1, 1}}, {3, 0, kInfinity}, {}},
      {"too large", {{0, 0}, {1, 3e38f}}, {3, 0, 2}, {{0, 0}, {1, 3e38f}}},
  };
  for (const auto& [name, captured, plan, expected] : cases) {
    SCOPED_TRACE(name);
    PointStore store = MakeStore(captured);
    store.ListCount = 3;
    EXPECT_EQ(ReSampleList(store, plan, false, ScriptedDesktop()), SampleEnd::BadPoint);
    ExpectNear(ListRows(store), expected);
    EXPECT_EQ(store.NPoints, static_cast<int>(expected.size()));
    EXPECT_FALSE(store.ListIsCaptured);
    EXPECT_EQ(CapturedRows(store), captured);
  }
}

TEST(ReSampleList, ShowsWhatItHasAtEveryPumpAndStopsOnEscape) {
  for (const bool refreshList : {false, true}) {
    PointStore store = MakeStore({{0, 0}, {10, 10}});
    ScriptedDesktop desktop;
    std::vector<int> shown;
    desktop.OnPump = [&] {
      const RowList rows = ListRows(store);
      shown.push_back(store.Page.Lines[0].Point == 0 ? 0 : store.NPoints);
      for (const auto& line : store.Page.Lines) EXPECT_LE(line.Point, store.ListCount);
    };
    desktop.EscapeAfter = 3;
    EXPECT_EQ(ReSampleList(store, {11, 0, 10}, refreshList, desktop), SampleEnd::Stopped);
    EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
    EXPECT_EQ(store.NPoints, 4);
    EXPECT_EQ(shown,
              refreshList ? (std::vector<int>{2, 1, 2, 3, 4}) : (std::vector<int>{2, 0, 0, 0, 0}));
  }
}

TEST(ReSampleList, FillsAWholeStore) {
  PointStore store = MakeStore({{0, 0}, {32766, 3276.6f}});
  EXPECT_EQ(ReSampleList(store, {32767, 0, 32766}, false, ScriptedDesktop()), SampleEnd::Done);
  const RowList rows = ListRows(store);
  ASSERT_EQ(rows.size(), 32767u);
  EXPECT_EQ(rows.back(), (Row{32766, 3276.6f}));
  EXPECT_EQ(store.Page.Lines[4].Point, 32767);
}

}  // namespace
}  // namespace graphize::test
