#pragma once

#include <vector>

#include "extraction/line_band.h"

namespace graphize {

/// Where a stroke meets a line: the columns in which it is black in the first row beyond the band.
struct StrokeEnd {
  BandSide Side = BandSide::Above;
  Span Columns;
  int Height = 1;     // rows it was followed away from the line
  double Lean = 0;    // columns it moves per row away from the line, next to it; positive rightward
  int Thickness = 1;  // of the stroke, upright, where it has not yet dipped into the line
  bool Flattens = false;  // it nears the line ever more slowly
  double Middle() const { return 0.5 * (Columns.First + Columns.Last); }
  /// A single row beside the line: the stroke dips into the line at both ends of it.
  bool IsIsland() const { return Height == 1; }
  /// Whether it runs along the line rather than across it.
  bool IsShallow() const { return Lean > 3 || Lean < -3; }
};

/// The ends of strokes on one side, from left to right.
std::vector<StrokeEnd> FindStrokeEnds(const BitMap& map, const LineBand& band, BandSide side);

/// How many rows are black beyond the band in this column without a break, at most `limit`.
int BlackBeyond(const BitMap& map, const LineBand& band, BandSide side, int column, int limit);

}  // namespace graphize
