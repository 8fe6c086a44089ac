#include "data/sort.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>

#include "support/points.h"

namespace graphize::test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The plain double loop: what the order must equal.
std::vector<int> DoubleLoop(std::vector<float> keys, SortOrder order) {
  std::vector<int> rows(keys.size());
  std::iota(rows.begin(), rows.end(), 0);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    for (std::size_t j = i + 1; j < keys.size(); ++j) {
      if (order == SortOrder::Ascending ? keys[i] > keys[j] : keys[i] < keys[j]) {
        std::swap(keys[i], keys[j]);
        std::swap(rows[i], rows[j]);
      }
    }
  }
  return rows;
}

void ExpectEqualToDoubleLoop(const std::vector<float>& keys) {
  for (const SortOrder order : {SortOrder::Ascending, SortOrder::Descending}) {
    ASSERT_EQ(ExchangeSortOrder(keys, order), DoubleLoop(keys, order))
        << (order == SortOrder::Ascending ? "ascending " : "descending ")
        << testing::PrintToString(keys);
  }
}

TEST(ExchangeSortOrder, EqualsTheDoubleLoopOnEveryShortArrayOfFewValues) {
  // All arrays of up to seven rows over the values 0 to 3.
  for (std::size_t length = 0; length <= 7; ++length) {
    std::vector<float> keys(length);
    for (int code = 0; code < 1 << (2 * length); ++code) {
      for (std::size_t i = 0; i < length; ++i) keys[i] = static_cast<float>(code >> (2 * i) & 3);
      ExpectEqualToDoubleLoop(keys);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(ExchangeSortOrder, EqualsTheDoubleLoopOnRandomRowsWithManyTies) {
  std::mt19937 random(20);
  for (int round = 0; round < 4000; ++round) {
    const int values = 1 + static_cast<int>(random() % 40);
    std::vector<float> keys(random() % 120);
    for (float& key : keys) key = static_cast<float>(static_cast<int>(random() % values) - 5);
    // In some, zeros of both signs, infinities and what is not a number.
    if (round % 4 == 0) {
      for (const float special : {-0.0f, kInfinity, -kInfinity, kNaN, kNaN})
        for (int k = 0; k < 3 && !keys.empty(); ++k) keys[random() % keys.size()] = special;
    }
    ExpectEqualToDoubleLoop(keys);
    if (HasFatalFailure()) return;
  }
}

TEST(ExchangeSortOrder, EqualsTheDoubleLoopOnLongArrays) {
  constexpr int kCount = 2500;
  std::mt19937 random(3);
  // Three to a column and falling, a hill, random with ties.
  std::vector<float> falling(kCount), hill(kCount), ties(kCount);
  for (int i = 0; i < kCount; ++i) {
    falling[i] = static_cast<float>(-(i / 3));
    hill[i] = static_cast<float>(-std::abs(i - kCount / 2));
    ties[i] = static_cast<float>(random() % 300);
  }
  for (const auto& keys : {falling, hill, ties}) ExpectEqualToDoubleLoop(keys);
}

TEST(SortList, OrdersRowsByX) {
  PointStore store = MakeStore({{3, 10}, {1, 20}, {2, 30}});
  SortList(store, SortOrder::Ascending);
  EXPECT_EQ(ListRows(store), (RowList{{1, 20}, {2, 30}, {3, 10}}));
  EXPECT_EQ(store.Page.Lines[2].Point, 3);
  SortList(store, SortOrder::Descending);
  EXPECT_EQ(ListRows(store), (RowList{{3, 10}, {2, 30}, {1, 20}}));
  EXPECT_EQ(CapturedRows(store), (RowList{{3, 10}, {1, 20}, {2, 30}}));
  EXPECT_TRUE(store.ListIsCaptured);

  // Equal X: 2a is exchanged with 1 and so comes behind 2b.
  store = MakeStore({{2, 1}, {2, 2}, {1, 3}});
  SortList(store, SortOrder::Ascending);
  EXPECT_EQ(ListRows(store), (RowList{{1, 3}, {2, 2}, {2, 1}}));

  PointStore empty;
  SortList(empty, SortOrder::Ascending);
  EXPECT_EQ(empty.ListCount, 0);
}

TEST(SortList, TheRowsThatTakePart) {
  // Captured, list, whether it is of captured points, sorted.
  const std::tuple<RowList, RowList, bool, RowList> cases[] = {
      // More resampled points: those behind stay.
      {{{9, 1}, {8, 2}}, {{9, 1}, {8, 2}, {5, 3}, {4, 4}}, false, {{8, 2}, {9, 1}, {5, 3}, {4, 4}}},
      // Fewer: what stands behind comes in.
      {{{9, 1}, {8, 2}, {7, 3}}, {{9, 1}, {8, 2}}, false, {{7, 3}, {8, 2}}},
      // Captured points, the first cleared: the last, there twice, drives none out.
      {{{8, 2}, {7, 3}, {7, 3}}, {{8, 2}, {7, 3}}, true, {{7, 3}, {8, 2}}},
  };
  for (const auto& [captured, list, listIsCaptured, sorted] : cases) {
    SCOPED_TRACE(testing::PrintToString(list));
    PointStore store = MakeStore(captured);
    for (std::size_t i = 0; i < list.size(); ++i) {
      store.ListX[i + 1] = list[i].X;
      store.ListY[i + 1] = list[i].Y;
    }
    store.ListCount = static_cast<std::int16_t>(list.size());
    store.ListIsCaptured = listIsCaptured;
    SortList(store, SortOrder::Ascending);
    EXPECT_EQ(ListRows(store), sorted);
    EXPECT_EQ(store.NPoints, store.ListCount);
  }

  // Also where the arrays are not as long as the captured ones.
  PointStore small = MakeStore(RowList(700, {1, 1}));
  small.ListX.resize(501);
  small.ListY.resize(501);
  small.ListCount = 500;
  small.ListIsCaptured = false;
  SortList(small, SortOrder::Ascending);
  EXPECT_EQ(ListRows(small).front(), (Row{0, 0}));
}

}  // namespace
}  // namespace graphize::test
