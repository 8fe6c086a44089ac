#include "raster/curve_marks.h"

#include <algorithm>

namespace graphize {

namespace {

void Fill(Raster& part, int left, int top, int right, int bottom, std::uint32_t pixel) {
  left = std::max(left, 0);
  right = std::min(right, part.Width() - 1);
  if (left > right) return;
  bottom = std::min(bottom, part.Height() - 1);
  for (int y = std::max(top, 0); y <= bottom; ++y)
    std::fill(part.Row(y) + left, part.Row(y) + right + 1, pixel);
}

/// A cross of two strokes, `arm` pixels long from its middle and `breadth` to both sides.
void Cross(Raster& part, int x, int y, int arm, int breadth, std::uint32_t pixel) {
  Fill(part, x - arm, y - breadth, x + arm, y + breadth, pixel);
  Fill(part, x - breadth, y - arm, x + breadth, y + arm, pixel);
}

}  // namespace

void PaintMarks(Raster& part, int left, int top, const PlotOverlay::Marks& marks) {
  const std::uint32_t edge = PixelOfColour(EdgeColour(marks.MarkColour));
  const std::uint32_t inside = PixelOfColour(marks.MarkColour);
  for (const auto& [x, y] : marks.Points)
    Cross(part, x - left, y - top, kCurvePointReach + kMarkEdge, kMarkEdge, edge);
  for (const auto& [x, y] : marks.Points)
    Cross(part, x - left, y - top, kCurvePointReach, 0, inside);
}

}  // namespace graphize
