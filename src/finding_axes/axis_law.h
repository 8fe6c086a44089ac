#pragma once

#include <span>
#include <string>
#include <vector>

#include "raster/picture_operation.h"

namespace graphize {

/// Position = Start + Step * value, or of log10 of the value.
struct AxisLaw {
  bool Log = false;
  double Start = 0, Step = 0;

  /// Not finite where a log axis has no such value.
  double PositionOf(double value) const;
};

/// A label's place along an axis, and the values that it may mean.
struct PlacedLabel {
  double Position = 0;
  std::vector<double> Meanings;
};

/// A label that a law explains, by which of its meanings.
struct ExplainedLabel {
  int Label = 0, Meaning = 0;
};

struct LawFit {
  AxisLaw Law;
  std::vector<ExplainedLabel> Labels;
  double Residuals = 0;  // root of their mean square
};

/// The law that explains most labels to within `tolerance`: of all pairs and meanings, linear and
/// logarithmic over 0.7 decades or more (Fischler and Bolles 1981, without chance). `besides` is a
/// fit whose law does not count, nor one that is the same at the labels' places. Takes the cube of
/// the labels' number; the best one until it was stopped.
LawFit FindLaw(std::span<const PlacedLabel> labels, double tolerance,
               const PictureOperation& operation, const LawFit* besides = nullptr);

/// Least squares over positions and values; at least two, not all alike.
AxisLaw FitLaw(bool log, std::span<const double> positions, std::span<const double> values);

/// Standard uncertainty of where such a law has `value` (Draper and Smith 1998, section 1.4); that
/// of one position is taken from the residuals, and is `least` or more.
double SigmaAt(const AxisLaw& law, std::span<const double> positions,
               std::span<const double> values, double value, double least);

/// Why values that lie on a law are no scale that a program draws: steps that are no multiples of
/// one step. nullptr for most.
const char* ScaleDoubt(bool log, std::vector<double> values);

}  // namespace graphize
