#include "extraction/stroke_protection.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "extraction/stroke_ends.h"

namespace graphize {

namespace {

/// Which rows of the band stay, a bit per row of every column; bit 0 is the band's top row.
class KeptRows {
 public:
  explicit KeptRows(const LineBand& band) : band_(band), rows_(band.Rows.size(), 0) {}

  /// Row `inward` seen from `side`; outside the band nothing happens.
  void Keep(BandSide side, int column, int inward) {
    if (!band_.Columns.Contains(column)) return;
    const int thickness = band_.At(column).Thickness();
    if (inward < 0 || inward >= thickness) return;
    const int row = side == BandSide::Above ? inward : thickness - 1 - inward;
    rows_[column - band_.Columns.First] |= std::uint64_t{1} << row;
  }
  bool IsKept(int column, int row) const {
    return ((rows_[column - band_.Columns.First] >> row) & 1u) != 0;
  }

 private:
  const LineBand& band_;
  std::vector<std::uint64_t> rows_;
};

/// The columns between two ends, empty (or turned round) when they overlap.
Span Between(const Span& a, const Span& b) {
  return a.First <= b.First ? Span{a.Last + 1, b.First - 1} : Span{b.Last + 1, a.First - 1};
}

class Protection {
 public:
  Protection(const BitMap& map, const GridLine& line)
      : map_(map), line_(line), band_(BandOf(line)), kept_(band_) {}

  std::vector<MapPixel> Run() {
    above_ = FindStrokeEnds(map_, band_, BandSide::Above);
    below_ = FindStrokeEnds(map_, band_, BandSide::Below);
    DropBumps(above_);
    DropBumps(below_);
    FindLinks();
    for (const Link& link : links_) Follow(link);
    for (const auto* ends : {&above_, &below_})
      for (const StrokeEnd& end : *ends) KeepSunkenPart(end);
    KeepUnlinked(above_, aboveLinked_);
    KeepUnlinked(below_, belowLinked_);
    return Rest();
  }

 private:
  /// Two ends of one stroke: on opposite sides it crosses the line, on the same side it touches it.
  struct Link {
    BandSide FirstSide = BandSide::Above, SecondSide = BandSide::Above;
    std::size_t First = 0, Second = 0;
    double Cost = 0;
  };
  struct Linked {
    bool Left = false, Right = false;
    bool Any() const { return Left || Right; }
  };

  const StrokeEnd& End(BandSide side, std::size_t i) const {
    return side == BandSide::Above ? above_[i] : below_[i];
  }
  std::vector<Linked>& LinkedOf(BandSide side) {
    return side == BandSide::Above ? aboveLinked_ : belowLinked_;
  }
  int Thickness() const { return line_.Thickness; }

  /// Roughness of the line's edge, low and short, is the line's.
  void DropBumps(std::vector<StrokeEnd>& ends) {
    const bool rough = line_.Thickest > line_.Thinnest;
    const int height = rough ? line_.Thickest - line_.Thinnest : 1;
    const int length = rough ? 6 : 4;
    std::erase_if(ends, [&](const StrokeEnd& end) {
      if (end.Height > height || end.Columns.Length() > length) return false;
      for (int x = end.Columns.First; x <= end.Columns.Last; ++x) {
        const int rows = BlackBeyond(map_, band_, end.Side, x, height);
        for (int row = 1; row <= rows; ++row)
          bumps_.push_back({x, band_.RowBeyond(end.Side, x, row)});
      }
      return true;
    });
  }

  /// Whether the way between two ends is black in the line's rows, as a hidden stroke must be.
  bool IsBlackBetween(Span columns) const {
    int black = 0;
    for (int x = columns.First; x <= columns.Last; ++x) {
      const BlackRun& rows = band_.At(x);
      for (int y = rows.Top; y <= rows.Bottom; ++y) {
        if (!map_.Get(x, y)) continue;
        ++black;
        break;
      }
    }
    return columns.Length() <= 0 || black * 10 >= columns.Length() * 8;
  }

  /// How much wider one end is than the other, as a logarithm.
  static double Unlikeness(const StrokeEnd& a, const StrokeEnd& b) {
    return std::abs(std::log(static_cast<double>(a.Columns.Length()) / b.Columns.Length()));
  }

  /// How badly two ends on opposite sides match as one stroke; negative: not at all.
  double CrossingCost(const StrokeEnd& a, const StrokeEnd& b) const {
    const Span gap = Between(a.Columns, b.Columns);
    if (gap.Length() <= 1) return std::max(0, gap.Length()) * 0.1 + 0.05 * Unlikeness(a, b);
    const int step = a.Middle() < b.Middle() ? 1 : -1;
    // Seen from the gap both lead away from it.
    if (a.Lean * step > 0.5 || b.Lean * step < -0.5) return -1;
    const double run = std::max(1.0, 0.5 * (RunOf(a, b) + RunOf(b, a)));
    const double expected = run * (Thickness() + 1);
    const double ratio = (std::abs(a.Middle() - b.Middle()) + 1) / (expected + 1);
    if (ratio > 12 || ratio < 0.3) return -1;
    if (run < 3 && ratio > 3) return -1;
    const double turn = std::abs(std::log((RunOf(a, b) + 1) / (RunOf(b, a) + 1)));
    return turn > 2.5 ? -1 : 0.2 + std::abs(std::log(ratio)) + 0.3 * turn;
  }

  /// The same for two ends on one side, `a` left of `b`: the stroke dips into the line between
  /// them.
  double TouchCost(const StrokeEnd& a, const StrokeEnd& b) const {
    const Span gap = Between(a.Columns, b.Columns);
    if (gap.Length() < 1) return -1;
    if (!a.IsIsland() && a.Lean >= 0) return -1;
    if (!b.IsIsland() && b.Lean <= 0) return -1;
    const double run = std::max(RunOf(a, b), RunOf(b, a));
    const double depth = gap.Length() / (4 * run);
    if (depth > Thickness() + 1) return -1;
    return 0.3 + depth / (Thickness() + 1) + 0.2 * std::abs(std::log(RunOf(a, b) / RunOf(b, a)));
  }

  /// Columns per row of the stroke at `end`; an island shows none: there it is the other end's, or
  /// at least what the island is long.
  static double RunOf(const StrokeEnd& end, const StrokeEnd& other) {
    if (!end.IsIsland()) return std::max(std::abs(end.Lean), 0.05);
    const double length = end.Columns.Length();
    return other.IsIsland() ? length : std::max(length, std::abs(other.Lean));
  }

  void FindLinks() {
    aboveLinked_.assign(above_.size(), {});
    belowLinked_.assign(below_.size(), {});
    std::vector<Link> candidates;
    const auto add = [&](BandSide firstSide, std::size_t i, BandSide secondSide, std::size_t j,
                         double cost) {
      if (cost < 0) return;
      if (!IsBlackBetween(Between(End(firstSide, i).Columns, End(secondSide, j).Columns))) return;
      candidates.push_back({firstSide, secondSide, i, j, cost});
    };
    for (std::size_t i = 0; i < above_.size(); ++i)
      for (std::size_t j = 0; j < below_.size(); ++j)
        add(BandSide::Above, i, BandSide::Below, j, CrossingCost(above_[i], below_[j]));
    for (const BandSide side : {BandSide::Above, BandSide::Below}) {
      const std::vector<StrokeEnd>& ends = side == BandSide::Above ? above_ : below_;
      for (std::size_t i = 0; i < ends.size(); ++i)
        for (std::size_t j = i + 1; j < ends.size(); ++j)
          add(side, i, side, j, TouchCost(ends[i], ends[j]));
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Link& a, const Link& b) { return a.Cost < b.Cost; });
    for (const Link& link : candidates) Accept(link);
  }

  void Accept(const Link& link) {
    const StrokeEnd& a = End(link.FirstSide, link.First);
    const StrokeEnd& b = End(link.SecondSide, link.Second);
    Linked& ofA = LinkedOf(link.FirstSide)[link.First];
    Linked& ofB = LinkedOf(link.SecondSide)[link.Second];
    if (Between(a.Columns, b.Columns).Length() <= 1) {
      // They touch: surely one stroke, and either may touch others on its other side. But an
      // upright line that passes through a flat stroke has its own end opposite.
      const Linked& narrow = a.Columns.Length() < b.Columns.Length() ? ofA : ofB;
      if (Unlikeness(a, b) > std::log(4.0) && narrow.Any()) return;
      if (a.IsShallow() != b.IsShallow() && (a.IsShallow() ? ofB : ofA).Any()) return;
      const bool steep = !a.IsShallow() && !b.IsShallow();
      if (steep || a.Columns.First <= b.Columns.First) ofA.Right = ofB.Left = true;
      if (steep || a.Columns.Last >= b.Columns.Last) ofA.Left = ofB.Right = true;
      links_.push_back(link);
      return;
    }
    bool& sideOfA = a.Middle() < b.Middle() ? ofA.Right : ofA.Left;
    bool& sideOfB = a.Middle() < b.Middle() ? ofB.Left : ofB.Right;
    if (sideOfA || sideOfB) return;
    sideOfA = sideOfB = true;
    links_.push_back(link);
  }

  void Follow(const Link& link) {
    const StrokeEnd& a = End(link.FirstSide, link.First);
    const StrokeEnd& b = End(link.SecondSide, link.Second);
    if (link.FirstSide == link.SecondSide)
      KeepTouch(a, b);
    else
      KeepCrossing(a, b);
  }

  /// The stroke from `a` above to `b` below: its edges go straight through the line.
  void KeepCrossing(const StrokeEnd& a, const StrokeEnd& b) {
    const Span gap = Between(a.Columns, b.Columns);
    const bool rightward = a.Columns.First <= b.Columns.First;
    const Span reach{std::min(a.Columns.First, b.Columns.First),
                     std::max(a.Columns.Last, b.Columns.Last)};
    for (int x = reach.First; x <= reach.Last; ++x) {
      const int thickness = band_.At(x).Thickness();
      for (int row = 0; row < thickness; ++row) {
        const double part = (row + 1.0) / (thickness + 1.0);
        const double first = a.Columns.First + part * (b.Columns.First - a.Columns.First);
        const double last = a.Columns.Last + part * (b.Columns.Last - a.Columns.Last);
        bool keep = x >= first - 0.5 && x <= last + 0.5;
        if (!keep && gap.Contains(x)) {
          // No column of the way between may be left out.
          const double way = (x - gap.First + 0.5) / gap.Length();
          keep = static_cast<int>((rightward ? way : 1 - way) * thickness) == row;
        }
        if (keep) kept_.Keep(BandSide::Above, x, row);
      }
    }
  }

  /// The stroke that dips into the line between two ends on one side: a parabola's arc.
  void KeepTouch(const StrokeEnd& a, const StrokeEnd& b) {
    const Span gap = Between(a.Columns, b.Columns);
    const double run = 0.5 * (RunOf(a, b) + RunOf(b, a));
    const double depth = std::clamp(gap.Length() / (4 * run), 0.0, Thickness() - 1.0);
    const int thickness = std::max(a.Thickness, b.Thickness);
    for (int x = gap.First; x <= gap.Last; ++x) {
      const double way = (x - gap.First + 0.5) / gap.Length();
      const int deepest = static_cast<int>(std::lround(depth * 4 * way * (1 - way)));
      for (int row = deepest - thickness + 1; row <= deepest; ++row) kept_.Keep(a.Side, x, row);
    }
  }

  /// The greatest thickness that a stroke shows along its end for more than an instant.
  int FullThickness(const StrokeEnd& end) const {
    const int limit = 2 * line_.Thickest + 6;
    std::vector<int> columns(static_cast<std::size_t>(limit) + 1, 0);
    for (int x = end.Columns.First; x <= end.Columns.Last; ++x)
      ++columns[BlackBeyond(map_, band_, end.Side, x, limit)];
    const int lasting = std::max(3, end.Columns.Length() / 10);
    int thickness = limit;
    for (int shown = 0; thickness > 1; --thickness) {
      shown += columns[thickness];
      if (shown >= lasting) break;
    }
    return thickness;
  }

  /// A shallow stroke that shows only a part of its thickness has the rest in the line.
  void KeepSunkenPart(const StrokeEnd& end) {
    if (!end.IsShallow() && end.Columns.Length() < 4 * Thickness() + 8) return;
    const int thickness = FullThickness(end);
    if (thickness > 2 * line_.Thickest + 5) return;
    for (int x = end.Columns.First; x <= end.Columns.Last; ++x) {
      const int shown = BlackBeyond(map_, band_, end.Side, x, thickness);
      for (int row = 0; row < thickness - shown; ++row) kept_.Keep(end.Side, x, row);
    }
  }

  void KeepUnlinked(const std::vector<StrokeEnd>& ends, const std::vector<Linked>& linked) {
    for (std::size_t i = 0; i < ends.size(); ++i) {
      if (linked[i].Any()) continue;
      if (ends[i].IsShallow())
        KeepSinking(ends[i]);
      else
        KeepStub(ends[i]);
    }
  }

  /// A steep stroke that ends at the line, such as a tick mark: it keeps its foot.
  void KeepStub(const StrokeEnd& end) {
    for (int row = 0; row < Thickness(); ++row) {
      const int moved = static_cast<int>(std::lround(-end.Lean * (row + 1)));
      for (int x = end.Columns.First; x <= end.Columns.Last; ++x)
        kept_.Keep(end.Side, x + moved, row);
    }
  }

  /// A shallow stroke that sinks into the line and shows no other end: one that flattens has come
  /// to run along the line and is kept as long as the line is black, another goes through it.
  void KeepSinking(const StrokeEnd& end) {
    const int step = end.Lean < 0 ? 1 : -1;
    const double run = std::abs(end.Lean);
    const int start = (step > 0 ? end.Columns.Last : end.Columns.First) + step;
    const int through = static_cast<int>(std::ceil(run * Thickness()));
    for (int column = 0;; ++column) {
      const int x = start + step * column;
      if (!band_.Columns.Contains(x) || !IsBlackBetween({x, x})) return;
      if (end.Flattens) {
        for (int row = 0; row < end.Thickness; ++row) kept_.Keep(end.Side, x, row);
      } else if (column < through) {
        const int deepest = static_cast<int>(column / run);
        for (int row = deepest - end.Thickness + 1; row <= deepest; ++row)
          kept_.Keep(end.Side, x, row);
      } else {
        return;
      }
    }
  }

  std::vector<MapPixel> Rest() const {
    std::vector<MapPixel> rest;
    for (const Span& piece : line_.Pieces) {
      for (int x = piece.First; x <= piece.Last; ++x) {
        const BlackRun& rows = band_.At(x);
        for (int y = rows.Top; y <= rows.Bottom; ++y)
          if (map_.Get(x, y) && !kept_.IsKept(x, y - rows.Top)) rest.push_back({x, y});
      }
    }
    rest.insert(rest.end(), bumps_.begin(), bumps_.end());
    return rest;
  }

  const BitMap& map_;
  const GridLine& line_;
  const LineBand band_;
  KeptRows kept_;
  std::vector<StrokeEnd> above_, below_;
  std::vector<Linked> aboveLinked_, belowLinked_;
  std::vector<Link> links_;
  std::vector<MapPixel> bumps_;
};

}  // namespace

std::vector<MapPixel> PixelsOfLineOnly(const BitMap& map, const GridLine& line) {
  return Protection(map, line).Run();
}

}  // namespace graphize
