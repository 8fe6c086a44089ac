#pragma once

#include <string>
#include <variant>
#include <vector>

#include "reading/ink_map.h"

namespace graphize {

/// What a plot's symbol looks like: its ink in a square of pixels about its middle.
struct SymbolShape {
  int Radius = 0;             // the square's side is 2 * Radius + 1 pixels
  std::vector<float> Ink;     // 0 to 1
  std::vector<bool> IsKnown;  // else it was covered, or is no part of the symbol
  bool IsHard = false;        // no shades at its edges
  bool IsClean = true;        // nothing else hung on to the symbol that it was taken from

  // From the square's middle, pixels: the centre of mass, and that of the box, with its sides.
  double MassX = 0, MassY = 0, BoxX = 0, BoxY = 0, Width = 0, Height = 0;
  double Area = 0;  // sum of the ink

  int Side() const { return 2 * Radius + 1; }
  std::size_t IndexOf(int x, int y) const {
    return static_cast<std::size_t>(y + Radius) * static_cast<std::size_t>(Side()) +
           static_cast<std::size_t>(x + Radius);
  }
  /// Pixels from the middle; none outside.
  float At(int x, int y) const {
    return std::abs(x) > Radius || std::abs(y) > Radius ? 0 : Ink[IndexOf(x, y)];
  }
  /// The ink between the pixels, by cubic convolution (Keys 1981).
  float Between(double x, double y) const;
  double Size() const { return Width > Height ? Width : Height; }
};

/// Finds middle and sides from the ink.
void Measure(SymbolShape& shape);

/// The largest symbol that is looked for in a picture, pixels.
int LargestSymbol(int width, int height);

/// What the symbol nearest to (x, y) may be, whose ink `map` is: a spot of ink of its own; else,
/// with a line through it, what is thicker than the line, with its holes filled or not, or where
/// more strokes meet than go on. Else what is there instead, in a few words.
std::variant<std::vector<SymbolShape>, std::string> ShapesAt(const InkMap& map, double x, double y);

}  // namespace graphize
