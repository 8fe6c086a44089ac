#include "data/sort.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <span>

#include "data/list_edit.h"

namespace graphize {

namespace {

// How the order is found without the double loop.
//
// Follow one place j of the array. Each pass i < j comes by with the row it carries in place i; it
// is exchanged with the row at j when it is greater. So place j lets a carried row pass or keeps it
// and sends on the one it had; in pass j its own row goes on. Places behind j do not change what
// reaches j, so the carried rows reach it as the exchange sort of the rows before j would leave
// them: in rising order. Hence place j puts its row into an ordered sequence:
//
// - rows with smaller or equal keys pass by,
// - the first greater one is kept and row j goes on in its place: row j comes to stand behind its
//   equals,
// - of each run of equal greater rows the first is kept until a greater one comes; the others,
//   being equal, pass by: the first comes to stand behind them.
//
// So: insert the rows one by one, each behind its equals, and turn each run of equal greater rows
// left by one. How far a run has turned in all is the number of smaller rows inserted, and that is
// all one needs to know about them.

/// Counts of elements at places 0..n-1, with sums and searches in log n (a Fenwick tree).
class Counts {
 public:
  /// All places 0, or all 1.
  Counts(std::size_t places, bool ones) : sums_(places + 1) {
    for (std::size_t i = 1; ones && i < sums_.size(); ++i)
      sums_[i] = static_cast<int>(i & (~i + 1));
  }
  void Add(std::size_t place, int change) {
    for (std::size_t i = place + 1; i < sums_.size(); i += i & (~i + 1)) sums_[i] += change;
  }
  /// The sum over the places before `place`.
  int Before(std::size_t place) const {
    int sum = 0;
    for (std::size_t i = place; i > 0; i -= i & (~i + 1)) sum += sums_[i];
    return sum;
  }
  /// The place of the one that has `rank` ones before it.
  std::size_t Find(int rank) const {
    std::size_t place = 0;
    for (std::size_t step = std::bit_floor(sums_.size() - 1); step > 0; step /= 2) {
      if (place + step >= sums_.size() || sums_[place + step] > rank) continue;
      place += step;
      rank -= sums_[place];
    }
    return place;
  }

 private:
  std::vector<int> sums_;
};

int Modulo(int value, int divisor) {
  const int rest = value % divisor;
  return rest < 0 ? rest + divisor : rest;
}

/// Puts a run of equal rows into its final order. `rows` is in order of insertion; `smaller` has
/// for each the number of smaller rows inserted before it, `allSmaller` is their number at the end.
///
/// The run is a circle of places with a head that moves on by one at each turn; a row is inserted
/// just before the head. Backwards from the end: turn the head back, take the last inserted row out
/// from before it. Positions are ranks among the places still taken.
void TurnRun(std::span<int> rows, std::span<const int> smaller, int allSmaller) {
  Counts taken(rows.size(), true);
  std::vector<int> turned(rows.size());
  int head = 0, later = allSmaller;
  for (int count = static_cast<int>(rows.size()); count > 0; --count) {
    head = Modulo(head - (later - smaller[count - 1]), count);
    later = smaller[count - 1];
    const int rank = head == 0 ? count - 1 : head - 1;
    const std::size_t place = taken.Find(rank);
    turned[place] = rows[count - 1];
    taken.Add(place, -1);
    if (head > 0) --head;
  }
  std::copy(turned.begin(), turned.end(), rows.begin());
}

/// ExchangeSortOrder in rising order for keys that are all numbers.
std::vector<int> RisingOrder(const std::vector<float>& keys) {
  std::vector<int> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return keys[a] < keys[b]; });

  // Where the run of each row begins: the number of smaller rows in all.
  std::vector<int> runBegin(keys.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool sameRun = i > 0 && !(keys[order[i - 1]] < keys[order[i]]);
    runBegin[order[i]] = sameRun ? runBegin[order[i - 1]] : static_cast<int>(i);
  }
  // The number of smaller rows inserted before each.
  std::vector<int> smallerOfRow(keys.size());
  Counts inserted(keys.size(), false);
  for (std::size_t row = 0; row < keys.size(); ++row) {
    smallerOfRow[row] = inserted.Before(static_cast<std::size_t>(runBegin[row]));
    inserted.Add(static_cast<std::size_t>(runBegin[row]), 1);
  }
  std::vector<int> smaller(keys.size());
  for (std::size_t i = 0; i < order.size(); ++i) smaller[i] = smallerOfRow[order[i]];

  for (std::size_t begin = 0, end = 0; begin < order.size(); begin = end) {
    const int first = runBegin[order[begin]];
    while (end < order.size() && runBegin[order[end]] == first) ++end;
    TurnRun(std::span(order).subspan(begin, end - begin),
            std::span(smaller).subspan(begin, end - begin), first);
  }
  return order;
}

}  // namespace

std::vector<int> ExchangeSortOrder(const std::vector<float>& keys, SortOrder order) {
  // What is not a number is never exchanged: the others sort around it.
  std::vector<int> numbers;
  std::vector<float> numberKeys;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (std::isnan(keys[i])) continue;
    numbers.push_back(static_cast<int>(i));
    numberKeys.push_back(order == SortOrder::Ascending ? keys[i] : -keys[i]);
  }
  std::vector<int> result(keys.size());
  std::iota(result.begin(), result.end(), 0);
  const std::vector<int> sorted = RisingOrder(numberKeys);
  for (std::size_t i = 0; i < sorted.size(); ++i) result[numbers[i]] = numbers[sorted[i]];
  return result;
}

void SortList(PointStore& store, SortOrder order) {
  const int count =
      store.ListIsCaptured ? std::min(store.ListCount, store.CaptureCount) : store.CaptureCount;
  GrowList(store, count);
  const std::vector<float> xs(store.ListX.begin() + 1, store.ListX.begin() + 1 + count);
  const std::vector<float> ys(store.ListY.begin() + 1, store.ListY.begin() + 1 + count);
  const std::vector<PointId> ids(store.ListId.begin() + 1, store.ListId.begin() + 1 + count);
  const std::vector<int> rows = ExchangeSortOrder(xs, order);
  for (int i = 0; i < count; ++i) {
    store.ListX[i + 1] = xs[rows[i]];
    store.ListY[i + 1] = ys[rows[i]];
    store.ListId[i + 1] = ids[rows[i]];
  }
  ShowNewest(store);
}

}  // namespace graphize
