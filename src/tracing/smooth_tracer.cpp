#include "tracing/smooth_tracer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "base/numbers.h"
#include "tracing/course.h"
#include "tracing/ink_column.h"
#include "tracing/running_trace.h"

namespace graphize {

namespace {

constexpr int kNone = -1;
/// Columns ahead in which a curve that is crossed must show itself again.
constexpr int kLongestCrossing = 8;

/// The ink of one column that is taken for the curve.
struct Stroke {
  int Top, Bottom;  // its first and last black row
  double Mean;      // of all its black rows

  int Height() const { return Bottom - Top + 1; }
};

/// A curve on its way through the picture.
struct FollowedCurve {
  const PlotImage& Image;
  int XIncrement, YIncrement;
  int Threshold;  // rows: a greater change is a leap
  Course Way = {};
  Stroke Last = {};      // where it was seen last
  bool Adjacent = true;  // in the column before

  int LastRow() const { return Image.Height() - 1; }
};

/// The black row nearest to `wanted`, from `top` to `bottom`; of two, the one ahead on its way.
int NearestInk(const InkColumn& column, double wanted, bool downward, int top, int bottom) {
  const int middle = static_cast<int>(std::lround(wanted));
  const int reach = std::max(middle - top, bottom - middle);
  for (int distance = 0; distance <= reach; ++distance) {
    const int step = downward ? distance : -distance;
    for (const int row : {middle + step, middle - step})
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
  return {top, bottom, sum / count};
}

/// A black row of the curve in this column: one that touches the last stroke, else one near the
/// row where it was.
int FindInk(const FollowedCurve& curve, const InkColumn& ink, int column) {
  const double wanted = curve.Way.RowAt(column);
  const bool downward = curve.Way.Slope() >= 0;
  if (curve.Adjacent) {
    const int row = NearestInk(ink, wanted, downward, curve.Last.Top - 1, curve.Last.Bottom + 1);
    if (row != kNone) return row;
  }
  const int last = ToInt32(curve.Way.Row()), reach = curve.Threshold + 1;
  return NearestInk(ink, wanted, downward, std::max(last - reach, 0),
                    std::min(last + reach, curve.LastRow()));
}

/// The curve in `column` when it goes straight on, whatever else is black there: its ink does not
/// end for more than the X increment, and soon it is seen on its course again, alone and no thicker
/// than before.
std::optional<Stroke> GoingStraightOn(const FollowedCurve& curve, int column) {
  int missing = 0;
  for (int ahead = 0; ahead <= kLongestCrossing; ++ahead) {
    const InkColumn ink(curve.Image, column + ahead);
    const double wanted = curve.Way.RowAt(column + ahead);
    const int middle = static_cast<int>(std::lround(wanted));
    const int row = NearestInk(ink, wanted, true, middle - 1, middle + 1);
    if (row == kNone) {
      if (++missing > curve.XIncrement) return std::nullopt;
      continue;
    }
    missing = 0;
    const Stroke run = CollectStroke(ink, curve.LastRow(), row, 0);
    if (run.Height() > curve.Way.Tallest()) continue;
    if (run.Height() < 0.5 * std::abs(curve.Way.Slope()) ||
        std::abs(run.Mean - wanted) > 1.5 + 0.25 * ahead)
      return std::nullopt;
    if (ahead == 0) return run;
    const double here = curve.Way.RowAt(column);
    const int shift = static_cast<int>(std::lround(here - curve.Way.Row()));
    return Stroke{curve.Last.Top + shift, curve.Last.Bottom + shift, here};
  }
  return std::nullopt;
}

/// Whether ink that does not touch the curve is another's: it lies off the curve's course, on which
/// the curve shows itself again up to column `limit`.
bool IsAnothers(const FollowedCurve& curve, const Stroke& stroke, int column, int limit) {
  if (std::abs(stroke.Mean - curve.Way.RowAt(column)) <= curve.YIncrement) return false;
  for (int next = column + 1; next <= limit; ++next) {
    const int middle = static_cast<int>(std::lround(curve.Way.RowAt(next)));
    const InkColumn ink(curve.Image, next);
    if (ink[middle] || ink[middle - 1] || ink[middle + 1]) return true;
  }
  return false;
}

/// Takes the first stroke over. Where the user clicked is no part of the curve's course.
double Begin(FollowedCurve& curve, const Stroke& stroke, int column) {
  curve.Adjacent = true;
  curve.Last = stroke;
  curve.Way.Clear();
  curve.Way.Add(column, stroke.Mean, stroke.Height());
  return stroke.Mean;
}

/// Takes the stroke of this column over; its row is where the curve is in it.
double Follow(FollowedCurve& curve, const Stroke& stroke, int column) {
  curve.Adjacent = true;
  const double change = stroke.Mean - curve.Way.Row();
  const double deviation = stroke.Mean - curve.Way.RowAt(column);
  if (std::abs(deviation) > 1 + 0.25 * std::abs(curve.Way.Slope()) ||
      stroke.Height() > curve.Way.Tallest()) {
    if (const auto crossed = GoingStraightOn(curve, column)) {
      curve.Last = *crossed;
      curve.Way.Add(column, crossed->Mean, crossed->Height());
      return std::abs(stroke.Mean - crossed->Mean) > curve.YIncrement ? crossed->Mean : stroke.Mean;
    }
  }
  const bool isLeap = std::abs(change) > curve.Threshold && std::abs(deviation) > curve.Threshold;
  curve.Last = stroke;
  if (isLeap) curve.Way.Clear();
  const double row = !isLeap ? stroke.Mean : change > 0 ? stroke.Bottom : stroke.Top;
  curve.Way.Add(column, row, stroke.Height());
  return stroke.Mean;
}

}  // namespace

void TraceSmooth(const ExtractionContext& context, float x, float y) {
  if (!HasValues(context)) return;
  RunningTrace trace(context, x, y);
  const int startRow = trace.StartRow;
  FollowedCurve curve{.Image = context.Image,
                      .XIncrement = trace.XIncrement,
                      .YIncrement = trace.YIncrement,
                      .Threshold = 2 * trace.YIncrement};
  int limit = trace.StartColumn + trace.XIncrement;
  curve.Way.Add(trace.StartColumn - 1, startRow, 1);
  curve.Last = {startRow, startRow, static_cast<double>(startRow)};
  bool found = false;
  for (int column = trace.StartColumn; column <= limit && GoesOn(trace, column); ++column) {
    const InkColumn ink(context.Image, column);
    const int row = FindInk(curve, ink, column);
    const bool touches =
        curve.Adjacent && row >= curve.Last.Top - 1 && row <= curve.Last.Bottom + 1;
    curve.Adjacent = false;
    if (row == kNone) continue;
    const Stroke stroke = CollectStroke(ink, curve.LastRow(), row, trace.YIncrement);
    if (found && !touches && IsAnothers(curve, stroke, column, limit)) continue;
    ScrollToColumn(trace, column);
    ScrollToRows(trace, stroke.Top - 1, stroke.Bottom + 1);
    const int centre =
        ToInt32(found ? Follow(curve, stroke, column) : Begin(curve, stroke, column));
    found = true;
    if (!EmitPoints(trace, {column, static_cast<float>(centre), stroke.Bottom + 1, stroke.Top - 1}))
      break;
    limit = column + 1 + trace.XIncrement;
  }
  EndTrace(trace);
}

}  // namespace graphize
