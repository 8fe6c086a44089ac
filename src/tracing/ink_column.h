#pragma once

#include <cstddef>
#include <cstdint>

#include "raster/plot_image.h"

namespace graphize {

/// One column of the picture, to be walked up and down. Outside the picture nothing is black.
class InkColumn {
 public:
  InkColumn(const PlotImage& image, int x) {
    if (!image.Contains(x, 0)) return;
    top_ = image.Pixels.Pixels() + x;
    width_ = static_cast<std::size_t>(image.Width());
    height_ = static_cast<unsigned>(image.Height());
  }

  /// Of the picture; 0 for a column outside of it.
  int Rows() const { return static_cast<int>(height_); }
  /// Whether the pixel in this row is exactly black.
  bool operator[](int row) const {
    const auto inside = static_cast<unsigned>(row);
    return inside < height_ && IsBlackPixel(top_[inside * width_]);
  }

 private:
  const std::uint32_t* top_ = nullptr;
  std::size_t width_ = 0;
  unsigned height_ = 0;
};

}  // namespace graphize
