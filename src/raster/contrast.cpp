#include "raster/contrast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/raster.h"

namespace graphize {

namespace {

/// The light of a channel's level, 0 to 1 (IEC 61966-2-1).
double LightOf(std::uint32_t level) {
  static const std::array<double, 256> kLight = [] {
    std::array<double, 256> light{};
    for (std::size_t i = 0; i < light.size(); ++i) {
      const double part = static_cast<double>(i) / 255;
      light[i] = part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    }
    return light;
  }();
  return kLight[level & 0xffu];
}

double RelativeLuminance(std::uint32_t pixel) {
  return 0.2126 * LightOf(pixel >> 16) + 0.7152 * LightOf(pixel >> 8) + 0.0722 * LightOf(pixel);
}

}  // namespace

double ContrastOf(std::uint32_t a, std::uint32_t b) {
  constexpr double kStray = 0.05;
  const auto [less, more] = std::minmax({RelativeLuminance(a), RelativeLuminance(b)});
  return (more + kStray) / (less + kStray);
}

Colour EdgeColour(Colour mark) {
  const std::uint32_t pixel = PixelOfColour(mark);
  return ContrastOf(pixel, kBlackPixel) < ContrastOf(pixel, kWhitePixel) ? kWhite : kBlack;
}

}  // namespace graphize
