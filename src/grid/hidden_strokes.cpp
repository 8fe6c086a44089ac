#include "grid/hidden_strokes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace graphize {

namespace {

// Chosen, like those of the ends and their links, on the plots of the tests and of the accuracy
// report.
constexpr int kThickestStroke = 40;  // rows: beyond this a shape is no stroke but a blot
constexpr double kLeastMargin =
    0.5;                           // columns to either side of a crossing's edges: their rounding
constexpr double kLeastRun = 0.1;  // columns per row: an upright stroke's, so that arcs are finite
// A thickness is a stroke's own, and no bump, when it lasts for so many columns and for so large a
// part of them, one in so many.
constexpr int kLastingColumns = 3, kLastingPart = 10;
// How far a stroke that flattens is kept inside the line, in columns times those of its last row
// that shows: an exponential comes within a hundredth of a row of its asymptote in five, a step
// that levels off on a line may run on for the rest of the plot.
constexpr int kLongestSinking = 30;
constexpr int kLeastHeight = 3;  // rows: a steep stroke's that ends at the line; less is roughness

int Rounded(double value) {
  return static_cast<int>(std::lround(value));
}

}  // namespace

HiddenStrokes::HiddenStrokes(const BitMap& map, const LineBand& band)
    : map_(map), band_(band), rows_(band.Rows.size(), 0) {}

bool HiddenStrokes::IsKept(int column, int row) const {
  return ((rows_[column - band_.Columns.First] >> (row - band_.At(column).Top)) & 1u) != 0;
}

void HiddenStrokes::Keep(BandSide side, int column, int first, int last) {
  if (!band_.Columns.Contains(column) || first > last) return;
  const BlackRun& band = band_.At(column);
  const int thickness = band.Thickness();
  const auto rowOfMap = [&](int inward) {
    return side == BandSide::Above ? band.Top + inward : band.Bottom - inward;
  };
  const auto isBlack = [&](int inward) {
    return inward >= 0 && inward < thickness && map_.Get(column, rowOfMap(inward));
  };
  std::uint64_t& kept = rows_[column - band_.Columns.First];
  const auto keep = [&](int inward) { kept |= std::uint64_t{1} << (rowOfMap(inward) - band.Top); };
  bool any = false;
  for (int inward = std::max(first, 0); inward <= std::min(last, thickness - 1); ++inward) {
    if (!isBlack(inward)) continue;
    keep(inward);
    any = true;
  }
  for (int aside = 1; !any && aside < thickness + std::abs(first) + std::abs(last); ++aside) {
    for (const int inward : {first - aside, last + aside}) {
      if (any || !isBlack(inward)) continue;
      keep(inward);
      any = true;
    }
  }
}

void HiddenStrokes::KeepAlong(BandSide side, Span columns, int thickness,
                              std::vector<double> firstRows) {
  // Corrections at the columns that show the stroke, those in between in proportion.
  std::vector<double> corrections(firstRows.size(), 0);
  int known = -1;
  double before = 0;
  const auto fill = [&](int next, double after) {
    for (int i = known + 1; i < next; ++i)
      corrections[i] = before + (after - before) * (i - known) / (next - known);
  };
  for (int i = 0; i < columns.Length(); ++i) {
    const BlackRun& band = band_.At(columns.First + i);
    int black = 0;
    double rows = 0;
    for (int row = 0; row < band.Thickness(); ++row) {
      if (!map_.Get(columns.First + i,
                    side == BandSide::Above ? band.Top + row : band.Bottom - row))
        continue;
      ++black;
      rows += row;
    }
    if (black == 0 || black == band.Thickness()) continue;
    corrections[i] = rows / black - 0.5 * (thickness - 1) - firstRows[i];
    fill(i, corrections[i]);
    before = corrections[i];
    known = i;
  }
  fill(columns.Length(), 0);
  for (int i = 0; i < columns.Length(); ++i) {
    const int first = Rounded(firstRows[i] + corrections[i]);
    Keep(side, columns.First + i, first, first + thickness - 1);
  }
}

void HiddenStrokes::KeepCrossing(const StrokeEnd& left, const StrokeEnd& right) {
  const Span gap = Between(left, right);
  const int thickness = std::max(left.Thickness, right.Thickness);
  if (gap.Length() > 1 && (left.IsShallow() || right.IsShallow())) {
    // It shows its last row before the gap and its first one behind it.
    std::vector<double> rows;
    for (int x = gap.First; x <= gap.Last; ++x) {
      const double way = (x - gap.First + 1.0) / (gap.Length() + 1.0);
      rows.push_back(-1 + way * (ThicknessAt(x) - thickness + 2));
    }
    KeepAlong(left.Side, gap, thickness, std::move(rows));
    return;
  }
  const Span reach{std::min(left.Columns.First, right.Columns.First),
                   std::max(left.Columns.Last, right.Columns.Last)};
  for (int x = reach.First; x <= reach.Last; ++x) {
    const int rows = ThicknessAt(x);
    // No column of the way between may be left out.
    const double margin = std::max(kLeastMargin, 0.5 * (gap.Length() + 1) / (rows + 1));
    for (int row = 0; row < rows; ++row) {
      const double part = (row + 1.0) / (rows + 1.0);
      const double first = left.Columns.First + part * (right.Columns.First - left.Columns.First);
      const double last = left.Columns.Last + part * (right.Columns.Last - left.Columns.Last);
      if (x >= first - margin && x <= last + margin) Keep(left.Side, x, row, row);
    }
  }
}

void HiddenStrokes::KeepTouch(const StrokeEnd& left, const StrokeEnd& right) {
  const Span gap = Between(left, right);
  if (!left.IsShallow() && !right.IsShallow()) {
    // The tip of a peak.
    for (int x = left.Columns.First; x <= right.Columns.Last; ++x)
      Keep(left.Side, x, 0, ThicknessAt(x) - 1);
    return;
  }
  const double run = std::max(kLeastRun, 0.5 * (std::max(left.RightRun, std::abs(left.Lean)) +
                                                std::max(right.LeftRun, std::abs(right.Lean))));
  const int thickness = std::max(left.Thickness, right.Thickness);
  std::vector<double> rows;
  for (int x = gap.First; x <= gap.Last; ++x) {
    const double way = (x - gap.First + 0.5) / gap.Length();
    const double depth = std::clamp(gap.Length() / (4 * run), 0.0, ThicknessAt(x) - 1.0);
    rows.push_back(depth * 4 * way * (1 - way) - thickness + 1);
  }
  KeepAlong(left.Side, gap, thickness, std::move(rows));
}

int HiddenStrokes::FullThickness(const StrokeEnd& end) const {
  // The greatest thickness that it shows for more than an instant.
  std::vector<int> columns(kThickestStroke + 1, 0);
  for (int x = end.Columns.First; x <= end.Columns.Last; ++x)
    ++columns[BlackBeyond(map_, band_, end.Side, x, kThickestStroke)];
  const int lasting = std::max(kLastingColumns, end.Columns.Length() / kLastingPart);
  int thickness = kThickestStroke;
  for (int shown = columns[thickness]; thickness > 1 && shown < lasting;)
    shown += columns[--thickness];
  return thickness;
}

void HiddenStrokes::KeepSunkenPart(const StrokeEnd& end) {
  if (!end.IsShallow()) return;
  const int thickness = FullThickness(end);
  if (thickness >= kThickestStroke) return;
  for (int x = end.Columns.First; x <= end.Columns.Last; ++x)
    Keep(end.Side, x, 0, thickness - BlackBeyond(map_, band_, end.Side, x, thickness) - 1);
}

void HiddenStrokes::KeepFoot(const StrokeEnd& end) {
  for (int x = end.Columns.First; x <= end.Columns.Last; ++x) {
    for (int row = 0; row < ThicknessAt(x); ++row)
      Keep(end.Side, x - Rounded(end.Lean * (row + 1)), row, row);
  }
}

void HiddenStrokes::KeepSinking(const StrokeEnd& end, int step,
                                const std::vector<StrokeEnd>& ends) {
  const double run = std::max(1.0, step > 0 ? end.RightRun : end.LeftRun);
  const int start = (step > 0 ? end.Columns.Last : end.Columns.First) + step;
  const auto mayComeOut = [&](const StrokeEnd& other, int x) {
    return &other != &end && other.Columns.Contains(x) &&
           (other.IsShallow() || EndsAtLine(other, ends));
  };
  for (int column = 0; column <= kLongestSinking * run; ++column) {
    const int x = start + step * column;
    if (std::any_of(ends.begin(), ends.end(),
                    [&](const StrokeEnd& other) { return mayComeOut(other, x); }))
      return;
    if (!band_.Columns.Contains(x) || !IsBlackIn(map_, band_, x)) return;
    const int deepest = end.Flattens ? end.Thickness - 1 : static_cast<int>(column / run);
    if (deepest - end.Thickness + 1 >= ThicknessAt(x)) return;
    Keep(end.Side, x, deepest - end.Thickness + 1, deepest);
  }
}

bool HiddenStrokes::EndsAtLine(const StrokeEnd& end, const std::vector<StrokeEnd>& ends) const {
  if (end.Height < kLeastHeight) return false;
  return std::none_of(ends.begin(), ends.end(), [&](const StrokeEnd& other) {
    return other.Side != end.Side &&
           Between(end, other).Length() <= 2 * ThicknessAt(end.Columns.First);
  });
}

}  // namespace graphize
