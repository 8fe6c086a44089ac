#pragma once

#include <string>

#include "base/raster.h"

namespace graphize::test {

/// How a page lies: its plot's upper left corner is so far from where the calibrated one has it,
/// and it is turned counter-clockwise about its middle.
struct Lie {
  double X = 0, Y = 0, Degrees = 0, Scale = 1;
};

/// A page of a recorder with frame, grid and labels, 720 x 520: X from 0 to 12 and Y from -1 to 1
/// between the pixels 90,420 and 570,60 of the calibrated one. Each has a curve of its own.
double RecordedCurve(int page, double x);
/// `before` stands before each label of the Y axis.
Raster RecorderPage(int page, const Lie& lie = {}, int firstLabel = 0,
                    const std::string& before = {});
/// Slips of 37 and 22 pixels, turns and scales.
Lie SlipOf(int page);

}  // namespace graphize::test
