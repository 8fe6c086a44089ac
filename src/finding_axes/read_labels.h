#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/plot_surroundings.h"
#include "finding_axes/text_reader.h"
#include "raster/picture_operation.h"

namespace graphize {

/// What is written in a row of boxes, blanks at its ends aside, and whether its letters were read
/// with little certainty: not alike at two sizes, or with a bracket that has no other.
struct LabelReading {
  std::string Text;    // empty where there is no box, or no reader
  std::string Second;  // what the other look saw, where that differs in more than blanks
  bool IsDoubtful = false;
};

std::vector<LabelReading> ReadLabels(const Raster& picture, const AxesFrame& turn,
                                     const std::vector<std::vector<TextBox>>& labels,
                                     const PictureOperation& operation,
                                     const TextLineReader& reader = ReadTextLine);

}  // namespace graphize
