#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "base/polynomial.h"
#include "reading/stroke_samples.h"

namespace graphize {

/// A stroke on one side of a crossing: columns and rows, away from it.
using Arm = std::vector<PolynomialNode>;
inline constexpr int kArm = 34;  // samples that tell how it bends

inline constexpr double kNoArm = std::numeric_limits<double>::infinity();
inline constexpr double kNoBend = 1e6;  // of an arm that turns back

/// The seen samples from `first` on, `step` by `step`.
Arm ArmOf(const std::vector<StrokeSample>& samples, int first, int step);

/// A course from one arm to the other: a polynomial across the line from end to end.
struct Course {
  PolynomialNode From;
  double CX = 1, CY = 0;       // of the line
  double First = 0, Last = 0;  // along it, the inner ends of the arms
  Polynomial Across;

  PathPixel PixelAt(double t) const {
    const double n = Across.At(t);
    return {static_cast<int>(std::lround(From.T + t * CX - n * CY)),
            static_cast<int>(std::lround(From.F + t * CY + n * CX))};
  }
};
/// Absent where an arm turns back.
std::optional<Course> CourseOver(const Arm& before, const Arm& behind, int degree);

/// How much a course bends from one arm to the other: the rms distance, in pixels, of both from one
/// polynomial along the way from end to end; infinite where one of them is missing.
double BendOf(const Arm& before, const Arm& behind);

/// How smoothly two strokes part: of the distance from one to the other, which knows nothing of
/// what both do together, the rms distance from one polynomial.
struct Parting {
  double AsTheyAre = kNoArm, Crossed = kNoArm;  // the arms behind as given, or exchanged
};
Parting PartingOf(const Arm& before, const Arm& otherBefore, const Arm& behind,
                  const Arm& otherBehind);

/// Whether the arm ends on the stroke of these samples.
bool EndsOn(const Arm& arm, const std::vector<StrokeSample>& samples, const StrokeKind& kind);

}  // namespace graphize
