#pragma once

#include <cstdint>
#include <vector>

#include "grid/line_band.h"

namespace graphize {

/// The long upright strokes that leave a line on one side, such as the lines of the other
/// direction.
class UprightStrokes {
 public:
  /// `slope` is the line's, in rows per column: what is upright leans by as much.
  UprightStrokes(const BitMap& map, const LineBand& band, BandSide side, double slope);

  /// Whether one leaves the line in this column.
  bool IsUpright(int column) const { return IsSet(upright_, column); }
  /// Whether one runs in this column, there or a little farther away.
  bool IsPassed(int column) const { return IsSet(passed_, column); }

 private:
  bool IsSet(const std::vector<std::uint8_t>& columns, int column) const {
    return band_.Columns.Contains(column) && columns[column - band_.Columns.First] != 0;
  }
  void Follow(int column);
  Span RunAt(int column, int distance) const;

  const BitMap& map_;
  const LineBand& band_;
  BandSide side_;
  double lean_;  // columns per row away from the line
  std::vector<std::uint8_t> upright_, passed_;
};

}  // namespace graphize
