#pragma once

#include <vector>

#include "extraction/grid_line.h"

namespace graphize {

enum class BandSide { Above, Below };

/// The rows that belong to a line, column by column, also where something crosses it or where it is
/// broken. Rows beyond it on one side are counted from 1 away from the line.
struct LineBand {
  Span Columns;
  std::vector<BlackRun> Rows;  // for every column of Columns, never empty
  bool Sheared = false;        // neighbours on the picture may lie a pixel farther apart

  const BlackRun& At(int column) const { return Rows[column - Columns.First]; }
  int RowBeyond(BandSide side, int column, int distance) const {
    return side == BandSide::Above ? At(column).Top - distance : At(column).Bottom + distance;
  }
  /// Row `inward` (from 0) of the band, seen from `side`.
  int RowWithin(BandSide side, int column, int inward) const {
    return RowBeyond(side, column, -1 - inward);
  }
};

/// Where nothing else touches the line its rows are what is black there; elsewhere they follow from
/// the nearest such columns on either side.
LineBand BandOf(const GridLine& line);

}  // namespace graphize
