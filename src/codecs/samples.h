#pragma once

#include <cstdint>

namespace graphize {

/// The 8-bit value of each 16-bit value, q / 257: for all q the same as the shifts, which the
/// compiler turns into vector instructions.
inline std::uint8_t EightBits(std::uint16_t q) {
  return static_cast<std::uint8_t>((q - (q >> 8)) >> 8);
}

/// An opaque pixel of a raster.
inline std::uint32_t PixelOf(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return 0xff000000u | red << 16 | green << 8 | blue;
}
inline std::uint32_t GreyPixel(std::uint32_t grey) {
  return 0xff000000u | grey * 0x010101u;
}

}  // namespace graphize
