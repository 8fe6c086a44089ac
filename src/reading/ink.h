#pragma once

#include <optional>
#include <vector>

#include "base/raster.h"
#include "raster/paper.h"

namespace graphize {

/// A colour that is drawn with, as the difference of the paper to it.
struct Ink {
  Rgb Direction;       // of length 1
  float Strength = 0;  // of the full ink, levels
};

/// The directions in which the strongest pixels of all strokes differ from the paper, densest
/// first, no two nearer than 8 degrees. A stopped operation gives some of them.
std::vector<Rgb> InkDirections(const Raster& picture, const Paper& paper,
                               const PictureOperation* operation = nullptr);

/// An ink of the picture, pale and dark ones of one direction told apart.
struct PictureInk {
  Ink Of;
  Rgb Colour;       // in full, on the paper
  float Share = 0;  // of the strokes' pixels
};
/// The inks that strokes are drawn with, the most used first; a stopped operation gives some.
std::vector<PictureInk> InksOf(const Raster& picture, const Paper& paper,
                               const PictureOperation* operation = nullptr);

/// The ink of the stroke nearest to a click within `reach` pixels; absent where there is only
/// paper.
std::optional<Ink> InkAt(const Raster& picture, const Paper& paper,
                         const std::vector<Rgb>& directions, double x, double y, int reach);

}  // namespace graphize
