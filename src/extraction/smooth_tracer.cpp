#include "extraction/smooth_tracer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/numbers.h"
#include "extraction/ink_column.h"
#include "extraction/running_trace.h"

namespace graphize {

namespace {

constexpr int kNone = -1;

/// The stroke of one column.
struct Stroke {
  int Top, Bottom;  // its first and last black row
  int Mean;         // of all its black rows
};

/// Where the curve is expected in the next column.
struct Expectation {
  int Row;
  bool Downward = true;  // breaks a tie: the way the curve last went
  int Top, Bottom;       // rows that touch the last stroke
};

/// The black row nearest to the expected one, from `top` to `bottom`.
int NearestInk(const InkColumn& column, const Expectation& expected, int top, int bottom) {
  const int reach = std::max(expected.Row - top, bottom - expected.Row);
  for (int distance = 0; distance <= reach; ++distance) {
    const int step = expected.Downward ? distance : -distance;
    for (const int row : {expected.Row + step, expected.Row - step})
      if (row >= top && row <= bottom && column[row]) return row;
  }
  return kNone;
}

/// Collects the ink around the black row `start`, stepping over up to `yIncrement` other rows.
Stroke CollectStroke(const InkColumn& column, int lastRow, int start, int yIncrement) {
  double sum = start;
  int count = 1;
  const auto walk = [&](int direction) {
    int last = start;
    for (int row = start + direction;
         row >= 0 && row <= lastRow && std::abs(row - last) <= yIncrement + 1; row += direction) {
      if (!column[row]) continue;
      sum += row;
      ++count;
      last = row;
    }
    return last;
  };
  const int bottom = walk(1), top = walk(-1);
  return {top, bottom, ToInt32(sum / count)};
}

/// Where the curve goes on after `stroke`.
void Expect(Expectation& expected, const Stroke& stroke, int threshold) {
  const int change = stroke.Mean - expected.Row;
  if (change != 0) expected.Downward = change > 0;
  const bool crossed =
      expected.Row - stroke.Top > threshold && stroke.Bottom - expected.Row > threshold;
  if (std::abs(change) <= threshold)
    expected.Row = stroke.Mean;
  else if (!crossed)
    expected.Row = change > 0 ? stroke.Bottom : stroke.Top;
  expected.Top = stroke.Top - 1;
  expected.Bottom = stroke.Bottom + 1;
}

/// A black row of the curve in this column: one that touches the last stroke, else one near the
/// current row.
int FindInk(const InkColumn& column, int lastRow, const Expectation& expected, bool adjacent,
            int reach) {
  if (adjacent) {
    const int row = NearestInk(column, expected, expected.Top, expected.Bottom);
    if (row != kNone) return row;
  }
  return NearestInk(column, expected, std::max(expected.Row - reach, 0),
                    std::min(expected.Row + reach, lastRow));
}

}  // namespace

void TraceSmooth(const ExtractionContext& context, float x, float y) {
  if (!HasValues(context)) return;
  RunningTrace trace(context);
  const PlotImage& image = context.Image;
  const int lastRow = image.Height() - 1;
  const int threshold = 2 * trace.YIncrement;

  const int startRow = ToInt16(y);
  Expectation expected{.Row = startRow, .Top = startRow - 1, .Bottom = startRow + 1};
  int limit = ToInt16(x) + trace.XIncrement;
  bool adjacent = true;
  for (int column = ToInt16(x); column <= limit && GoesOn(trace, column); ++column) {
    const InkColumn ink(image, column);
    const int row = FindInk(ink, lastRow, expected, adjacent, threshold + 1);
    adjacent = row != kNone;
    if (row == kNone) continue;
    const Stroke stroke = CollectStroke(ink, lastRow, row, trace.YIncrement);
    ScrollToColumn(trace, column);
    ScrollToRows(trace, stroke.Top - 1, stroke.Bottom + 1);
    if (!EmitPoints(trace,
                    {column, static_cast<float>(stroke.Mean), stroke.Bottom + 1, stroke.Top - 1}))
      break;
    Expect(expected, stroke, threshold);
    limit = column + 1 + trace.XIncrement;
  }
  ShowResult(context);
}

}  // namespace graphize
