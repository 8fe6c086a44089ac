#pragma once

#include <span>
#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "reading/stroke_fit.h"

namespace graphize {

/// Which points of a curve that was read are taken.
struct ReadingDensity {
  enum class Kind { Each, Every, Bends, AtX };
  Kind Is = Kind::Each;   // each column, or row where the curve is steep
  int Pixels = 10;        // Every: from one point to the next along the curve, from 1
  std::vector<float> Xs;  // AtX: graph values

  bool operator==(const ReadingDensity&) const = default;
};

/// The points of that density, in the curve's order, or for given X in the order of these: one
/// wherever the curve passes the X. `Every` keeps both ends; `Bends` keeps those between which the
/// curve is straight to a quarter of a pixel (Douglas and Peucker 1973). Given X need a complete
/// calibration; `without` takes those that the curve does not pass.
std::vector<CurvePoint> Thinned(std::vector<CurvePoint> points, const ReadingDensity& density,
                                const AxisCalibration& calibration, int pictureHeight,
                                std::vector<float>* without = nullptr);

}  // namespace graphize
