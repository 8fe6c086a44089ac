#include "tracing/curve_tracer.h"

#include <algorithm>

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

/// Widens `stroke` to the ink of column `here` (its bounds then lie one row outside of it) and
/// looks where it goes on in column `next`.
Continuation FollowInto(const InkColumn& here, const InkColumn& next, int lastRow, int yIncrement,
                        Rows& stroke) {
  const int across =
      LowestContinuation(here, next, std::max(stroke.Top, 0), std::min(stroke.Bottom, lastRow));
  Continuation found{across, across};

  int row = stroke.Bottom, gap = 0;
  do {
    if (here[row]) {
      if (next[row]) found.Bottom = row;
      if (next[row + 1]) found.Bottom = row + 1;
      gap = 0;
    } else {
      ++gap;
    }
    ++row;
  } while (gap <= yIncrement && row <= lastRow);
  stroke.Bottom = row - gap;

  row = stroke.Top, gap = 0;
  do {
    if (here[row]) {
      if (next[row]) found.Top = row;
      if (next[row - 1]) found.Top = row - 1;
      gap = 0;
    } else {
      ++gap;
    }
    --row;
  } while (gap <= yIncrement && row >= 2);
  stroke.Top = row + gap;

  if (found.Top < 0) found.Top = found.Bottom;
  if (found.Bottom < 0) found.Bottom = found.Top;
  return found;
}

/// Has the memory fetch what will be read some columns on: pixels of a column lie far apart, and a
/// trace would wait for most of them. Each column asks for a share of the rows; all at once would
/// have to wait, too. (Inlined, because GCC drops calls of what only prefetches.)
[[gnu::always_inline]] inline void PrefetchAhead(const RunningTrace& trace, int column,
                                                 const Rows& stroke) {
  constexpr int kAhead = 12;      // columns
  constexpr int kShare = 8;       // a row in so many at each column
  constexpr int kMostRows = 128;  // of a tall stroke the upper end alone
  const PlotImage& image = trace.Context.Image;
  if (!image.Contains(column + kAhead, 0)) return;
  const int reach = trace.YIncrement + kAhead;  // the stroke rises or falls meanwhile
  const int first = std::max(stroke.Top - reach, 0);
  const int last = std::min({stroke.Bottom + reach, first + kMostRows, image.Height() - 1});
  for (int row = first + ((column - first) & (kShare - 1)); row <= last; row += kShare)
    __builtin_prefetch(image.Pixels.Row(row) + column + kAhead);
}

/// Moves `column` to the one from which the stroke goes on, across a break of up to X increment
/// columns. False when the trace ends.
bool FindContinuation(RunningTrace& trace, int& column, Rows& stroke, Continuation& next) {
  const int limit = column + trace.XIncrement;
  while (true) {
    const InkColumn here(trace.Ink, column);
    next = FollowInto(here, InkColumn(trace.Ink, column + 1), here.Rows() - 1, trace.YIncrement,
                      stroke);
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
  for (; GoesOn(trace, column); ++column) {
    ScrollToColumn(trace, column);
    PrefetchAhead(trace, column, stroke);
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
