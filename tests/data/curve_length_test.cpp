#include "data/curve_length.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "data/list_edit.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(CurveLength, PutsTheSegmentsIntoTheListAndTellsTheSums) {
  PointStore store = MakeStore({{0, 0}, {3, 4}, {3, 0}});
  StatusBar status;
  ScriptedDesktop desktop;
  std::string statusAtPump;
  desktop.OnPump = [&] {
    statusAtPump = status.Status;
    EXPECT_EQ(ListRows(store), (RowList{{0, 0}, {3, 4}, {3, 0}}));
  };
  desktop.ExpectMessage(
      "X,Y List-box now containes distance between points \r\n\r\n"
      "Total curve length = 9.00000E+0\r\nX-length = 3.00000E+0\r\nY-length = 8.00000E+0\r\n");
  const CurveSums sums = CurveLength(store, status, desktop);
  EXPECT_EQ(sums.Length, 9);
  EXPECT_EQ(sums.XLength, 3);
  EXPECT_EQ(sums.YLength, 8);
  EXPECT_EQ(ListRows(store), (RowList{{1, 5}, {2, 4}}));
  EXPECT_FALSE(store.ListIsCaptured);
  EXPECT_EQ(store.NPoints, 2);
  EXPECT_EQ(statusAtPump, "Converting X,Y to Curve length");
  EXPECT_EQ(status.Status, "Curve length calculated successfully");
  EXPECT_EQ(desktop.Messages.back().Icon, MessageIcon::Information);
  XY2List(store);
  EXPECT_EQ(ListRows(store), CapturedRows(store));
}

TEST(CurveLength, DegenerateCurves) {
  // Nothing, one point, a point twice, an infinite one, more than a number holds.
  const std::tuple<RowList, RowList, const char*> cases[] = {
      {{}, {}, "length = .00000E+0"},
      {{{5, 5}}, {}, "length = .00000E+0"},
      {{{5, 5}, {5, 5}, {5, 6}}, {{1, 0}, {2, 1}}, "length = 1.00000E+0"},
      {{{0, 0}, {1, 0}, {kInfinity, 0}}, {{1, 1}, {2, kInfinity}}, "length = Inf"},
      {{{-3e38f, 0}, {3e38f, 0}}, {{1, kInfinity}}, "length = Inf"}};
  for (const auto& [points, list, total] : cases) {
    SCOPED_TRACE(testing::PrintToString(points));
    PointStore store = MakeStore(points);
    store.ListCount = 7;  // of other rows
    StatusBar status;
    ScriptedDesktop desktop;
    desktop.ExpectMessage(total);
    CurveLength(store, status, desktop);
    EXPECT_EQ(ListRows(store), list);
    EXPECT_EQ(store.ListIsCaptured, points.empty());
  }
}

TEST(CurveLength, ALongCurveGrowsTheListArrays) {
  PointStore store = MakeStore(RowList(1500, {1, 1}));
  store.ListX.resize(501);
  store.ListY.resize(501);
  store.ListCount = 0;
  StatusBar status;
  ScriptedDesktop desktop;
  desktop.ExpectMessage("Total");
  CurveLength(store, status, desktop);
  EXPECT_EQ(ListRows(store).back(), (Row{1499, 0}));
}

}  // namespace
}  // namespace graphize::test
