#pragma once

#include <functional>
#include <vector>

#include "calibration/axis_calibration.h"
#include "extraction/bit_map.h"
#include "image/plot_image.h"

namespace graphize {

/// X: lines of constant X, which run along the Y axis. Y: lines of constant Y.
enum class GridDirection { X, Y };

/// Called now and then by long work: false means stop.
using KeepGoing = std::function<bool()>;

/// The black pixels of a picture turned so that the grid lines of one direction lie along the rows
/// and those of the other along the columns. The turn is made of whole-pixel shifts of columns and
/// then of rows (and an exchange of the two), so each bit is one pixel of the picture and lines
/// keep their thickness.
struct UprightMap {
  BitMap Bits;
  bool Transposed = false;       // the picture's columns have become rows
  std::vector<int> ColumnShift;  // added to the row, by picture column (row when transposed)
  std::vector<int> RowShift;     // added to the column, by row of the map

  struct Place {
    int X = 0, Y = 0;
  };
  /// The map's column and row of a picture pixel, and back. Inside only.
  Place OfPicture(int x, int y) const;
  Place InPicture(int column, int row) const;

  /// How far the pixel at (column, row) was moved across the lines, and what the move should have
  /// been before it was rounded. Beyond the picture's border: as at the border.
  int ShiftAt(int column, int row) const;
  double ExactShiftAt(int column, int row) const;

  double Slope = 0;  // of the lines before the shifts, rows per column
};

/// The base picture (what marks cover counts, the marks do not) turned by the calibrated angle.
/// `picture` is not empty. Stopped early by `keepGoing`, the map has no bits (Width 0).
UprightMap MakeUprightMap(const PlotImage& picture, const AxisCalibration& calibration,
                          GridDirection direction, const KeepGoing& keepGoing);

}  // namespace graphize
