#include "grid/line_band.h"

#include <algorithm>
#include <cmath>

namespace graphize {

namespace {

/// The middle one of `values`, which is reordered.
int MiddleOf(std::vector<int>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The rows of a clean column, made good where it is thin or, for a moment, thick.
BlackRun FullRows(const GridLine& line, int column) {
  const BlackRun& run = line.Runs[column];
  const int missing = line.Thickness - run.Thickness();
  if (missing == 0 || (missing < 0 && line.Kinds[column] != ColumnKind::Ragged)) return run;
  const int top = static_cast<int>(std::lround(line.RowAt(column) - 0.5 * (line.Thickness - 1)));
  const int other = run.Top - missing;
  const int fitting = std::clamp(top, std::min(run.Top, other), std::max(run.Top, other));
  return {fitting, fitting + line.Thickness - 1};
}

/// The line's rows between two clean columns.
class Bridge {
 public:
  /// `left` and `right` are the nearest clean columns on either side, not both empty.
  Bridge(const GridLine& line, const std::vector<int>& left, const std::vector<int>& right)
      : line_(line) {
    std::vector<int> thicknesses;
    for (const auto* columns : {&left, &right})
      for (const int x : *columns) thicknesses.push_back(FullRows(line, x).Thickness());
    thickness_ = MiddleOf(thicknesses);
    const int leftTop = TopOf(left.empty() ? right : left);
    const int rightTop = TopOf(right.empty() ? left : right);
    highest_ = std::min(leftTop, rightTop);
    lowest_ = std::max(leftTop, rightTop);
    oneSided_ = left.empty() || right.empty();
  }

  /// The line goes from one row to the next somewhere in between.
  BlackRun At(int x) const {
    int top = static_cast<int>(std::lround(line_.RowAt(x) - 0.5 * (thickness_ - 1)));
    if (!oneSided_) top = std::clamp(top, highest_, lowest_);
    return {top, top + thickness_ - 1};
  }

 private:
  int TopOf(const std::vector<int>& columns) const {
    std::vector<int> tops;
    for (const int x : columns) tops.push_back(FullRows(line_, x).Top);
    return MiddleOf(tops);
  }

  const GridLine& line_;
  int thickness_ = 1;
  int highest_ = 0, lowest_ = 0;  // tops
  bool oneSided_ = false;
};

/// Where the line steps from one row to the next, a stroke may enter it from the side.
void AddHull(LineBand& band) {
  band.Hull = band.Rows;
  for (int x = band.Columns.First; x <= band.Columns.Last; ++x) {
    BlackRun& here = band.Hull[x - band.Columns.First];
    for (const int neighbour : {x - 1, x + 1}) {
      if (!band.Columns.Contains(neighbour)) continue;
      here.Top = std::min(here.Top, band.At(neighbour).Top);
      here.Bottom = std::max(here.Bottom, band.At(neighbour).Bottom);
    }
  }
}

LineBand RowsOf(const GridLine& line) {
  constexpr int kNeighbours = 5;
  LineBand band{.Columns = line.Columns, .Rows = {}, .Hull = {}};
  std::vector<int> clean;
  for (int x = line.Columns.First; x <= line.Columns.Last; ++x)
    if (line.IsClean(x)) clean.push_back(x);
  const auto count = static_cast<std::ptrdiff_t>(clean.size());

  std::ptrdiff_t next = 0;  // the first clean column not left of x
  for (int x = line.Columns.First; x <= line.Columns.Last;) {
    if (next < count && clean[next] == x) {
      band.Rows.push_back(FullRows(line, x++));
      ++next;
      continue;
    }
    const int end = next < count ? clean[next] : line.Columns.Last + 1;
    if (count == 0) {
      for (; x < end; ++x) {
        const int top = static_cast<int>(std::lround(line.RowAt(x) - 0.5 * (line.Thickness - 1)));
        band.Rows.push_back({top, top + line.Thickness - 1});
      }
      continue;
    }
    const std::vector<int> left(clean.begin() + std::max<std::ptrdiff_t>(0, next - kNeighbours),
                                clean.begin() + next);
    const std::vector<int> right(clean.begin() + next,
                                 clean.begin() + std::min(count, next + kNeighbours));
    const Bridge bridge(line, left, right);
    for (; x < end; ++x) band.Rows.push_back(bridge.At(x));
  }
  return band;
}

}  // namespace

BlackRun LineBand::RowsBeyond(BandSide side, int column, int distance) const {
  const BlackRun& hull = Hull[column - Columns.First];
  if (side == BandSide::Above)
    return {hull.Top - distance, distance > 1 ? hull.Top - distance : At(column).Top - 1};
  return {distance > 1 ? hull.Bottom + distance : At(column).Bottom + 1, hull.Bottom + distance};
}

bool IsBlackBeside(const BitMap& map, const LineBand& band, BandSide side, int column,
                   int distance) {
  if (!band.Columns.Contains(column)) return false;
  const BlackRun rows = band.RowsBeyond(side, column, distance);
  for (int y = rows.Top; y <= rows.Bottom; ++y)
    if (map.Get(column, y)) return true;
  return false;
}

bool IsBlackIn(const BitMap& map, const LineBand& band, int column) {
  const BlackRun& rows = band.At(column);
  for (int y = rows.Top; y <= rows.Bottom; ++y)
    if (map.Get(column, y)) return true;
  return false;
}

LineBand BandOf(const GridLine& line) {
  LineBand band = RowsOf(line);
  AddHull(band);
  return band;
}

}  // namespace graphize
