#pragma once

#include <cstdint>
#include <vector>

#include "base/bit_map.h"
#include "grid/span.h"

namespace graphize {

/// One run of a column's run-length coding: black rows Top..Bottom; empty when Top > Bottom.
struct BlackRun {
  int Top = 0, Bottom = -1;

  bool IsEmpty() const { return Top > Bottom; }
  int Thickness() const { return Bottom - Top + 1; }
  double Middle() const { return 0.5 * (Top + Bottom); }
};

/// What a column shows of a line.
enum class ColumnKind : std::uint8_t {
  Other,   // broken, or joined by something else
  Clean,   // nothing but the line is black
  Ragged,  // the same, but for a few columns not of its usual thickness
};

/// One line followed pixel by pixel along the columns of a map.
struct GridLine {
  Span Plot;                       // the columns of the map where the plot lies on its way
  Span Columns;                    // from its first to its last black pixel
  std::vector<float> Centre;       // row of its middle, for every column of the map
  std::vector<BlackRun> Runs;      // what is black at its middle, likewise
  std::vector<ColumnKind> Kinds;   // likewise
  int Thickness = 1;               // the usual one
  int Thinnest = 1, Thickest = 1;  // of its clean columns
  std::vector<Span> Pieces;        // where it is drawn, breaks of its pattern included
  double Coverage = 0;             // black part of its pieces, 0..1
  double Regularity = 0;           // part of its periods that are alike, 0..1; 0 when unbroken
  int Periods = 0;                 // breaks in its pieces
  int LongestBreak = 0;            // columns that a break of its pattern may have
  double CleanPart = 0;            // part of its black columns that are clean, 0..1
  double Slope = 0;                // rows per column
  double Bend = 0;                 // greatest distance from a straight line, pixels

  double RowAt(int column) const { return Centre[column]; }
  bool IsClean(int column) const { return Kinds[column] != ColumnKind::Other; }
};

/// The black run at `row` or, failing that, nearest to it within `reach`; looked at no farther than
/// `limit` rows to either side of where it was found.
BlackRun RunNear(const BitMap& map, int column, double row, double reach, int limit);

}  // namespace graphize
