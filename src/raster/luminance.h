#pragma once

#include <cstdint>

namespace graphize {

/// A colour's luminance by ITU-R BT.601, 0.299 red + 0.587 green + 0.114 blue, in thousandths of
/// their unit.
template <class T>
constexpr T LuminanceOf(T red, T green, T blue) {
  return 299 * red + 587 * green + 114 * blue;
}

/// Of a pixel, 0 to 255,000.
constexpr int LuminanceOf(std::uint32_t pixel) {
  return static_cast<int>(LuminanceOf(pixel >> 16 & 0xffu, pixel >> 8 & 0xffu, pixel & 0xffu));
}

}  // namespace graphize
