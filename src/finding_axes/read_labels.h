#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/plot_surroundings.h"
#include "finding_axes/text_reader.h"
#include "raster/picture_operation.h"

namespace graphize {

/// What is written in each row of boxes, blanks at its ends aside. Empty where there is no box, or
/// no reader.
std::vector<std::string> ReadLabels(const Raster& picture, const AxesFrame& turn,
                                    const std::vector<std::vector<TextBox>>& labels,
                                    const PictureOperation& operation,
                                    const TextLineReader& reader = ReadTextLine);

}  // namespace graphize
