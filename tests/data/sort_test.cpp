#include "data/sort.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

#include "support/points.h"

namespace graphize {
namespace {

using test::ListRows;
using test::MakeStore;
using test::RowList;

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
  const std::pair<const char*, std::function<float(int)>> patterns[] = {
      {"three to a column, falling", [](int i) { return static_cast<float>(-(i / 3)); }},
      {"hill", [](int i) { return static_cast<float>(-std::abs(i - kCount / 2)); }},
      {"random with ties", [&](int) { return static_cast<float>(random() % 300); }},
  };
  for (const auto& [name, valueAt] : patterns) {
    SCOPED_TRACE(name);
    std::vector<float> keys(kCount);
    for (int i = 0; i < kCount; ++i) keys[i] = valueAt(i);
    ExpectEqualToDoubleLoop(keys);
    if (HasFatalFailure()) return;
  }
}

TEST(SortList, OrdersRowsByX) {
  PointStore store = MakeStore({{3, 10}, {1, 20}, {2, 30}});
  SortList(store, SortOrder::Ascending);
  EXPECT_EQ(ListRows(store), (RowList{{1, 20}, {2, 30}, {3, 10}}));
  EXPECT_EQ(store.Page.Lines[2].Point, 3);
  SortList(store, SortOrder::Descending);
  EXPECT_EQ(ListRows(store), (RowList{{3, 10}, {2, 30}, {1, 20}}));
  EXPECT_EQ(test::CapturedRows(store), (RowList{{3, 10}, {1, 20}, {2, 30}}));
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
  struct Case {
    const char* name;
    RowList captured, list;
    bool listIsCaptured;
    RowList sorted;
  };
  const Case cases[] = {
      {"more resampled points: those behind stay",
       {{9, 1}, {8, 2}},
       {{9, 1}, {8, 2}, {5, 3}, {4, 4}},
       false,
       {{8, 2}, {9, 1}, {5, 3}, {4, 4}}},
      {"fewer: what stands behind comes in",
       {{9, 1}, {8, 2}, {7, 3}},
       {{9, 1}, {8, 2}},
       false,
       {{7, 3}, {8, 2}}},
      {"captured points, the first cleared: the last, there twice, drives none out",
       {{8, 2}, {7, 3}, {7, 3}},
       {{8, 2}, {7, 3}},
       true,
       {{7, 3}, {8, 2}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PointStore store = MakeStore(c.captured);
    for (std::size_t i = 0; i < c.list.size(); ++i) {
      store.ListX[i + 1] = c.list[i].X;
      store.ListY[i + 1] = c.list[i].Y;
    }
    store.ListCount = static_cast<std::int16_t>(c.list.size());
    store.ListIsCaptured = c.listIsCaptured;
    SortList(store, SortOrder::Ascending);
    EXPECT_EQ(ListRows(store), c.sorted);
    EXPECT_EQ(store.NPoints, store.ListCount);
  }

  // Also where the arrays are not as long as the captured ones.
  PointStore small = MakeStore(RowList(700, {1, 1}));
  small.ListX.resize(501);
  small.ListY.resize(501);
  small.ListCount = 500;
  small.ListIsCaptured = false;
  SortList(small, SortOrder::Ascending);
  EXPECT_EQ(ListRows(small).front(), (test::Row{0, 0}));
}

}  // namespace
}  // namespace graphize
