#pragma once

#include <string>
#include <vector>

#include "calibration/plot_surroundings.h"
#include "reading/ink_pieces.h"

namespace graphize {

/// Whether a piece of ink is a letter, or a sign that a word begins or ends with.
bool IsInText(const PlotSurroundings& around, const InkPiece& piece);

/// Whether it is a short level stroke, as a legend shows it.
bool IsSample(const InkPiece& piece);
/// The words of one line beside a legend's sample, behind it or else before it.
std::vector<TextBox> LabelOf(const InkPiece& sample, const PlotSurroundings& around);
/// Whether it is a sample that has such a word.
bool IsLegendSample(const InkPiece& piece, const PlotSurroundings& around);

/// What a piece of ink that is no curve's is called: a word, a sample of a legend or a box. Empty:
/// it may be a curve's.
std::string NameOfWritten(const InkMap& map, const InkPiece& piece, const PlotSurroundings& around);

/// Leaves paper where a piece was.
void Wipe(InkMap& map, const InkPiece& piece);
/// Leaves paper where words and samples of a legend were, so that no stroke goes on through them.
void WipeWritten(InkMap& map, const PlotSurroundings& around);

}  // namespace graphize
