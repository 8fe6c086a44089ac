#pragma once

#include <vector>

#include "finding_axes/long_lines.h"
#include "finding_axes/words.h"

namespace graphize {

/// What a level or an upright line covers.
InkBox BoxOf(const LongLine& line, bool level);

/// What level and upright lines that touch enclose, lines included, where it is a plot: large, and
/// neither in another one nor around several.
std::vector<InkBox> FindFrames(const InkImage& upright, const LineSet& lines);

/// The plots that stand beside or above each other, from left to right and from above: what level
/// and upright lines that touch enclose, with the labels up to the gutter. Empty where there is
/// only one, or none.
std::vector<InkBox> FindPlots(const InkImage& upright, const LineSet& lines);

/// A part of the image alone.
InkImage PartOf(const InkImage& ink, const InkBox& part);

}  // namespace graphize
