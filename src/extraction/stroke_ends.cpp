#include "extraction/stroke_ends.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace graphize {

namespace {

constexpr int kFollowedRows = 8;
constexpr int kUpright = 14;  // rows: a column black so far out is crossed by an upright stroke

bool IsBlackAt(const BitMap& map, const LineBand& band, BandSide side, int column, int distance) {
  return band.Columns.Contains(column) && map.Get(column, band.RowBeyond(side, column, distance));
}

/// One side of a line, with the columns known in which an upright stroke leaves it.
class Beside {
 public:
  Beside(const BitMap& map, const LineBand& band, BandSide side)
      : map_(map), band_(band), side_(side) {
    for (int x = band.Columns.First; x <= band.Columns.Last; ++x)
      upright_.push_back(BlackBeyond(map, band, side, x, kUpright) >= kUpright ? 1 : 0);
  }

  bool IsUpright(int column) const {
    return band_.Columns.Contains(column) && upright_[column - band_.Columns.First] != 0;
  }
  bool IsBlack(int column, int distance) const {
    return IsBlackAt(map_, band_, side_, column, distance);
  }

  /// The black columns joined to `column` in row `distance`. With `flat`, upright strokes are not
  /// part of it, but it goes on behind them.
  Span Widen(Span columns, int distance, bool flat, int widest) const {
    for (const int step : {-1, 1}) {
      int& edge = step < 0 ? columns.First : columns.Last;
      for (int x = edge + step; columns.Length() <= widest && IsBlack(x, distance); x += step)
        if (!flat || !IsUpright(x)) edge = x;
    }
    return columns;
  }

  /// The columns of row `distance` that touch `inner` in the row before it. Empty where nothing
  /// does or where the stroke meets something much wider, such as another line.
  Span NextRow(Span inner, int distance, bool flat) const {
    const int widest = 4 * inner.Length() + 64;
    const int reach = band_.Sheared ? 2 : 1;
    Span window{inner.First - reach, inner.Last + reach};
    while (flat && IsUpright(window.First)) --window.First;
    while (flat && IsUpright(window.Last)) ++window.Last;
    Span next{window.Last + 1, window.First - 1};
    for (int x = window.First; x <= window.Last; ++x) {
      if (!IsBlack(x, distance) || (flat && IsUpright(x))) continue;
      next.First = std::min(next.First, x);
      next.Last = std::max(next.Last, x);
    }
    if (next.First > next.Last) return {};
    next = Widen(next, distance, flat, widest);
    return next.Length() > widest ? Span{} : next;
  }

 private:
  const BitMap& map_;
  const LineBand& band_;
  BandSide side_;
  std::vector<std::uint8_t> upright_;
};

StrokeEnd FollowAway(const BitMap& map, const LineBand& band, BandSide side, const Beside& beside,
                     Span columns, bool flat) {
  StrokeEnd end{.Side = side, .Columns = columns};
  Span rows[kFollowedRows + 1];
  rows[1] = columns;
  while (end.Height < kFollowedRows) {
    const Span next = beside.NextRow(rows[end.Height], end.Height + 1, flat);
    if (next.First > next.Last) break;
    rows[++end.Height] = next;
  }
  const auto middle = [&](int row) { return 0.5 * (rows[row].First + rows[row].Last); };
  if (end.Height >= 2) {
    int last = std::min(end.Height, 3);
    if (std::abs(middle(last) - middle(1)) <= 4) last = end.Height;
    end.Lean = (middle(last) - middle(1)) / (last - 1);
    end.Flattens = rows[1].Length() >= 1.4 * rows[2].Length() + 2;
  }
  if (end.IsShallow()) {
    for (int x = columns.First; x <= columns.Last; ++x)
      if (!beside.IsUpright(x))
        end.Thickness = std::max(end.Thickness, BlackBeyond(map, band, side, x, kUpright));
  }
  return end;
}

/// A flat stroke and upright ones that meet the line in the same place are ends of their own.
void AddEnds(const BitMap& map, const LineBand& band, BandSide side, const Beside& beside,
             Span columns, std::vector<StrokeEnd>& ends) {
  std::vector<Span> uprights, flats;
  for (int x = columns.First; x <= columns.Last; ++x) {
    std::vector<Span>& parts = beside.IsUpright(x) ? uprights : flats;
    if (!parts.empty() && parts.back().Last == x - 1)
      parts.back().Last = x;
    else
      parts.push_back({x, x});
  }
  // The ragged edges of an upright stroke are not a stroke of their own.
  const bool isFlat =
      std::any_of(flats.begin(), flats.end(), [](const Span& part) { return part.Length() >= 3; });
  if (uprights.empty() || !isFlat) {
    ends.push_back(FollowAway(map, band, side, beside, columns, false));
    return;
  }
  ends.push_back(
      FollowAway(map, band, side, beside, {flats.front().First, flats.back().Last}, true));
  for (const Span& upright : uprights)
    ends.push_back(FollowAway(map, band, side, beside, upright, false));
}

}  // namespace

int BlackBeyond(const BitMap& map, const LineBand& band, BandSide side, int column, int limit) {
  int rows = 0;
  while (rows < limit && IsBlackAt(map, band, side, column, rows + 1)) ++rows;
  return rows;
}

std::vector<StrokeEnd> FindStrokeEnds(const BitMap& map, const LineBand& band, BandSide side) {
  std::vector<StrokeEnd> ends;
  const Beside beside(map, band, side);
  for (int x = band.Columns.First; x <= band.Columns.Last; ++x) {
    if (!IsBlackAt(map, band, side, x, 1)) continue;
    Span columns{x, x};
    while (IsBlackAt(map, band, side, columns.Last + 1, 1)) ++columns.Last;
    AddEnds(map, band, side, beside, columns, ends);
    x = columns.Last;
  }
  return ends;
}

}  // namespace graphize
