#include "capture/point_store.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

void Append(PointStore& store, CommandStates& commands, const Desktop& desktop, int count) {
  for (int i = 0; i < count; ++i) {
    const auto value = static_cast<float>(store.CaptureCount + 1);
    ASSERT_FALSE(AddValuePoint(store, commands, desktop, true, value, -value));
  }
}

TEST(PointStore, GrowsInStepsAndKeepsWhatItHolds) {
  PointStore store;
  CommandStates commands;
  ScriptedDesktop desktop;
  EXPECT_EQ(store.CaptureX.size(), 501u);
  Append(store, commands, desktop, 499);
  EXPECT_EQ(store.ListY.size(), 501u);
  store.CurrentPlace = {7, 8.25f};
  Append(store, commands, desktop, 1);
  EXPECT_EQ(store.Places[store.ListId[500]].Row, 8.25f);
  for (const auto* array : {&store.CaptureX, &store.CaptureY, &store.ListX, &store.ListY})
    EXPECT_EQ(array->size(), 1001u);
  for (const int i : {1, 250, 500}) {
    EXPECT_EQ(store.CaptureX[i], i);
    EXPECT_EQ(store.ListY[i], -i);
  }
  EXPECT_EQ(store.CaptureX[0], 0);

  // A shortened list is sized from the captured count when it reaches a step.
  store.ListCount = 450;
  Append(store, commands, desktop, 50);
  EXPECT_EQ(store.ListCount, 500);
  EXPECT_GE(store.ListX.size(), 1001u);
  EXPECT_EQ(store.ListX[500], 550);

  // Many at once are like one after the other: over several steps, and all or none.
  FoundPoints found;
  for (int i = 1; i <= 1200; ++i) {
    found.Places.push_back({static_cast<float>(i), 0.5f});
    found.X.push_back(static_cast<float>(-i));
    found.Y.push_back(static_cast<float>(2 * i));
  }
  EXPECT_EQ(store.CaptureCount, 550);
  EXPECT_FALSE(AddPoints(store, commands, desktop, false, found, 1199));
  EXPECT_EQ(store.CaptureCount, 1749);
  EXPECT_EQ(store.ListCount, 1699);
  EXPECT_EQ(store.CaptureX[551], -1);
  EXPECT_EQ(store.CaptureY[1749], 2398);
  EXPECT_EQ(store.ListX[501], -1);
  EXPECT_EQ(store.Places[store.ListId[1699]].Column, 1199);
  EXPECT_EQ(store.CaptureId[1749], store.ListId[1699]);
  store.MaxPoints = 1750;
  desktop.ExpectMessage("You reached the limit of data that can be stored.");
  EXPECT_EQ(RoomFor(store), 1);
  EXPECT_TRUE(AddPoints(store, commands, desktop, false, found, 2));
  EXPECT_EQ(store.CaptureCount, 1749);

  // Added to exchanged rows, points make the list neither.
  EXPECT_EQ(store.ListRows, PointStore::Rows::Places);
  store.ListRows = PointStore::Rows::SwappedPlaces;
  Append(store, commands, desktop, 1);
  EXPECT_EQ(store.ListRows, PointStore::Rows::Other);
}

TEST(PointStore, TheFirstPointEnablesTheDataCommandsAndDeletingDisablesThem) {
  PointStore store;
  CommandStates commands;
  ScriptedDesktop desktop;
  store.CurrentX = 3;
  store.CurrentY = 4;
  store.CurrentPixelX = 30;
  store.CurrentPixelY = 40;
  EXPECT_FALSE(AddPoint(store, commands, desktop, false));
  EXPECT_TRUE(commands.Data);
  EXPECT_EQ(store.ListX[1], 3);
  EXPECT_EQ(store.LastPixelY, 40);
  EXPECT_EQ(store.NPoints, 0) << "the label was not asked for";
  ShowNewest(store);
  EXPECT_EQ(store.NPoints, 1);

  desktop.ExpectMessage("Delete all graphized X,Y data ?", Answer::No);
  EXPECT_FALSE(DeleteAllData(store, commands, desktop, true));
  EXPECT_EQ(store.CaptureCount, 1);
  EXPECT_TRUE(commands.Data);
  desktop.ExpectMessage("Delete all graphized X,Y data ?", Answer::Yes);
  EXPECT_TRUE(DeleteAllData(store, commands, desktop, true));
  EXPECT_EQ(store.CaptureCount + store.ListCount + store.NPoints, 0);
  EXPECT_FALSE(commands.Data);
  EXPECT_EQ(store.CaptureX[1], 0);
  EXPECT_EQ(store.Page.Lines[0].Point, 0);
}

TEST(PointStore, AFullStoreRefusesWithItsMessage) {
  PointStore store;
  CommandStates commands;
  ScriptedDesktop desktop;
  Append(store, commands, desktop, 32767);
  desktop.ExpectMessage(
      "You reached the limit of data that can be stored.\n\rTo continue save the data and clear "
      "the Graphized Points in the list box.");
  EXPECT_TRUE(AddValuePoint(store, commands, desktop, true, 1, 2));
  EXPECT_EQ(desktop.Messages[0].Icon, MessageIcon::Exclamation);
  EXPECT_EQ(store.CaptureCount, 32767);
  EXPECT_EQ(store.ListCount, 32767);
  EXPECT_EQ(store.ListX[32767], 32767);
}

std::vector<int> PointsShown(const ListPage& page) {
  std::vector<int> points;
  for (const ListPage::Line& line : page.Lines) points.push_back(line.Point);
  return points;
}

TEST(ListPage, ShowsTheNewestOrThePageAtTheScrollBar) {
  const std::tuple<int, std::vector<int>, int> cases[] = {// points, the newest, scroll maximum
                                                          {0, {0, 0, 0, 0, 0}, 1},
                                                          {3, {1, 2, 3, 0, 0}, 1},
                                                          {5, {1, 2, 3, 4, 5}, 1},
                                                          {6, {2, 3, 4, 5, 6}, 2},
                                                          {7, {3, 4, 5, 6, 7}, 3}};
  for (const auto& [count, newest, maximum] : cases) {
    ListPage page;
    ShowNewest(page, count);
    EXPECT_EQ(PointsShown(page), newest);
    EXPECT_EQ(page.ScrollMaximum, maximum);
    EXPECT_EQ(page.ScrollEnabled, maximum > 1);
    EXPECT_EQ(page.ScrollValue, maximum);
  }
  ListPage page;
  ShowNewest(page, 7);
  page.ScrollValue = 2;
  ShowPage(page, 7);
  EXPECT_EQ(PointsShown(page), (std::vector{2, 3, 4, 5, 6}));
}

TEST(ListPage, ClicksSelectAndShiftMovesTheEnd) {
  ListPage page;
  ShowNewest(page, 7);
  SelectLine(page, 7, 1, true);
  EXPECT_FALSE(page.SelectionActive) << "Shift alone starts no selection";
  page.ScrollValue = 1;
  SelectLine(page, 7, 2, false);
  EXPECT_EQ(page.SelectionStart, 3);
  EXPECT_EQ(page.SelectionEnd, 3);
  EXPECT_TRUE(page.SelectionActive && page.Lines[2].Highlighted && !page.Lines[3].Highlighted);
  SelectLine(page, 7, 4, true);
  EXPECT_EQ(page.SelectionEnd, 5);
  EXPECT_TRUE(page.Lines[4].Highlighted);
  SelectLine(page, 7, 0, true);
  EXPECT_LT(page.SelectionEnd, page.SelectionStart) << "an upward range stays empty";
  ShowNewest(page, 8);
  EXPECT_FALSE(page.SelectionActive);
  ShowNewest(page, 2);
  SelectLine(page, 2, 3, false);
  EXPECT_FALSE(page.SelectionActive) << "an empty line";
}

}  // namespace
}  // namespace graphize::test
