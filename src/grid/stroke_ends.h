#pragma once

#include <vector>

#include "grid/line_band.h"

namespace graphize {

/// Where a stroke meets a line: the columns in which it is black in the first row beyond the band.
struct StrokeEnd {
  BandSide Side = BandSide::Above;
  Span Columns;
  int Height = 1;     // rows it was followed away from the line
  double Lean = 0;    // columns it moves per row away from the line, next to it; positive rightward
  int Thickness = 1;  // of the stroke, upright, where it has not yet dipped into the line
  // By how many columns per row a shallow stroke comes nearer on its left and on its right side, to
  // dip into the line there; 0 where it does not.
  double LeftRun = 0, RightRun = 0;
  bool Flattens = false;   // it nears the line ever more slowly
  bool IsUpright = false;  // a long upright stroke, such as a line of the other direction

  double Middle() const { return 0.5 * (Columns.First + Columns.Last); }
  /// Whether it runs along the line rather than across it: by its lean, or because it is longer
  /// than a stroke that crosses is thick; a single row says little, and three columns of it are a
  /// speck.
  bool IsShallow() const {
    constexpr double kShallowLean = 2.5;  // columns per row: 22 degrees off the line
    constexpr int kSpeck = 3, kLongest = 5;
    return Lean >= kShallowLean || Lean <= -kShallowLean ||
           Columns.Length() > (Height == 1 ? kSpeck : kLongest * Height);
  }
};

/// The columns between two ends; its length is negative where they overlap.
Span Between(const StrokeEnd& a, const StrokeEnd& b);

/// The ends of strokes on one side, from left to right: runs of black next to the band, and by
/// region growing (8-connected, only away from the line) where their strokes lead. `slope` is the
/// line's, in rows per column: what is upright leans by as much.
std::vector<StrokeEnd> FindStrokeEnds(const BitMap& map, const LineBand& band, BandSide side,
                                      double slope);

/// How many rows are black beyond the band in this column without a break, at most `limit`.
int BlackBeyond(const BitMap& map, const LineBand& band, BandSide side, int column, int limit);

}  // namespace graphize
