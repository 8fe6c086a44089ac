#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "raster/plot_image.h"

namespace graphize {

// What a raster remembers beside its pixels, as CSV: a header, then runs of pixels in a row,
// "row,column,length,color" with rows from the top and the color as "#rrggbb".

/// Pixels one after the other, as they are in the image's logs.
std::string RunsText(const OverdrawnPixels& pixels, int width);
/// Reads them for a raster of this size. What is no run within it, or more than can have been drawn
/// on it, is a RunTimeError that names the line.
OverdrawnPixels ReadRuns(std::string_view text, int width, int height);

/// Set bits, without a color.
std::string BitsText(const BitMap& bits);
BitMap ReadBits(std::string_view text, int width, int height);

/// The picture takes the place of the one in the image. Its last edit, whose log holds what it has
/// covered, is done again there, so that it can be undone.
void PutEdited(PlotImage& image, Raster picture, OverdrawnPixels lastEdit);

}  // namespace graphize
