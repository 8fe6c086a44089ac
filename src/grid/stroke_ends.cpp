#include "grid/stroke_ends.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "grid/upright_strokes.h"

namespace graphize {

namespace {

// Chosen on the plots of the tests and of the accuracy report, which show what a change does:
// curves of all thicknesses that meet lines at every angle, clean, turned and grainy.
constexpr int kFollowedRows = 8;  // enough to tell a lean of one column per row from upright
constexpr int kThickest = 14;     // rows: of a stroke that runs along the line
// How far aside a stroke is followed, in columns beyond twice its own: a row that is black for
// longer is another line.
constexpr int kFollowedAside = 40;
// A flat stroke beside upright ones is real when it leans more than the ragged edge of an upright
// one can, in columns per row, or has a stretch of its own, in columns.
constexpr double kRaggedLean = 3;
constexpr int kRaggedColumns = 3;
// A stroke whose middle moves no more than so many columns over its first rows is steep: its lean
// is measured over all its rows, because single pixels blur it over a few.
constexpr int kSteepColumns = 4;
// A side of the stroke comes nearer to the line when it recedes by so many columns from row to row,
// more than the line's own steps do; with a lean, in columns per row, it may do as much the other
// way.
constexpr int kStepOfLine = 2;
constexpr double kLeans = 0.5;
// A stroke that flattens is longer in its first row than its next one, times so much, by some
// columns: very flat ones by at least kVeryFlat.Longer, others, seen over all rows, by any.
constexpr double kLonger = 1.4;
struct FlatStroke {
  double Lean;    // columns per row
  int Columns;    // in the first row
  double Longer;  // columns
};
constexpr FlatStroke kVeryFlat{8, 16, 2}, kFlat{3, 5, 0.5};

/// The columns of a stroke in every row away from the line.
struct FollowedStroke {
  Span Rows[kFollowedRows + 1];  // from 1; empty where a row was left out
  int Height = 1;
};

/// Follows a stroke by region growing, from row to row away from the line, never back.
class Follower {
 public:
  Follower(const BitMap& map, const LineBand& band, BandSide side, const UprightStrokes& uprights)
      : map_(map), band_(band), side_(side), uprights_(uprights) {}

  /// From the columns next to the line. Upright strokes are not followed, but what goes on behind
  /// them is.
  FollowedStroke Run(Span columns) {
    const int reach = 2 * columns.Length() + kFollowedAside;
    columns_ = columns;
    window_ = {std::max(band_.Columns.First, columns.First - reach),
               std::min(band_.Columns.Last, columns.Last + reach)};
    seen_.assign(static_cast<std::size_t>(window_.Length()) * kOffsets, 0);
    stroke_ = {};
    stroke_.Rows[1] = columns;
    for (int x = columns.First; x <= columns.Last; ++x) {
      if (uprights_.IsPassed(x)) continue;
      const BlackRun rows = band_.RowsBeyond(side_, x, 1);
      for (int y = rows.Top; y <= rows.Bottom; ++y) Visit(x, y);
    }
    while (!open_.empty()) {
      const auto [x, y] = open_.back();
      open_.pop_back();
      Spread(x, y);
    }
    // A row that runs out of the window on both sides is something else, such as another line.
    for (int row = 2; row <= stroke_.Height; ++row) {
      if (stroke_.Rows[row].First > window_.First || stroke_.Rows[row].Last < window_.Last)
        continue;
      stroke_.Height = row - 1;
      break;
    }
    while (stroke_.Height > 1 && stroke_.Rows[stroke_.Height].IsEmpty()) --stroke_.Height;
    return stroke_;
  }

 private:
  static constexpr int kOffsets = kFollowedRows + 4;  // rows from the column's own edge

  int OffsetOf(int x, int y) const {
    return side_ == BandSide::Above ? band_.At(x).Top - y : y - band_.At(x).Bottom;
  }
  int DistanceOf(int x, int y) const {
    const BlackRun& hull = band_.Hull[x - band_.Columns.First];
    return std::max(1, side_ == BandSide::Above ? hull.Top - y : y - hull.Bottom);
  }

  void Visit(int x, int y) {
    if (!window_.Contains(x) || !map_.Get(x, y)) return;
    const int offset = OffsetOf(x, y), distance = DistanceOf(x, y);
    if (offset < 1 || offset >= kOffsets || distance > kFollowedRows) return;
    if (distance == 1 && !columns_.Contains(x)) return;  // another end of its own
    std::uint8_t& seen = seen_[static_cast<std::size_t>(x - window_.First) * kOffsets + offset];
    if (std::exchange(seen, 1) != 0) return;
    Span& row = stroke_.Rows[distance];
    row = row.IsEmpty() ? Span{x, x} : Span{std::min(row.First, x), std::max(row.Last, x)};
    stroke_.Height = std::max(stroke_.Height, distance);
    open_.push_back({x, y});
  }

  void Spread(int x, int y) {
    const int outward = side_ == BandSide::Above ? -1 : 1;
    Visit(x, y + outward);
    for (const int step : {-1, 1}) {
      int column = x + step;
      int hidden = 0;
      while (uprights_.IsPassed(column)) {
        column += step;
        ++hidden;
      }
      for (int row = 0; row <= 1 + hidden; ++row) Visit(column, y + row * outward);
    }
  }

  const BitMap& map_;
  const LineBand& band_;
  const BandSide side_;
  const UprightStrokes& uprights_;
  Span columns_, window_;
  std::vector<std::uint8_t> seen_;
  std::vector<std::pair<int, int>> open_;
  FollowedStroke stroke_;
};

/// One side of a line.
class Side {
 public:
  Side(const BitMap& map, const LineBand& band, BandSide side, double slope)
      : map_(map),
        band_(band),
        side_(side),
        uprights_(map, band, side, slope),
        follower_(map, band, side, uprights_) {}

  /// The ends in a stretch of black columns beside the line. A flat stroke and upright ones that
  /// meet the line in the same place are ends of their own.
  void AddEnds(Span columns, std::vector<StrokeEnd>& ends) {
    std::vector<Span> uprights, flats;
    for (int x = columns.First; x <= columns.Last; ++x) {
      std::vector<Span>& parts = uprights_.IsUpright(x) ? uprights : flats;
      if (!parts.empty() && parts.back().Last == x - 1)
        parts.back().Last = x;
      else
        parts.push_back({x, x});
    }
    if (!flats.empty()) {
      const StrokeEnd flat = Flat({flats.front().First, flats.back().Last});
      // The ragged edges of an upright stroke are not a stroke of their own.
      if (uprights.empty() || std::abs(flat.Lean) > kRaggedLean ||
          std::any_of(flats.begin(), flats.end(),
                      [](const Span& part) { return part.Length() >= kRaggedColumns; }))
        ends.push_back(flat);
      else
        uprights = {columns};
    }
    for (const Span& upright : uprights)
      ends.push_back(
          {.Side = side_, .Columns = upright, .Height = kFollowedRows, .IsUpright = true});
  }

 private:
  StrokeEnd Flat(Span columns) {
    StrokeEnd end{.Side = side_, .Columns = columns};
    const FollowedStroke stroke = follower_.Run(columns);
    end.Height = stroke.Height;
    if (end.Height == 1) {
      // A single row: it dips into the line on both sides.
      end.LeftRun = end.RightRun = columns.Length();
    } else {
      int next = 2;
      while (stroke.Rows[next].IsEmpty()) ++next;
      const auto middle = [&](int row) {
        return 0.5 * (stroke.Rows[row].First + stroke.Rows[row].Last);
      };
      int last = std::min(end.Height, std::max(next, 3));
      while (stroke.Rows[last].IsEmpty()) ++last;
      if (std::abs(middle(last) - middle(1)) <= kSteepColumns) last = end.Height;
      end.Lean = (middle(last) - middle(1)) / (last - 1);
      // The line's own steps blur a step of the stroke: then its lean decides.
      const double left = stroke.Rows[next].First - columns.First;
      const double right = columns.Last - stroke.Rows[next].Last;
      if (left >= kStepOfLine || (end.Lean > kLeans && left > -kStepOfLine))
        end.LeftRun = std::max(left / (next - 1), end.Lean);
      if (right >= kStepOfLine || (end.Lean < -kLeans && right > -kStepOfLine))
        end.RightRun = std::max(right / (next - 1), -end.Lean);
      const double longer = columns.Length() - kLonger * stroke.Rows[next].Length();
      const auto isLike = [&](const FlatStroke& flat) {
        return std::abs(end.Lean) >= flat.Lean && columns.Length() >= flat.Columns &&
               longer >= flat.Longer;
      };
      end.Flattens = isLike(kVeryFlat) || (end.Height == kFollowedRows && isLike(kFlat));
    }
    if (!end.IsShallow()) return end;
    for (int x = columns.First; x <= columns.Last; ++x)
      if (!uprights_.IsUpright(x))
        end.Thickness = std::max(end.Thickness, BlackBeyond(map_, band_, side_, x, kThickest));
    return end;
  }

  const BitMap& map_;
  const LineBand& band_;
  const BandSide side_;
  UprightStrokes uprights_;
  Follower follower_;
};

}  // namespace

int BlackBeyond(const BitMap& map, const LineBand& band, BandSide side, int column, int limit) {
  int rows = 0;
  while (rows < limit && IsBlackBeside(map, band, side, column, rows + 1)) ++rows;
  return rows;
}

Span Between(const StrokeEnd& a, const StrokeEnd& b) {
  return a.Columns.First <= b.Columns.First ? Span{a.Columns.Last + 1, b.Columns.First - 1}
                                            : Span{b.Columns.Last + 1, a.Columns.First - 1};
}

std::vector<StrokeEnd> FindStrokeEnds(const BitMap& map, const LineBand& band, BandSide side,
                                      double slope) {
  std::vector<StrokeEnd> ends;
  Side sideOfLine(map, band, side, slope);
  for (int x = band.Columns.First; x <= band.Columns.Last; ++x) {
    if (!IsBlackBeside(map, band, side, x, 1)) continue;
    Span columns{x, x};
    while (IsBlackBeside(map, band, side, columns.Last + 1, 1)) ++columns.Last;
    sideOfLine.AddEnds(columns, ends);
    x = columns.Last;
  }
  return ends;
}

}  // namespace graphize
