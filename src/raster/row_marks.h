#pragma once

#include <cstddef>
#include <cstdint>

#include "raster/plot_image.h"

namespace graphize {

/// Marks of one row: the same as SetPixel for each, in half the time where there are many.
class RowMarks {
 public:
  RowMarks(PlotImage& image, int y, Colour colour)
      : image_(image),
        row_(image.Pixels.Row(y)),
        start_(static_cast<std::uint32_t>(static_cast<std::size_t>(y) * image.Width())),
        pixel_(PixelOfColour(colour)),
        y_(y) {}
  ~RowMarks() {
    if (left_ <= right_) image_.Dirty.Add(left_, y_, right_, y_);
  }
  RowMarks(const RowMarks&) = delete;
  RowMarks& operator=(const RowMarks&) = delete;

  /// Columns of the picture, from left to right.
  void Set(int x) {
    left_ = right_ < 0 ? x : left_;
    right_ = x;
    if (row_[x] == pixel_) return;
    image_.Marks.push_back({start_ + static_cast<std::uint32_t>(x), row_[x]});
    row_[x] = pixel_;
  }

 private:
  PlotImage& image_;
  std::uint32_t* row_;
  std::uint32_t start_, pixel_;
  int y_, left_ = 0, right_ = -1;
};

}  // namespace graphize
