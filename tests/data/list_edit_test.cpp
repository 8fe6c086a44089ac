#include "data/list_edit.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "data/curve_length.h"
#include "data/resampling.h"
#include "data/sort.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

/// Points (1, -1), (2, -2), ... up to (count, -count).
RowList Numbered(int count) {
  RowList rows;
  for (int i = 1; i <= count; ++i) rows.push_back({static_cast<float>(i), static_cast<float>(-i)});
  return rows;
}

std::vector<float> XsOf(const RowList& rows) {
  std::vector<float> xs;
  for (const auto& row : rows) xs.push_back(row.X);
  return xs;
}

std::vector<int> Shown(const PointStore& store) {
  std::vector<int> points;
  for (const auto& line : store.Page.Lines) points.push_back(line.Point);
  return points;
}

TEST(ClearSelected, RemovesTheSelectedRowsAndLeavesTheCapturedCount) {
  using Ints = std::vector<int>;
  using Xs = std::vector<float>;
  // Points, scroll value, lines pressed (the second with Shift; -1: none), list, captured, shown;
  // the scroll bar's maximum, which is above 1 where it is enabled.
  const std::tuple<int, int, int, int, Xs, Xs, Ints, int> cases[] = {
      {5, 1, 2, -1, Xs{1, 2, 4, 5}, Xs{1, 2, 4, 5, 5}, Ints{1, 2, 3, 4, 0}, 1},
      {4, 1, 3, -1, Xs{1, 2, 3}, Xs{1, 2, 3, 4}, Ints{1, 2, 3, 0, 0}, 1},
      {8, 3, 0, 2, Xs{1, 2, 6, 7, 8}, Xs{1, 2, 6, 7, 8, 6, 7, 8}, Ints{1, 2, 3, 4, 5}, 1},
      {8, 2, 0, 1, Xs{1, 4, 5, 6, 7, 8}, Xs{1, 4, 5, 6, 7, 8, 7, 8}, Ints{2, 3, 4, 5, 6}, 2},
      {3, 1, 0, 2, Xs{}, Xs{1, 2, 3}, Ints{0, 0, 0, 0, 0}, 1},
      // The end before the start; an empty line.
      {5, 1, 3, 1, Xs{1, 2, 3, 4, 5}, Xs{1, 2, 3, 4, 5}, Ints{1, 2, 3, 4, 5}, 1},
      {3, 1, 4, -1, Xs{1, 2, 3}, Xs{1, 2, 3}, Ints{1, 2, 3, 0, 0}, 1},
  };
  for (const auto& [points, scroll, press, shiftPress, list, captured, shown, maximum] : cases) {
    SCOPED_TRACE(testing::PrintToString(captured));
    PointStore store = MakeStore(Numbered(points));
    store.Page.ScrollValue = scroll;
    SelectLine(store.Page, store.ListCount, press, false);
    if (shiftPress >= 0) SelectLine(store.Page, store.ListCount, shiftPress, true);
    ClearSelected(store);
    EXPECT_EQ(XsOf(ListRows(store)), list);
    EXPECT_EQ(XsOf(CapturedRows(store)), captured);
    for (const auto& row : ListRows(store)) EXPECT_EQ(row.Y, -row.X);
    for (const auto& row : CapturedRows(store)) EXPECT_EQ(row.Y, -row.X);
    EXPECT_EQ(store.NPoints, static_cast<int>(list.size()));
    EXPECT_EQ(Shown(store), shown);
    EXPECT_EQ(store.Page.ScrollMaximum, maximum);
    EXPECT_EQ(store.Page.ScrollEnabled, maximum > 1);
    // A second command has nothing left to act on.
    if (list.size() < static_cast<std::size_t>(points)) {
      EXPECT_FALSE(CanClearSelected(store));
      ClearSelected(store);
      EXPECT_EQ(XsOf(ListRows(store)), list);
    }
  }
}

TEST(ClearSelected, AfterASortTheRowsOwnPointsGoAndUndoBringsBackTheOthers) {
  using Xs = std::vector<float>;
  // Captured, lines pressed (the second with Shift), list, list after the Undo.
  const std::tuple<Xs, int, int, Xs, Xs> cases[] = {
      {Xs{1, 2, 3, 4, 5}, 0, 0, Xs{4, 3, 2, 1}, Xs{1, 2, 3, 4, 4}},
      {Xs{1, 2, 3, 4, 5}, 4, 4, Xs{5, 4, 3, 2}, Xs{2, 3, 4, 5, 5}},
      {Xs{2, 5, 1, 3, 4}, 1, 2, Xs{5, 2, 1}, Xs{2, 5, 1, 5, 1}},
      {Xs{2, 5, 1, 3, 4}, 0, 3, Xs{1}, Xs{1, 1, 1, 1, 1}},
      {Xs{1, 2, 3}, 0, 2, Xs{}, Xs{1, 2, 3}},
      // In the order of capture the last one stays where the Undo finds it.
      {Xs{3, 2, 1}, 2, 2, Xs{3, 2}, Xs{3, 2, 1}},
  };
  for (const auto& [captured, press, shiftPress, list, undone] : cases) {
    SCOPED_TRACE(testing::PrintToString(list));
    RowList rows;
    for (const float x : captured) rows.push_back({x, -x});
    PointStore store = MakeStore(rows);
    SortList(store, SortOrder::Descending);
    SelectLine(store.Page, store.ListCount, press, false);
    SelectLine(store.Page, store.ListCount, shiftPress, true);
    ClearSelected(store);
    EXPECT_EQ(XsOf(ListRows(store)), list);
    XY2List(store);
    EXPECT_EQ(XsOf(ListRows(store)), undone);
  }
  // Of a point that two rows show only the last row's removal takes it.
  PointStore store = MakeStore(Numbered(3));
  for (const int line : {1, 0}) {
    SelectLine(store.Page, store.ListCount, line, false);
    ClearSelected(store);
    if (line == 1) XY2List(store);  // 1, 3, 3
    if (line == 1) SortList(store, SortOrder::Descending);
  }
  EXPECT_EQ(XsOf(ListRows(store)), (std::vector<float>{3, 1}));
  EXPECT_EQ(XsOf(CapturedRows(store)), (std::vector<float>{1, 3, 3}));
}

TEST(PointId, StaysWithItsPointWhateverIsDoneWithTheList) {
  std::mt19937 random(8);
  const ScriptedDesktop quiet;
  CommandStates commands;
  StatusBar status;
  PointStore store;
  std::size_t given = 1;
  const auto add = [&] {
    const auto x = static_cast<float>(random() % 50), y = static_cast<float>(random() % 900) + 100;
    store.CurrentPlace = {x, y};
    AddValuePoint(store, commands, quiet, true, x, y);
    ++given;
  };
  const std::function<void()> operations[] = {
      add,
      add,
      [&] { SortList(store, SortOrder::Ascending); },
      [&] { SortList(store, SortOrder::Descending); },
      [&] { SwapXY(store); },
      [&] { XY2List(store); },
      [&] {
        if (store.CaptureCount > 1)
          ReSampleList(store, {static_cast<int>(2 + random() % 9), 1, 2}, false, quiet);
      },
      [&] {
        ScriptedDesktop desktop;
        desktop.ExpectMessage("Total curve length");
        CurveLength(store, status, desktop);
      },
      [&] {
        store.Page.ScrollValue = 1 + static_cast<int>(random() % store.Page.ScrollMaximum);
        SelectLine(store.Page, store.ListCount, static_cast<int>(random() % 3), false);
        SelectLine(store.Page, store.ListCount, static_cast<int>(random() % 5), true);
        ClearSelected(store);
      },
      [&] {
        if (random() % 20 == 0) DeleteAllData(store, commands, quiet, false);
      },
  };
  for (int round = 0; round < 20'000; ++round) {
    operations[random() % std::size(operations)]();
    ASSERT_EQ(store.Places.size(), given);
    for (int i = 1; i <= store.CaptureCount; ++i) {
      const Place& place = store.Places[store.CaptureId[i]];
      ASSERT_TRUE(place.Column == store.CaptureX[i] && place.Row == store.CaptureY[i]) << round;
    }
    for (int i = 1; i <= store.ListCount; ++i) {
      if (store.ListId[i] == 0) continue;
      const float x = store.ListX[i], y = store.ListY[i];
      const Place& place = store.Places[store.ListId[i]];
      ASSERT_TRUE((place.Column == x && place.Row == y) || (place.Column == y && place.Row == x))
          << round;
    }
    if (!store.ListIsCaptured) continue;
    for (int i = 1; i <= store.ListCount; ++i) ASSERT_NE(store.ListId[i], 0u) << round;
  }
}

TEST(ClearSelected, NeedsAnActiveSelectionOfCapturedPoints) {
  const RowList rows = Numbered(6);
  const PointStore selected = [&] {
    PointStore store = MakeStore(rows);
    SelectLine(store.Page, store.ListCount, 0, false);
    return store;
  }();
  ASSERT_TRUE(CanClearSelected(selected));

  const std::pair<const char*, void (*)(PointStore&)> spoilers[] = {
      {"not captured", [](PointStore& store) { store.ListIsCaptured = false; }},
      {"newest shown", [](PointStore& store) { ShowNewest(store); }},
      {"swapped", [](PointStore& store) { SwapXY(store), SwapXY(store); }},
      {"rebuilt", [](PointStore& store) { XY2List(store); }},
      {"list emptied", [](PointStore& store) { store.ListCount = 0; }},
  };
  for (const auto& [name, spoil] : spoilers) {
    PointStore store = selected;
    spoil(store);
    EXPECT_FALSE(CanClearSelected(store)) << name;
    CommandStates commands{.ClearSelected = true};
    UpdateEditMenu(store, commands);
    EXPECT_FALSE(commands.ClearSelected) << name;
    ClearSelected(store);
    EXPECT_EQ(CapturedRows(store), rows) << name;
  }
  // Shift alone moves an end but selects nothing.
  PointStore store = MakeStore(rows);
  SelectLine(store.Page, store.ListCount, 2, true);
  ClearSelected(store);
  EXPECT_EQ(ListRows(store), rows);
}

TEST(SwapXY, ExchangesEveryRowOfTheListAndTwiceIsTheSame) {
  for (const int count : {0, 1, 7, 501}) {
    PointStore store = MakeStore(Numbered(count));
    SwapXY(store);
    for (const auto& row : ListRows(store)) EXPECT_EQ(row.X, -row.Y) << row.X;
    EXPECT_EQ(store.NPoints, count);
    EXPECT_EQ(store.ListRows, PointStore::Rows::SwappedPlaces);
    EXPECT_EQ(CapturedRows(store), Numbered(count));
    if (count > 0) {
      EXPECT_EQ(store.ListX[1], -1);
    }
    SwapXY(store);
    EXPECT_EQ(ListRows(store), Numbered(count));
    EXPECT_EQ(store.ListX[0], 0);
    EXPECT_EQ(store.ListY[0], 0);
  }
}

TEST(XY2List, BringsTheCapturedPointsBackIntoTheList) {
  PointStore store = MakeStore(Numbered(600));
  SwapXY(store);
  store.ListCount = 3;
  store.ListIsCaptured = false;
  // Arrays that have not grown with the captured points must grow now.
  store.ListX.resize(501);
  store.ListY.resize(501);
  XY2List(store);
  EXPECT_EQ(ListRows(store), Numbered(600));
  EXPECT_TRUE(store.ListIsCaptured);
  EXPECT_EQ(store.NPoints, 600);
  EXPECT_EQ(store.Page.Lines[4].Point, 600);

  PointStore empty;
  empty.ListIsCaptured = false;
  empty.ListCount = 2;
  XY2List(empty);
  EXPECT_EQ(empty.ListCount, 2);
  EXPECT_FALSE(empty.ListIsCaptured);
}

TEST(DataMenu, OffersWhatTheNumberOfCapturedPointsAllows) {
  // Captured; sort and its like, curve length, resampling, integration. From one to the next with
  // the same states: curve length keeps its state at one point.
  const std::tuple<int, bool, bool, bool, bool> cases[] = {
      {1, true, false, false, false},  {2, true, true, true, false},
      {1, true, true, false, false},   {3, true, true, true, true},
      {0, false, false, false, false}, {1, true, false, false, false}};
  CommandStates states;
  for (const auto& [captured, sort, curveLength, resample, integrate] : cases) {
    SCOPED_TRACE(captured);
    UpdateDataMenu(MakeStore(Numbered(captured)), states);
    for (const bool state : {states.Sort, states.SwapXY, states.ListUndo}) EXPECT_EQ(state, sort);
    EXPECT_EQ(states.CurveLength, curveLength);
    EXPECT_EQ(states.Resample, resample);
    EXPECT_EQ(states.Integrate, integrate);
  }
}

TEST(DataMenu, AListClearedRowByRowKeepsTheDataCommands) {
  PointStore store = MakeStore(Numbered(2));
  SelectLine(store.Page, store.ListCount, 0, false);
  SelectLine(store.Page, store.ListCount, 1, true);
  ClearSelected(store);
  CommandStates commands;
  UpdateDataMenu(store, commands);
  EXPECT_EQ(store.ListCount, 0);
  EXPECT_TRUE(commands.ListUndo);
  XY2List(store);
  EXPECT_EQ(ListRows(store), Numbered(2));
}

TEST(AddValuePoint, GrowsAListThatIsLongerThanTheCapturedPoints) {
  // As after a resampling: the list is full to its last element.
  PointStore store = MakeStore(Numbered(2));
  CommandStates commands;
  const ScriptedDesktop quiet;
  GrowList(store, 2498);
  store.ListCount = 2498;
  store.ListX[2498] = 7;
  for (const float x : {8.0f, 9.0f, 10.0f})
    EXPECT_FALSE(AddValuePoint(store, commands, quiet, true, x, 0));
  EXPECT_EQ(store.CaptureCount, 5);
  const RowList rows = ListRows(store);
  ASSERT_EQ(rows.size(), 2501u);
  EXPECT_EQ(XsOf({rows.end() - 4, rows.end()}), (std::vector<float>{7, 8, 9, 10}));

  // A list that cannot count one more row refuses like a full store.
  GrowList(store, 32767);
  store.ListCount = 32767;
  ScriptedDesktop desktop;
  desktop.ExpectMessage("You reached the limit of data that can be stored.");
  EXPECT_TRUE(AddValuePoint(store, commands, desktop, true, 1, 1));
  EXPECT_EQ(store.CaptureCount, 5);
  EXPECT_EQ(store.ListCount, 32767);
}

TEST(ListEdit, KeysMoveTheSelectionAndTheListFollows) {
  PointStore store = MakeStore(RowList(8));
  ListPage& page = store.Page;
  struct Case {
    int line, by;
    bool extend;
    int start, end, first;  // rows: selected, and on the first line
  };
  constexpr int kAll = 0x10000;
  for (const Case& c :
       {Case{1, -1, false, 5, 5, 4}, Case{1, -2, false, 3, 3, 3}, Case{0, 2, true, 3, 5, 3},
        Case{2, kAll, true, 3, 8, 4}, Case{4, -kAll, false, 1, 1, 1}, Case{0, 0, false, 1, 1, 1},
        Case{0, kPageLines, false, 6, 6, 2}, Case{4, 1, false, 7, 7, 3}}) {
    StepSelection(page, store.ListCount, c.line, c.by, c.extend);
    EXPECT_EQ(page.SelectionStart, c.start);
    EXPECT_EQ(page.SelectionEnd, c.end);
    EXPECT_EQ(page.Lines[0].Point, c.first);
    EXPECT_TRUE(page.SelectionActive);
  }
  ListPage empty;
  StepSelection(empty, 0, 0, 1, false);
  EXPECT_FALSE(empty.SelectionActive);
}

}  // namespace
}  // namespace graphize::test
