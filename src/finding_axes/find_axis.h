#pragma once

#include <string>
#include <vector>

#include "finding_axes/axis_law.h"
#include "finding_axes/label_page.h"
#include "finding_axes/ticks.h"

namespace graphize {

/// A label that was tied to its place.
struct TiedLabel {
  int Word = 0;  // on the page
  double Value = 0;
  double Position = 0;  // of its tick along the axis, or of its own middle
  double Residual = 0;  // from the law, pixels of the image
  bool OnTick = false;
};

/// One axis as it was found on an upright page, in pixels of that image.
struct FoundAxis {
  AxisLaw Law;
  std::vector<TiedLabel> Labels;    // along the axis; empty: no axis was found
  double Across = 0;                // its line: a row of a level axis
  double Height = 0;                // of the labels' digits
  std::vector<std::string> Doubts;  // why it is not sure, a sentence's part each
};

/// The labels along the rows or columns that lie on one scale, tied to ticks or grid lines.
FoundAxis FindAxis(const LabelPage& page, AxisCourse course);

}  // namespace graphize
