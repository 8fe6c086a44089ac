#pragma once

#include <cstdint>
#include <vector>

#include "extraction/bit_map.h"
#include "extraction/line_paths.h"

namespace graphize {

/// A vertical run of black, rows Top..Bottom; empty when Top > Bottom.
struct BlackRun {
  int Top = 0, Bottom = -1;

  bool IsEmpty() const { return Top > Bottom; }
  int Thickness() const { return Bottom - Top + 1; }
  double Middle() const { return 0.5 * (Top + Bottom); }
};

/// One line followed pixel by pixel through an upright map. Columns and rows are the map's.
struct GridLine {
  Span Columns;                     // from its first to its last black pixel
  std::vector<float> Centre;        // row of its middle, for every column of the map
  std::vector<BlackRun> Runs;       // what is black at its middle, for every column of the map
  std::vector<int> Shift;           // rows by which the map moved the picture pixels, likewise
  std::vector<std::uint8_t> Clean;  // 1 where nothing but the line is black, likewise
  int Thickness = 1;                // the usual one
  int Thinnest = 1, Thickest = 1;   // of the columns where nothing else joins it
  std::vector<Span> Pieces;         // where it is drawn, breaks of its pattern included
  double Coverage = 0;              // black part of its pieces, 0..1
  double Regularity = 0;            // part of its periods that are alike, 0..1; 0 when unbroken
  int Periods = 0;                  // breaks in its pieces
  double Bend = 0;                  // greatest distance from a straight line, pixels

  double RowAt(int column) const { return Centre[column]; }
  /// Whether nothing but the line is black in this column.
  bool IsClean(int column) const { return Clean[column] != 0; }
};

/// The line along `path`: its course (it may bend slowly), thickness, pattern and pieces. A course
/// without black in the columns `plot` has no Pieces. `thickest` is the greatest thickness, in
/// pixels, that a line can have.
GridLine FollowLine(const UprightMap& upright, const LinePath& path, Span plot, int thickest);

/// The black run at `row` or, failing that, nearest to it within `reach`; looked at no farther than
/// `limit` rows to either side of where it was found.
BlackRun RunNear(const BitMap& map, int column, double row, double reach, int limit);

}  // namespace graphize
