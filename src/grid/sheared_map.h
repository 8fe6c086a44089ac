#pragma once

#include <vector>

#include "base/bit_map.h"
#include "grid/black_map.h"

namespace graphize {

/// A map turned by two shears so that lines of a known slope lie along its rows and those across
/// them along its columns (Paeth, "A fast algorithm for general raster rotation", 1986, with whole
/// pixels): first columns are shifted, then rows. Each bit is one of the map it was made of, but
/// neighbours may come to lie a pixel apart.
struct ShearedMap {
  BitMap Bits;
  std::vector<int> ColumnShift;  // added to the row, by column before the shift
  std::vector<int> RowShift;     // added to the column, by row after the shift
  double Slope = 0;

  bool IsShifted() const {
    return !ColumnShift.empty() && ColumnShift.front() != ColumnShift.back();
  }
  /// Where a pixel of the other map has come to lie. Inside only.
  MapPixel OfMap(MapPixel pixel) const;
  /// The column of the other map that lies in `column` in this row; may be outside it.
  int ColumnOfMap(int column, int row) const { return column - RowShift[row]; }
  /// The row of the other map in which a line through `row` runs in its column `column`.
  double RowOfMap(int column, double row) const;
};

ShearedMap ShearMap(const BitMap& map, double slope);

}  // namespace graphize
