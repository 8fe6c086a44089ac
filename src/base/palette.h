#pragma once

#include <cstdint>

namespace graphize {

/// A colour as readers see it: red + 256 * green + 65536 * blue; -1 outside the picture.
using Colour = std::int32_t;

inline constexpr Colour kBlack = 0;
inline constexpr Colour kWhite = 0xffffff;
inline constexpr Colour kNoColour = -1;

constexpr Colour MakeColour(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}

/// The classic 16 colours, index 0 to 15; an index outside gives black's place, 0.
Colour PaletteColour(int index);

/// The same colour in the raster's layout 0xffRRGGBB, and back.
constexpr std::uint32_t PixelOfColour(Colour colour) {
  const auto bits = static_cast<std::uint32_t>(colour);
  return 0xff000000u | ((bits & 0xffu) << 16) | (bits & 0xff00u) | ((bits >> 16) & 0xffu);
}
constexpr Colour ColourOfPixel(std::uint32_t pixel) {
  return static_cast<Colour>(((pixel & 0xffu) << 16) | (pixel & 0xff00u) | ((pixel >> 16) & 0xffu));
}

}  // namespace graphize
