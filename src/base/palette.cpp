#include "base/palette.h"

#include <array>

namespace graphize {

Colour PaletteColour(int index) {
  static constexpr std::array<Colour, 16> kPalette = {
      MakeColour(0, 0, 0),       MakeColour(0, 0, 128),     MakeColour(0, 128, 0),
      MakeColour(0, 128, 128),   MakeColour(128, 0, 0),     MakeColour(128, 0, 128),
      MakeColour(128, 128, 0),   MakeColour(192, 192, 192), MakeColour(128, 128, 128),
      MakeColour(0, 0, 255),     MakeColour(0, 255, 0),     MakeColour(0, 255, 255),
      MakeColour(255, 0, 0),     MakeColour(255, 0, 255),   MakeColour(255, 255, 0),
      MakeColour(255, 255, 255),
  };
  return index >= 0 && index < 16 ? kPalette[static_cast<std::size_t>(index)] : kBlack;
}

}  // namespace graphize
