#include "capture/curve_list.h"

#include <gtest/gtest.h>

#include <set>

#include "support/scripted_desktop.h"

namespace graphize {
namespace {

TEST(CurveList, ANameIsOneLineAndTheCurvesOwn) {
  CurveList list;
  PointStore store;
  AddCurve(list, store, "A \"b\", \xc3\xa9");
  for (const char* name :
       {"", "  ", "a\tb", "a\nb", "\x7f", "a\xc2\x85", "curve 1", "A \"b\", \xc3\xa9"})
    EXPECT_NE(CurveNameFault(list, name), "") << name;
  for (const char* name : {"curve 2", "a", "x & y", "\xc3\x80"})
    EXPECT_EQ(CurveNameFault(list, name), "") << name;
  EXPECT_NE(CurveNameFault(list, std::string(201, 'n')), "");
  EXPECT_EQ(CurveNameFault(list, "curve 1", 0), "") << "its own";
  EXPECT_EQ(CurveNameOf("  a b "), "a b");
  EXPECT_EQ(FreeCurveName(list), "curve 3");
  AddCurve(list, store, "curve 4");
  EXPECT_EQ(FreeCurveName(list), "curve 5");
  DeleteCurve(list, store);
  AddCurve(list, store, FreeCurveName(list));
  std::set<Colour> colours;
  for (const Curve& curve : list.Curves) colours.insert(curve.MarkColour);
  EXPECT_EQ(colours.size(), list.Curves.size()) << "the colour of a deleted curve is free";
}

TEST(CurveList, EachCurveHasItsPointsItsCapacityAndItsSelection) {
  test::ScriptedDesktop desktop;
  CommandStates commands;
  CurveList list;
  PointStore store;
  store.MaxPoints = 2;
  const auto capture = [&](float x) {
    store.CurrentX = x;
    store.CurrentPlace = {x, 1};
    return AddPoint(store, commands, desktop, true);
  };
  EXPECT_FALSE(capture(1) || capture(2));
  desktop.ExpectMessage("You reached the limit");
  EXPECT_TRUE(capture(3));
  SelectLine(store.Page, store.ListCount, 1, false);
  AddCurve(list, store, "B");
  EXPECT_EQ(store.CurrentX, 3) << "the cursor stands where it stood";
  EXPECT_EQ(store.CaptureCount + store.ListCount + store.NPoints, 0);
  EXPECT_FALSE(store.Page.SelectionActive);
  EXPECT_FALSE(capture(4) || capture(5));
  NoteSaved(store);
  EXPECT_EQ(UnsavedCurves(list, store), std::vector<int>{0});

  SelectCurve(list, store, 0);
  EXPECT_EQ(store.Page.SelectionStart, 2);
  EXPECT_EQ(store.ListX[2], 2);
  EXPECT_EQ(store.CurrentX, 5);
  EXPECT_EQ(PointsOf(list, store, 1).ListX[2], 5);
  EXPECT_EQ(UnsavedCurves(list, store), std::vector<int>{0});
  const PointStore* second = list.Curves[1].Points.get();
  SelectCurve(list, store, 1);
  SelectCurve(list, store, 0);
  EXPECT_EQ(list.Curves[1].Points.get(), second) << "looking at it takes no memory";

  DeleteCurve(list, store);
  EXPECT_EQ(list.Curves.size(), 1u);
  EXPECT_EQ(list.Curves[0].Name, "B");
  EXPECT_EQ(store.ListX[1], 4);
  EXPECT_TRUE(UnsavedCurves(list, store).empty());
  ResetCurves(list, store);
  EXPECT_EQ(list.Curves[0].Name, "curve 1");
}

}  // namespace
}  // namespace graphize
