#pragma once

#include <vector>

#include "grid/grid_line.h"

namespace graphize {

enum class BandSide { Above, Below };

/// The rows that belong to a line, column by column, also where something crosses it or where it is
/// broken: interpolated from the columns that show the line alone.
struct LineBand {
  Span Columns;
  std::vector<BlackRun> Rows;  // for every column of Columns, never empty
  std::vector<BlackRun> Hull;  // those of both neighbours included

  const BlackRun& At(int column) const { return Rows[column - Columns.First]; }
  /// The rows `distance` (from 1) away from the line: one row, but next to the line, where it steps
  /// by a row, also what lies in the step.
  BlackRun RowsBeyond(BandSide side, int column, int distance) const;
};

/// Whether the row `distance` (from 1) away from the line is black in this column; not outside the
/// band's columns.
bool IsBlackBeside(const BitMap& map, const LineBand& band, BandSide side, int column,
                   int distance);

/// Whether any of the line's rows is black in this column.
bool IsBlackIn(const BitMap& map, const LineBand& band, int column);

/// Where nothing else touches the line its rows are what is black there; elsewhere they follow from
/// the nearest such columns on either side.
LineBand BandOf(const GridLine& line);

}  // namespace graphize
