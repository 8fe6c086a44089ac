#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// A colour, or a difference of two, in levels of 255 per channel.
struct Rgb {
  float R = 0, G = 0, B = 0;
};

inline Rgb RgbOf(std::uint32_t pixel) {
  return {static_cast<float>(pixel >> 16 & 0xff), static_cast<float>(pixel >> 8 & 0xff),
          static_cast<float>(pixel & 0xff)};
}
/// The nearest pixel, opaque.
inline std::uint32_t PixelOf(Rgb colour) {
  const auto level = [](float value) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0f, 255.0f)));
  };
  return 0xff000000u | level(colour.R) << 16 | level(colour.G) << 8 | level(colour.B);
}
inline Rgb operator-(Rgb a, Rgb b) {
  return {a.R - b.R, a.G - b.G, a.B - b.B};
}
inline Rgb operator+(Rgb a, Rgb b) {
  return {a.R + b.R, a.G + b.G, a.B + b.B};
}
inline Rgb operator*(float k, Rgb a) {
  return {k * a.R, k * a.G, k * a.B};
}
inline float Dot(Rgb a, Rgb b) {
  return a.R * b.R + a.G * b.G + a.B * b.B;
}
inline float Length(Rgb a) {
  return std::sqrt(Dot(a, a));
}

/// The colour of the ground that a graph is drawn on: one for the whole picture where that is so,
/// else medians of blocks with even transitions between their centres.
struct Paper {
  bool IsFlat = true;
  Rgb Colour;                           // of a flat paper
  int Side = 0, Columns = 0, Rows = 0;  // blocks, pixels and counts
  std::vector<Rgb> Blocks;
  float Grain = 0;  // standard deviation of the paper's pixels about it, levels per channel

  Rgb At(int x, int y) const;
};

/// A stopped operation gives any paper.
Paper PaperOf(const Raster& picture, const PictureOperation* operation = nullptr);

}  // namespace graphize
