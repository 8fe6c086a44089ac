#pragma once

#include "finding_axes/find_axis.h"

namespace graphize {

/// What the page shows against an axis that was found on it is added to its doubts: labels that
/// were left out, signs or points that may have been lost, a factor at its end, letters too small.
void AddDoubts(const LabelPage& page, AxisCourse course, FoundAxis& axis);

}  // namespace graphize
