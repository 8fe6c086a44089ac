#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "raster/plot_image.h"
#include "tracing/plot_box.h"

namespace graphize {

/// The picture as a tracer sees it, or the part of it inside the axes.
struct TracedInk {
  const PlotImage& Image;
  std::optional<PlotBox> Inside = {};
};

/// One column of the picture, to be walked up and down. Outside of what is traced nothing is black.
class InkColumn {
 public:
  InkColumn(const TracedInk& ink, int x) {
    const PlotImage& image = ink.Image;
    if (!image.Contains(x, 0)) return;
    top_ = image.Pixels.Pixels() + x;
    width_ = static_cast<std::size_t>(image.Width());
    height_ = image.Height();
    PlotBox::Span rows{0, height_ - 1};
    if (ink.Inside) {
      const PlotBox::Span inside = ink.Inside->RowsIn(x);
      rows = {std::max(rows.First, inside.First), std::min(rows.Last, inside.Last)};
    }
    first_ = rows.First;
    count_ = static_cast<unsigned>(std::max(rows.Last - rows.First + 1, 0));
  }

  /// Of the picture; 0 for a column outside of it.
  int Rows() const { return height_; }
  /// The rows that are traced; none when First > Last.
  int First() const { return first_; }
  int Last() const { return first_ + static_cast<int>(count_) - 1; }
  /// Whether the pixel in this row, which is one of them, is exactly black.
  bool IsBlack(int row) const { return IsBlackPixel(top_[static_cast<std::size_t>(row) * width_]); }
  /// The same of any row.
  bool operator[](int row) const {
    return static_cast<unsigned>(row - first_) < count_ && IsBlack(row);
  }

 private:
  const std::uint32_t* top_ = nullptr;
  std::size_t width_ = 0;
  int height_ = 0, first_ = 0;
  unsigned count_ = 0;
};

}  // namespace graphize
