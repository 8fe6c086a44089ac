#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "calibration/axis_calibration.h"

namespace graphize {

/// The axes by least squares of all that is known: the three rows (the exact places where there are
/// any), of which the X-axis point has the origin's Y and the Y-axis point no X, then the further
/// references.
struct AxisFit {
  AffineMap Scale;                // as in AxisRefinement
  double Skew = 0;                // radians that the Y axis leans from the right angle, as fitted
  bool IsSkewed = false;          // the residuals prove it, and Scale has it
  double Rms = 0;                 // of the residuals, by the degrees of freedom; 0 without any
  std::vector<double> Residuals;  // pixels, of the three rows and of each reference

  /// The reference that the others speak against; named from eight on.
  std::optional<int> Doubtful;
  bool Disagree = false;  // from four to seven
};

/// Turned, with a scale of its own for X and for Y: u = cos c + sin r is a straight line of X's
/// scale and v = cos r - sin c one of Y's; the angle that makes the sum of both sums of squares
/// least is that of an eigenvector of their 2 x 2 matrix. With a skew where that, fitted, is over
/// 0.15 degrees and three of its standard errors. Absent without complete axes, or where a value
/// has no place on its scale.
std::optional<AxisFit> FitAxes(const AxisCalibration& calibration);

/// Standard uncertainty of a row's place, in column and row each, pixels: 0.35 for a click
/// (rounding to whole pixels, 1/sqrt(12), and a fifth of a pixel for the hand); else its exact
/// place's, of which the whole pixel that axes take which are not refined is another 1/sqrt(12)
/// off.
double SigmaOfRow(const AxisCalibration& calibration, std::size_t row);

/// Standard uncertainty, in pixels along X and along Y, that the fitted axes have at a place (row
/// upward): of the places that they are fitted to, 0.35 pixels for a clicked one, more where the
/// residuals say so.
struct AxisSpread {
  double X = 0, Y = 0;
};
AxisSpread SpreadAt(const AxisCalibration& calibration, double column, double rowUp);

/// What is fitted besides the three rows.
bool HasReferences(const AxisCalibration& calibration);
/// The transform becomes the fitted one, or the three rows' again; false where nothing can be
/// fitted. After a change of the references it is fitted anew.
bool SwitchRefined(AxisCalibration& calibration, bool on);

}  // namespace graphize
