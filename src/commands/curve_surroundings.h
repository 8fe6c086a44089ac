#pragma once

#include <string>

#include "calibration/axis_calibration.h"
#include "calibration/plot_surroundings.h"
#include "raster/plot_image.h"
#include "reading/find_symbols.h"

namespace graphize {

/// The frame by which what lies at a place of the picture is read: that of the plot that the axes
/// belong to, without axes that of the plot drawn there, or else the whole picture.
AxesFrame ReadingFrame(const AxisCalibration& calibration, const Raster& picture,
                       const PlotSurroundings& around, double x, double y);

/// Whether the place lies beyond a side of the plot that is drawn, and what is read there would be
/// a number or a title; where none is drawn, the plot may go on behind the axis points. The picture
/// is shown without marks meanwhile.
bool IsBeyondFrame(PlotImage& image, const AxisCalibration& calibration,
                   const PlotSurroundings& around, double x, double y);

/// Whether it lies in a word, or closely beside.
bool IsInText(const PlotSurroundings& around, double x, double y);
/// What was found from a click, if no symbols: letters, where nearly all of them lie in words, or
/// the click does and hardly any is clear elsewhere. Empty: symbols.
std::string WrittenAt(const SymbolFinding& finding, const PlotSurroundings& around, double x,
                      double y);

}  // namespace graphize
