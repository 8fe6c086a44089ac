#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "raster/plot_image.h"

namespace graphize::test {

/// The rows that stand in `text`, blanks between.
std::vector<std::string> RowsOf(const std::string& text);

/// A picture from rows of text: '#' is black, 'o' a dark grey (0x404040), anything else white.
Raster Draw(const std::vector<std::string>& rows);
/// The working raster as text: '#' black, '.' white, '?' any other colour.
std::vector<std::string> Show(const PlotImage& image);
PlotImage MakePlotImage(const std::vector<std::string>& rows);

}  // namespace graphize::test
