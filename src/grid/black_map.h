#pragma once

#include "base/bit_map.h"
#include "calibration/axis_calibration.h"
#include "grid/keep_going.h"
#include "raster/plot_image.h"

namespace graphize {

/// X: lines of constant X, which run along the Y axis. Y: lines of constant Y.
enum class GridDirection { X, Y };

struct MapPixel {
  int Column = 0, Row = 0;
};

/// The binary picture of what is black, laid so that the grid lines of one direction run along its
/// columns rather than its rows: as they are, or with the picture's columns as rows.
struct BlackMap {
  BitMap Bits;
  bool Transposed = false;
  double Slope = 0;  // rows per column of these lines, -1..1

  MapPixel OfPicture(int x, int y) const { return Transposed ? MapPixel{y, x} : MapPixel{x, y}; }
  /// Column and Row of the result are the picture's.
  MapPixel InPicture(MapPixel pixel) const { return OfPicture(pixel.Column, pixel.Row); }
};

/// The same with what was darker than the paper before the picture was reduced to black and white
/// (Raster::Faint, not empty): a grey line whole.
BlackMap WithFaintPixels(const BlackMap& map, const PlotImage& picture);

/// The base picture (what marks cover counts, the marks do not). `picture` is not empty. Stopped
/// early by `keepGoing`, the map has no bits (Width 0).
BlackMap ReadBlackMap(const PlotImage& picture, const AxisCalibration& calibration,
                      GridDirection direction, const KeepGoing& keepGoing);

}  // namespace graphize
