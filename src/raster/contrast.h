#pragma once

#include <cstdint>

#include "base/palette.h"

namespace graphize {

/// How far apart in lightness two pixels are, 1 to 21: the ratio of their relative luminances, each
/// with 0.05 for stray light (WCAG 2.1).
double ContrastOf(std::uint32_t a, std::uint32_t b);

/// Marks that differ by less from what is around them are hard to see.
inline constexpr double kLeastContrast = 3;

/// Black or white: what a mark of this colour differs from more.
Colour EdgeColour(Colour mark);

}  // namespace graphize
