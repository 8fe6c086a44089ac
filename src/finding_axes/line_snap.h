#pragma once

#include "base/raster.h"

namespace graphize {

/// Where straight lines of the picture lie near a click: the middle of an upright one, of a level
/// one, or where both cross. Fractional pixels, row downward; centres of pixels are whole.
struct LineSnap {
  double Column = 0, Row = 0;
  bool OnUpright = false, OnLevel = false;  // else the coordinate is the click's

  bool operator==(const LineSnap&) const = default;
};

/// The line pieces that begin 3 pixels from the click and go on for up to 14, to either side: their
/// profile is what two thirds of the piece have, their middle its centre of mass, three times over.
/// Without a line within 7 pixels, neither flag is set.
LineSnap SnapToLines(const Raster& picture, int x, int y);

}  // namespace graphize
