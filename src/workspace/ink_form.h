#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bit_map.h"
#include "base/palette.h"
#include "reading/ink.h"

namespace graphize {

/// The window FRM_Ink: which ink is to be alone, and what counts as it.
struct InkForm {
  static constexpr int kNarrowest = 50, kAsFound = 100, kWidest = 200;
  std::vector<PictureInk> Swatches;     // BTN_Swatch_0 ...: the inks that were found
  std::optional<std::uint32_t> Chosen;  // a pixel of the ink
  int Tolerance = kAsFound;             // SCRL_Tolerance: percent of what is as a rule
  std::string Hint;                     // LBL_Ink
  BitMap Mask;                          // the pixels that count as it, shown over the picture
  Colour MarkColour = kBlack;           // which stands out from it
  bool IsAlone = false;                 // an ink alone is shown: its colours can come back
  std::uint64_t Picture = 0;            // PictureNumber of the one that is shown
};

}  // namespace graphize
