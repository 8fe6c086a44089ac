#pragma once

#include <set>

#include "finding_axes/find_axis.h"

namespace graphize {

/// What the page shows against an axis that was found on it is added to its doubts: labels that
/// were left out, signs or points that may have been lost, a factor at its end, letters too small.
/// `others` are the words that lie on scales of the other course.
void AddDoubts(const LabelPage& page, AxisCourse course, const std::set<int>& others,
               FoundAxis& axis);

}  // namespace graphize
