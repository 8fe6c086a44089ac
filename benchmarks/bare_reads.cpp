#include "bare_reads.h"

#include <algorithm>
#include <cmath>

namespace graphize {

PlotImage WideCurve() {
  constexpr int kThickness = 8;
  Raster raster = Raster::Filled(30000, 2000, kWhitePixel);
  const auto shape = [](int x) { return static_cast<int>(1000 + 900 * std::sin(x / 900.0)); };
  for (int x = 0; x < raster.Width(); ++x) {
    const int a = shape(x), b = shape(x + 1);
    for (int y = std::min(a, b); y < std::max(a, b) + kThickness; ++y)
      raster.Row(y)[x] = kBlackPixel;
  }
  PlotImage image;
  SetPicture(image, std::move(raster));
  return image;
}

PlotImage SpeckledPage(int oneIn) {
  Raster raster = Raster::Filled(5000, 7000, kWhitePixel);
  unsigned state = 1;
  for (std::size_t i = 0; i < raster.PixelCount(); ++i) {
    state = state * 1664525u + 1013904223u;
    if ((state >> 8) % static_cast<unsigned>(4 * oneIn) != 0) continue;
    for (std::size_t j = i; j < std::min(i + 4, raster.PixelCount()); ++j)
      raster.Pixels()[j] = kBlackPixel;
  }
  PlotImage image;
  SetPicture(image, std::move(raster));
  return image;
}

std::vector<std::pair<int, int>> InkOf(const PlotImage& image) {
  std::vector<std::pair<int, int>> ink;
  for (int x = 0; x < image.Width(); ++x) {
    int top = 0, bottom = image.Height() - 1;
    while (!IsBlack(image, x, top)) ++top;
    while (!IsBlack(image, x, bottom)) --bottom;
    ink.emplace_back(top, bottom);
  }
  return ink;
}

BareReads ReadBarely(const PlotImage& image, const std::vector<std::pair<int, int>>& ink) {
  constexpr int kGap = 4;
  BareReads result;
  for (int x = 0; x + 1 < image.Width(); ++x) {
    const auto [top, bottom] = ink[static_cast<std::size_t>(x)];
    for (int y = top - kGap; y <= bottom + kGap; ++y) {
      ++result.Reads;
      if (!IsBlackPixel(image.Pixels.Row(y)[x])) continue;
      result.Reads += 2;
      result.Black += static_cast<unsigned>(IsBlackPixel(image.Pixels.Row(y)[x + 1]));
      result.Black += static_cast<unsigned>(IsBlackPixel(image.Pixels.Row(y + 1)[x + 1]));
    }
  }
  return result;
}

}  // namespace graphize
