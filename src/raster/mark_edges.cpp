#include "raster/mark_edges.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/bit_map.h"
#include "raster/contrast.h"
#include "raster/picture_scaling.h"

namespace graphize {

namespace {

constexpr int kAround = 2;  // pixels around a mark that it is compared with

/// Picture pixels that lie as far apart as those that are seen.
int StepAt(double zoom) {
  return std::max(static_cast<int>(std::lround(1 / zoom)), 1);
}

/// Whether nothing around the picture's pixel contrasts with it.
bool IsLost(const Raster& picture, int x, int y, int step) {
  const std::uint32_t mark = picture.Row(y)[x];
  std::uint32_t alike = mark;  // mostly paper: the contrast takes longer than all the rest
  for (int dy = -kAround; dy <= kAround; ++dy) {
    const int row = y + dy * step;
    if (row < 0 || row >= picture.Height()) continue;
    for (int dx = -kAround; dx <= kAround; ++dx) {
      const int column = x + dx * step;
      if (column < 0 || column >= picture.Width()) continue;
      const std::uint32_t other = picture.Row(row)[column];
      if (other == mark || other == alike) continue;
      if (ContrastOf(other, mark) >= kLeastContrast) return false;
      alike = other;
    }
  }
  return true;
}

/// Pixels of the screen, all included.
struct Box {
  int Left, Top, Right, Bottom;
};

class MarkEdges {
 public:
  MarkEdges(Raster& part, int left, int top, const PlotImage& image, const MarkScaling& scaling)
      : part_(part),
        image_(image),
        scale_{scaling.Zoom * scaling.Ratio, scaling.Left, scaling.Top},
        step_(StepAt(scaling.Zoom * scaling.Ratio)),
        width_(std::max(static_cast<int>(std::lround(kMarkEdge * scaling.Ratio)), 1)),
        left_(left - 2 * width_),
        top_(top - 2 * width_),
        marked_(part.Width() + 4 * width_, part.Height() + 4 * width_) {}

  void Paint() {
    FindMarks();
    // Each mark is told by its own neighbours, before any edge covers them.
    for (const Lost& mark : lost_) PaintEdge(mark.Place, mark.Edge);
  }

 private:
  struct Lost {
    Box Place;  // in `marked_`
    std::uint32_t Edge;
  };

  /// The screen's pixels that show a picture pixel, in `marked_`.
  Box PlaceOf(int x, int y) const {
    const int right = FirstScreenPixel(scale_.Left, scale_.Scale, x + 1) - 1;
    const int bottom = FirstScreenPixel(scale_.Top, scale_.Scale, y + 1) - 1;
    return {std::min(FirstScreenPixel(scale_.Left, scale_.Scale, x), right) - left_,
            std::min(FirstScreenPixel(scale_.Top, scale_.Scale, y), bottom) - top_, right - left_,
            bottom - top_};
  }

  void FindMarks() {
    const Raster& picture = image_.Pixels;
    const auto columns = static_cast<std::uint32_t>(picture.Width());
    const int firstRow = std::clamp(PictureRow(scale_, top_), 0, picture.Height());
    const int endRow =
        std::clamp(PictureRow(scale_, top_ + marked_.Height()) + 1, firstRow, picture.Height());
    const std::uint32_t first = static_cast<std::uint32_t>(firstRow) * columns;
    const std::uint32_t count = static_cast<std::uint32_t>(endRow - firstRow) * columns;
    for (const OverdrawnPixel& mark : image_.Marks) {
      if (mark.Index - first >= count) continue;  // above the part, too
      const int x = static_cast<int>(mark.Index % columns);
      const int y = static_cast<int>(mark.Index / columns);
      Box place = PlaceOf(x, y);
      place = {std::max(place.Left, 0), std::max(place.Top, 0),
               std::min(place.Right, marked_.Width() - 1),
               std::min(place.Bottom, marked_.Height() - 1)};
      if (place.Left > place.Right || place.Top > place.Bottom) continue;
      if (marked_.Get(place.Left, place.Top)) continue;  // the mark of another pixel, or twice
      for (int row = place.Top; row <= place.Bottom; ++row)
        for (int column = place.Left; column <= place.Right; ++column) marked_.Set(column, row);
      if (!IsLost(picture, x, y, step_)) continue;
      const Colour colour = ColourOfPixel(picture.Row(y)[x]);
      lost_.push_back({place, PixelOfColour(EdgeColour(colour))});
    }
  }

  /// Between marks that lie close together, as the lines of a shading, there is none.
  void PaintEdge(const Box& mark, std::uint32_t edge) {
    for (int y = mark.Top - width_; y <= mark.Bottom + width_; ++y) {
      for (int x = mark.Left - width_; x <= mark.Right + width_; ++x) {
        const int column = x - 2 * width_, row = y - 2 * width_;
        if (column < 0 || row < 0 || column >= part_.Width() || row >= part_.Height()) continue;
        if (marked_.Get(x, y)) continue;
        const auto beyond = [&](int at, int first, int last) {
          return at < first ? -width_ : at > last ? width_ : 0;
        };
        if (marked_.Get(x + beyond(x, mark.Left, mark.Right), y + beyond(y, mark.Top, mark.Bottom)))
          continue;
        part_.Row(row)[column] = edge;
      }
    }
  }

  Raster& part_;
  const PlotImage& image_;
  PictureScaling scale_;
  int step_, width_;  // picture pixels, screen pixels
  int left_, top_;    // of `marked_` on the screen
  BitMap marked_;     // with what is around the part
  std::vector<Lost> lost_;
};

}  // namespace

int ReachOfMarkEdges(double zoom) {
  return kAround * StepAt(zoom) + 1;
}

void PaintMarkEdges(Raster& part, int left, int top, const PlotImage& image,
                    const MarkScaling& scaling) {
  if (!image.Marks.empty() && !part.IsEmpty()) MarkEdges(part, left, top, image, scaling).Paint();
}

}  // namespace graphize
