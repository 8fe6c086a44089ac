#include "tracing/smooth_tracer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <vector>

#include "base/numbers.h"
#include "tracing/course.h"
#include "tracing/ink_strokes.h"
#include "tracing/running_trace.h"

namespace graphize {

namespace {

/// Columns ahead in which a curve that is crossed must show itself again.
constexpr int kLongestCrossing = 8;
/// Columns over which it then must be seen to go on: more than half a symbol's width.
constexpr int kStillThere = 6;
/// Columns over which ink is taken to go on for good: more than a tick or half a symbol is long.
constexpr int kGoesOn = 16;
/// Rows by which an upright line at least exceeds the curve.
constexpr int kTall = 24;

/// A curve on its way through the picture.
struct FollowedCurve {
  const TracedInk& Picture;
  int XIncrement, YIncrement;
  int Threshold;  // rows: a greater change is a leap
  Course Way = {};
  Stroke Last = {};      // where it was seen last
  Stroke Ink = {};       // all ink there, also that of what crosses it
  int SeenAt = 0;        // the column
  bool Adjacent = true;  // Last is in the column before
};

/// What is black in a column near a curve.
struct FoundStroke {
  Stroke Ink;
  bool Touches;  // the curve as it was seen last
};

int ExtentAhead(const FollowedCurve& curve, const Stroke& stroke, int column, int longestBreak) {
  return ExtentOfInk(curve.Picture, stroke, column, 1, longestBreak, curve.YIncrement, kGoesOn);
}

int InkOnCourse(const InkColumn& ink, double wanted) {
  const int middle = static_cast<int>(std::lround(wanted));
  return NearestInk(ink, wanted, true, middle - 1, middle + 1);
}

/// The stroke nearest to the curve's course of those with ink from row `top` to row `bottom`.
/// Where some go on and others soon end, as the far side of a symbol does, one that goes on.
std::optional<Stroke> StrokeWithin(const FollowedCurve& curve, const InkColumn& ink, int column,
                                   int top, int bottom) {
  const double wanted = curve.Way.RowAt(column);
  const bool downward = curve.Way.Slope() >= 0;
  const int row = NearestInk(ink, wanted, downward, top, bottom);
  if (row < 0) return std::nullopt;
  const Stroke nearest = CollectStroke(ink, row, curve.YIncrement);
  std::vector<Stroke> strokes;
  const auto take = [&](const Stroke& stroke) { strokes.push_back(stroke); };
  const int apart = curve.YIncrement + 2;  // what is nearer belongs to it
  ForEachStroke(ink, top, std::min(bottom, nearest.Top - apart), curve.YIncrement, take);
  ForEachStroke(ink, std::max(top, nearest.Bottom + apart), bottom, curve.YIncrement, take);
  if (strokes.empty()) return nearest;

  const auto distance = [&](const Stroke& stroke) {
    const int there = NearestInk(ink, wanted, downward, std::max(stroke.Top, top),
                                 std::min(stroke.Bottom, bottom));
    return std::abs(there - wanted);
  };
  const auto extent = [&](const Stroke& stroke) {
    const bool onCourse = distance(stroke) <= 1.5;
    return ExtentAhead(curve, stroke, column, onCourse ? curve.XIncrement : 0);
  };
  Stroke best = nearest;
  int longest = extent(nearest);
  for (const Stroke& stroke : strokes) {
    const int length = extent(stroke);
    if (length < longest || (length == longest && distance(stroke) >= distance(best))) continue;
    best = stroke;
    longest = length;
  }
  return best;
}

/// The curve's ink in this column: what touches it, or lies within the Y increment of that; else
/// what is nearest to its course.
std::optional<FoundStroke> FindStroke(const FollowedCurve& curve, const InkColumn& ink,
                                      int column) {
  const auto within = [&](const Stroke& last, int reach) {
    return StrokeWithin(curve, ink, column, last.Top - reach, last.Bottom + reach);
  };
  if (curve.Adjacent) {
    if (const auto stroke = within(curve.Last, 1)) return FoundStroke{*stroke, true};
    if (const auto stroke = within(curve.Last, 1 + curve.YIncrement))
      return FoundStroke{*stroke, false};
    if (const auto stroke = within(curve.Ink, 1)) return FoundStroke{*stroke, false};
  }
  const double wanted = curve.Way.RowAt(column);
  const int last = ToInt32(curve.Way.Row()), ahead = ToInt32(wanted);
  const int reach = curve.Threshold + column - curve.SeenAt;
  const int row = NearestInk(ink, wanted, curve.Way.Slope() >= 0, std::min(last, ahead) - reach,
                             std::max(last, ahead) + reach);
  if (row < 0) return std::nullopt;
  return FoundStroke{CollectStroke(ink, row, curve.YIncrement), false};
}

/// The curve in `column` when it goes straight on, whatever else is black there: its ink does not
/// end for more than the X increment, soon it is seen on its course again, in two columns alone and
/// no thicker than before, and then goes on for `enough` columns.
std::optional<Stroke> GoingStraightOn(const FollowedCurve& curve, int column, int enough) {
  std::optional<Stroke> here;
  int missing = 0, alone = 0;
  for (int ahead = 0; ahead < kLongestCrossing + 2; ++ahead) {
    const InkColumn ink(curve.Picture, column + ahead);
    const double wanted = curve.Way.RowAt(column + ahead);
    const int row = InkOnCourse(ink, wanted);
    if (row < 0) {
      if (++missing > curve.XIncrement) return std::nullopt;
      continue;
    }
    missing = 0;
    const Stroke run = CollectStroke(ink, row, 0);
    if (run.Height() > curve.Way.Tallest()) continue;
    if (run.Height() < 0.5 * std::abs(curve.Way.Slope()) ||
        std::abs(run.Mean - wanted) > 1.5 + 0.25 * ahead)
      return std::nullopt;
    if (ahead == 0) here = run;
    if (++alone < 2) continue;
    const int rest = std::min(enough, curve.Picture.Image.Width() - 1 - column - ahead);
    if (ExtentOfInk(curve.Picture, run, column + ahead, 1, curve.XIncrement, 0, rest) < rest)
      return std::nullopt;
    if (here) return here;
    const double mean = curve.Way.RowAt(column);
    const int shift = static_cast<int>(std::lround(mean - curve.Way.Row()));
    return Stroke{curve.Last.Top + shift, curve.Last.Bottom + shift, mean};
  }
  return std::nullopt;
}

/// Whether ink that does not touch the curve is another's: it comes from farther left than the
/// curve has been missing, or lies off the curve's course, on which the curve shows itself again up
/// to column `limit`.
bool IsAnothers(const FollowedCurve& curve, const Stroke& stroke, int column, int limit) {
  const double deviation = std::abs(stroke.Mean - curve.Way.RowAt(column));
  const double slope = std::abs(curve.Way.Slope());
  const int missing = column - curve.SeenAt;
  const bool attached =
      missing == 1 && stroke.Top <= curve.Ink.Bottom + 1 && stroke.Bottom >= curve.Ink.Top - 1;
  constexpr int kLittle = 4;
  constexpr int kSteep = 5;  // rows per column: such a course leads anywhere
  if (!attached && (deviation > 1.5 || slope > kSteep) &&
      ExtentOfInk(curve.Picture, stroke, column, -1, 0, 0, kGoesOn) > missing + kLittle)
    return true;
  if (deviation <= curve.YIncrement + slope) return false;
  InkFront front(curve.Picture, stroke, curve.YIncrement);
  for (int next = column + 1; next <= limit; ++next) {
    front.Advance(next);
    const int row = InkOnCourse(InkColumn(curve.Picture, next), curve.Way.RowAt(next));
    if (row >= 0) return !front.Holds(row);
  }
  return false;
}

/// Whether the stroke is an upright line at which the curve ends, as at a frame: it exceeds the
/// curve by far on both sides, or on one and nothing goes on behind it.
bool IsUprightLine(const FollowedCurve& curve, const Stroke& stroke, int column) {
  const int above = curve.Last.Top - stroke.Top, below = stroke.Bottom - curve.Last.Bottom;
  if (std::max(above, below) <= kTall) return false;
  const double usual = kTall + 2 * curve.Way.Tallest();
  if (std::max(above, below) <= usual) return false;
  if (std::min(above, below) <= usual && ExtentAhead(curve, stroke, column, 0) >= kStillThere)
    return false;
  return !GoingStraightOn(curve, column, kGoesOn);
}

/// Takes the first stroke over. Where the user clicked is no part of the curve's course.
double Begin(FollowedCurve& curve, const Stroke& stroke, int column) {
  curve.Last = curve.Ink = stroke;
  curve.Way.Clear();
  curve.Way.Add(column, stroke.Mean, stroke.Height());
  return stroke.Mean;
}

/// Takes the stroke of this column over; its row is where the curve is in it.
double Follow(FollowedCurve& curve, const Stroke& stroke, int column) {
  curve.Ink = stroke;
  const double change = stroke.Mean - curve.Way.Row();
  const double deviation = stroke.Mean - curve.Way.RowAt(column);
  if (std::abs(deviation) > 1 + 0.25 * std::abs(curve.Way.Slope()) ||
      stroke.Height() > curve.Way.Tallest()) {
    if (const auto crossed = GoingStraightOn(curve, column, kStillThere)) {
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

TraceEnd TraceSmooth(const ExtractionContext& context, float x, float y) {
  if (!HasValues(context)) return {};
  RunningTrace trace(context, x, y);
  const int startRow = trace.StartRow;
  FollowedCurve curve{.Picture = trace.Ink,
                      .XIncrement = trace.XIncrement,
                      .YIncrement = trace.YIncrement,
                      .Threshold = 2 * trace.YIncrement,
                      .SeenAt = trace.StartColumn - 1};
  curve.Way.Add(curve.SeenAt, startRow, 1);
  curve.Last = curve.Ink = {startRow, startRow, static_cast<double>(startRow)};
  int limit = trace.StartColumn + trace.XIncrement;
  bool begun = false;
  for (int column = trace.StartColumn; column <= limit && GoesOn(trace, column); ++column) {
    const auto found = FindStroke(curve, InkColumn(trace.Ink, column), column);
    curve.Adjacent = false;
    if (!found) continue;
    const Stroke& stroke = found->Ink;
    if (begun && !found->Touches) {
      CaptureFound(trace);  // marks are no ink where it looks back
      if (IsAnothers(curve, stroke, column, limit)) continue;
    }
    if (begun && IsUprightLine(curve, stroke, column)) break;
    ScrollToColumn(trace, column);
    ScrollToRows(trace, stroke.Top - 1, stroke.Bottom + 1);
    const int centre =
        ToInt32(begun ? Follow(curve, stroke, column) : Begin(curve, stroke, column));
    begun = curve.Adjacent = true;
    curve.SeenAt = column;
    if (!EmitPoints(trace, {column, static_cast<float>(centre), stroke.Bottom + 1, stroke.Top - 1}))
      break;
    limit = column + 1 + trace.XIncrement;
  }
  return EndTrace(trace);
}

}  // namespace graphize
