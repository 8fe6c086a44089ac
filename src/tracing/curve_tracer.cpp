#include "tracing/curve_tracer.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "tracing/ink_column.h"
#include "tracing/running_trace.h"

namespace graphize {

namespace {

/// Bounds of a stroke in one column.
struct Rows {
  int Top = -1, Bottom = -1;
};

/// Where a stroke goes on in the next column; -1 while it is not known.
using Continuation = Rows;

/// The lowest row of `next` that touches ink of `here` in the given rows, -1 when there is none.
int LowestContinuation(const InkColumn& here, const InkColumn& next, int top, int bottom) {
  for (int y = bottom; y >= top; --y) {
    if (!here[y]) continue;
    if (next[y]) return y;
    if (next[y - 1]) return y - 1;
    if (next[y + 1]) return y + 1;
  }
  return -1;
}

/// The row below the ink from `row` on downward, over gaps of up to `yIncrement` rows; `row` itself
/// where there is none.
int RowBelow(const InkColumn& here, int row, int yIncrement) {
  int end = row;
  for (row = std::max(row, here.First()); row <= here.Last() && row - end <= yIncrement; ++row)
    while (row <= here.Last() && here.IsBlack(row)) end = ++row;
  return end;
}

/// The same upward, which never looks at the two uppermost rows unless it begins there.
int RowAbove(const InkColumn& here, int row, int yIncrement) {
  const int first = std::max(here.First(), std::min(row, 2));
  int end = row;
  for (row = std::min(row, here.Last()); row >= first && end - row <= yIncrement; --row)
    while (row >= first && here.IsBlack(row)) end = --row;
  return end;
}

/// The row of `next` that touches ink of `here` in the rows from `from` back to `to`, as far as may
/// be in the direction of `step`, which is 1 or -1; -1 when there is none.
int FarthestContinuation(const InkColumn& here, const InkColumn& next, int from, int to, int step) {
  for (int row = from; (row - to) * step >= 0; row -= step) {
    if (!here[row]) continue;
    if (next[row + step]) return row + step;
    if (next[row]) return row;
  }
  return -1;
}

/// Widens `stroke` to the ink of column `here` (its bounds then lie one row outside of it) and
/// looks where it goes on in column `next`.
Continuation FollowInto(const InkColumn& here, const InkColumn& next, int yIncrement,
                        Rows& stroke) {
  const Rows within = std::exchange(
      stroke, {RowAbove(here, stroke.Top, yIncrement), RowBelow(here, stroke.Bottom, yIncrement)});
  Continuation found{FarthestContinuation(here, next, stroke.Top + 1, within.Top, -1),
                     FarthestContinuation(here, next, stroke.Bottom - 1, within.Bottom, 1)};
  if (found.Top >= 0 && found.Bottom >= 0) return found;

  const int across = LowestContinuation(here, next, std::max(within.Top, 0),
                                        std::min(within.Bottom, here.Rows() - 1));
  if (found.Top < 0) found.Top = across;
  if (found.Bottom < 0) found.Bottom = across;
  if (found.Top < 0) found.Top = found.Bottom;
  if (found.Bottom < 0) found.Bottom = found.Top;
  return found;
}

/// Has the memory fetch what will be read some columns on: pixels of a column lie far apart, and a
/// trace would wait for most of them. The memory sets the pace: it is asked only for the rows that
/// the stroke will have come to when it rises or falls as before.
class FetchAhead {
 public:
  FetchAhead(const RunningTrace& trace, int row)
      : image_(trace.Context.Image), margin_(trace.YIncrement + kError), row_(row) {}

  /// Called for each column, which asks for a share of the rows; all at once would have to wait,
  /// too. (Inlined, because GCC drops calls of what only prefetches.)
  [[gnu::always_inline]] void From(int column, const Rows& stroke) {
    rise_ += (static_cast<float>(stroke.Top - row_) - rise_) / kRemembered;
    row_ = stroke.Top;
    if (!image_.Contains(column + kAhead, 0)) return;
    const int rise = static_cast<int>(std::clamp(rise_, -kSteepest, kSteepest) * kAhead);
    const int first = std::max(stroke.Top + rise - margin_, 0);
    const int last =
        std::min({stroke.Bottom + rise + margin_, first + kMostRows, image_.Height() - 1});
    for (int row = first + ((column - first) & (kShare - 1)); row <= last; row += kShare)
      __builtin_prefetch(image_.Pixels.Row(row) + column + kAhead);
  }

 private:
  static constexpr int kAhead = 12;        // columns
  static constexpr int kShare = 8;         // a row in so many at each column
  static constexpr int kMostRows = 128;    // of a tall stroke the upper end alone
  static constexpr int kError = 3;         // of the expected rows
  static constexpr float kRemembered = 8;  // columns
  static constexpr float kSteepest = 4;    // beyond, a stroke has jumped

  const PlotImage& image_;
  int margin_, row_;
  float rise_ = 0;  // of the stroke, rows for each column
};

/// Moves `column` to the one from which the stroke goes on, across a break of up to X increment
/// columns. False when the trace ends.
bool FindContinuation(RunningTrace& trace, int& column, Rows& stroke, Continuation& next) {
  const int limit = column + trace.XIncrement;
  while (true) {
    next = FollowInto(InkColumn(trace.Ink, column), InkColumn(trace.Ink, column + 1),
                      trace.YIncrement, stroke);
    if (next.Top >= 0) return true;
    if (++column > limit || !GoesOn(trace, column)) return false;
  }
}

}  // namespace

TraceEnd TraceNew(const ExtractionContext& context, float x, float y) {
  if (!HasValues(context)) return {};
  RunningTrace trace(context, x, y);
  int column = trace.StartColumn;
  Rows stroke{trace.StartRow, trace.StartRow};
  FetchAhead ahead(trace, stroke.Top);
  for (; GoesOn(trace, column); ++column) {
    ScrollToColumn(trace, column);
    ahead.From(column, stroke);
    Continuation next;
    if (!FindContinuation(trace, column, stroke, next)) break;
    ScrollToRows(trace, stroke.Top, stroke.Bottom);
    const float centre = static_cast<float>(stroke.Top + stroke.Bottom) / 2;
    if (!EmitPoints(trace, {column, centre, stroke.Bottom, stroke.Top})) break;
    stroke = next;
  }
  return EndTrace(trace);
}

}  // namespace graphize
