#pragma once

#include <cstdint>
#include <vector>

#include "grid/stroke_ends.h"

namespace graphize {

/// The pixels of a line's band that belong to strokes: where they run hidden in the line,
/// interpolated between their ends beside it (by lines across it, by parabolas within it). Rows are
/// counted from 0 inward from a side of the band.
class HiddenStrokes {
 public:
  /// Both must outlive this.
  HiddenStrokes(const BitMap& map, const LineBand& band);

  /// The stroke between two ends on opposite sides, `left` the one farther left: its edges go
  /// straight through the line.
  void KeepCrossing(const StrokeEnd& left, const StrokeEnd& right);
  /// The stroke that dips into the line between two ends on one side: a parabola's arc, or, between
  /// steep ends, all of the line.
  void KeepTouch(const StrokeEnd& left, const StrokeEnd& right);
  /// What is hidden of a shallow stroke that shows only a part of its thickness.
  void KeepSunkenPart(const StrokeEnd& end);
  /// A steep stroke that ends at the line, such as a tick mark, keeps its foot.
  void KeepFoot(const StrokeEnd& end);
  /// A shallow stroke that dips into the line on its right (step 1) or left side and shows no other
  /// end there: one that flattens has come to run along the line and is kept as long as the line is
  /// black, to where another one of `ends` may be its way out (a shallow one, or a steep one that
  /// does not cross), but no farther than its flatness tells; another goes through it.
  void KeepSinking(const StrokeEnd& end, int step, const std::vector<StrokeEnd>& ends);

  /// Whether the band's pixel in this column and row of the map is a stroke's.
  bool IsKept(int column, int row) const;

 private:
  int ThicknessAt(int column) const { return band_.At(column).Thickness(); }
  /// Rows first .. last; where none of them is black, the black one nearest to them.
  void Keep(BandSide side, int column, int first, int last);
  /// A stroke `thickness` rows thick whose first rows, one per column of `columns`, are guessed:
  /// where the line is broken and shows the stroke it goes there.
  void KeepAlong(BandSide side, Span columns, int thickness, std::vector<double> firstRows);
  int FullThickness(const StrokeEnd& end) const;
  /// Whether none of `ends` on the other side can be where the steep stroke goes on.
  bool EndsAtLine(const StrokeEnd& end, const std::vector<StrokeEnd>& ends) const;

  const BitMap& map_;
  const LineBand& band_;
  std::vector<std::uint64_t> rows_;  // a bit per row of every column; bit 0 is the band's top row
};

}  // namespace graphize
