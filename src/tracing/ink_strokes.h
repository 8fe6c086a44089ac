#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "tracing/ink_column.h"

namespace graphize {

/// Ink of one column that belongs together.
struct Stroke {
  int Top, Bottom;  // its first and last black row
  double Mean;      // of all its black rows

  int Height() const { return Bottom - Top + 1; }
  bool Holds(int row) const { return row >= Top && row <= Bottom; }
};

/// The black row nearest to `wanted`, from `top` to `bottom`; of two the lower one, or else the
/// upper one. -1 when there is none.
inline int NearestInk(const InkColumn& column, double wanted, bool lowerFirst, int top,
                      int bottom) {
  top = std::max(top, 0);
  bottom = std::min(bottom, column.Rows() - 1);
  const int middle = static_cast<int>(std::lround(wanted));
  const int first = std::max({top - middle, middle - bottom, 0});
  const int last = std::max(middle - top, bottom - middle);
  for (int distance = first; distance <= last; ++distance) {
    const int step = lowerFirst ? distance : -distance;
    for (const int row : {middle + step, middle - step})
      if (row >= top && row <= bottom && column[row]) return row;
  }
  return -1;
}

/// The ink around the black row `start`, stepping over up to `yIncrement` other rows.
inline Stroke CollectStroke(const InkColumn& column, int start, int yIncrement) {
  double sum = start;
  int count = 1;
  const auto walk = [&](int direction) {
    int last = start;
    for (int row = start + direction;
         row >= 0 && row < column.Rows() && std::abs(row - last) <= yIncrement + 1;
         row += direction) {
      if (!column[row]) continue;
      sum += row;
      ++count;
      last = row;
    }
    return last;
  };
  const int bottom = walk(1), top = walk(-1);
  return {top, bottom, sum / count};
}

/// Calls `take` for all strokes that have ink from row `top` to row `bottom`, downward.
template <class Take>
void ForEachStroke(const InkColumn& column, int top, int bottom, int yIncrement, const Take& take) {
  bottom = std::min(bottom, column.Rows() - 1);
  for (int row = std::max(top, 0); row <= bottom; ++row) {
    if (!column[row]) continue;
    const Stroke stroke = CollectStroke(column, row, yIncrement);
    take(stroke);
    row = stroke.Bottom;
  }
}

/// Follows all ink that hangs together with a stroke from column to column.
class InkFront {
 public:
  InkFront(const TracedInk& ink, const Stroke& start, int yIncrement)
      : ink_(ink), strokes_{start}, yIncrement_(yIncrement) {}

  /// Goes on to `column`, beside the one before. Behind a break, ink within the Y increment counts.
  void Advance(int column);
  /// Columns without ink since the last with some.
  int Missing() const { return missing_; }
  /// Whether there is ink here and `row` lies in it.
  bool Holds(int row) const;

 private:
  const TracedInk& ink_;
  std::vector<Stroke> strokes_, next_;
  int yIncrement_, missing_ = 0;
};

/// Over how many columns, at most `enough`, ink hangs together with the stroke of `column` to the
/// right (`direction` 1) or left (-1), across breaks of up to `longestBreak` columns.
int ExtentOfInk(const TracedInk& ink, const Stroke& stroke, int column, int direction,
                int longestBreak, int yIncrement, int enough);

}  // namespace graphize
