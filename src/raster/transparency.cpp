#include "raster/transparency.h"

#include <algorithm>
#include <cstdint>

namespace graphize {

namespace {

/// One colour component at bit `shift`, seen through the pixel on white.
std::uint32_t OnWhite(std::uint32_t pixel, int shift) {
  const std::uint32_t missing = 255u - ((pixel >> shift) & 0xffu);
  return (255u - (missing * (pixel >> 24) + 127u) / 255u) << shift;
}

}  // namespace

void Flatten(Raster& picture) {
  std::uint32_t* const first = picture.Pixels();
  std::uint32_t* const end = first + picture.PixelCount();
  const bool clearEverywhere =
      std::all_of(first, end, [](std::uint32_t p) { return p >> 24 == 0; });
  for (std::uint32_t* p = first; p != end; ++p) {
    const bool asItIs = clearEverywhere || *p >> 24 == 255;
    *p = 0xff000000u | (asItIs ? *p : OnWhite(*p, 16) | OnWhite(*p, 8) | OnWhite(*p, 0));
  }
}

}  // namespace graphize
