#include "raster/black_white.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace graphize {

bool IsBlackAndWhite(const Raster& picture) {
  // In blocks: the compiler turns a loop without a way out into vector instructions.
  constexpr std::size_t kBlock = 4096;
  const std::uint32_t* pixels = picture.Pixels();
  for (std::size_t start = 0; start < picture.PixelCount(); start += kBlock) {
    const std::size_t end = std::min(start + kBlock, picture.PixelCount());
    // Adding its lowest bit leaves 24 zero bits of black and of white, and of nothing else.
    std::uint32_t others = 0;
    for (std::size_t i = start; i < end; ++i) others |= pixels[i] + (pixels[i] & 1u);
    if ((others & 0xffffffu) != 0) return false;
  }
  return true;
}

void ReduceToBlackAndWhite(Raster& picture, double threshold) {
  const auto limit = static_cast<std::int32_t>(std::ceil(threshold * 1000));
  std::uint32_t* const pixels = picture.Pixels();
  const std::size_t count = picture.PixelCount();
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t pixel = pixels[i];
    const auto luminance = static_cast<std::int32_t>(
        299 * ((pixel >> 16) & 0xffu) + 587 * ((pixel >> 8) & 0xffu) + 114 * (pixel & 0xffu));
    pixels[i] = luminance < limit ? kBlackPixel : kWhitePixel;
  }
}

}  // namespace graphize
