#include "data/curve_length.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "data/list_edit.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize {
namespace {

using test::ListRows;
using test::MakeStore;
using test::Row;
using test::RowList;
using test::ScriptedDesktop;

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
  EXPECT_EQ(ListRows(store), test::CapturedRows(store));
}

TEST(CurveLength, DegenerateCurves) {
  struct Case {
    const char* name;
    RowList points, list;
    const char* total;
    bool listIsCaptured;
  };
  const Case cases[] = {
      {"nothing captured", {}, {}, "length = .00000E+0", true},
      {"one point", {{5, 5}}, {}, "length = .00000E+0", false},
      {"a point twice", {{5, 5}, {5, 5}, {5, 6}}, {{1, 0}, {2, 1}}, "length = 1.00000E+0", false},
      {"an infinite one",
       {{0, 0}, {1, 0}, {kInfinity, 0}},
       {{1, 1}, {2, kInfinity}},
       "length = Inf",
       false},
      {"larger than a number", {{-3e38f, 0}, {3e38f, 0}}, {{1, kInfinity}}, "length = Inf", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PointStore store = MakeStore(c.points);
    // A list of other rows and short arrays must not matter.
    store.ListCount = 7;
    StatusBar status;
    ScriptedDesktop desktop;
    desktop.ExpectMessage(c.total);
    CurveLength(store, status, desktop);
    EXPECT_EQ(ListRows(store), c.list);
    EXPECT_EQ(store.ListIsCaptured, c.listIsCaptured);
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
}  // namespace graphize
