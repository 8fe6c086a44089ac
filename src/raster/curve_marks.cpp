#include "raster/curve_marks.h"

#include <algorithm>

#include "raster/contrast.h"
#include "raster/picture_scaling.h"
#include "raster/viewport.h"

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

/// Paints crosses, whose places are logical pixels, in screen pixels of a part.
class Crosses {
 public:
  Crosses(Raster& part, int left, int top, const MarkScaling& scaling)
      : part_(part), scaling_(scaling), left_(scaling.Left - left), top_(scaling.Top - top) {}

  /// Of two strokes, `arm` long from the middle and `breadth` to both sides.
  void Paint(const PlotOverlay::Point& point, int arm, int breadth, std::uint32_t pixel) {
    const int x = PlaceOfMark(scaling_.Zoom, point.X), y = PlaceOfMark(scaling_.Zoom, point.Y);
    const Range armX = At(left_, x, arm), armY = At(top_, y, arm);
    const Range breadthX = At(left_, x, breadth), breadthY = At(top_, y, breadth);
    Fill(part_, armX.First, breadthY.First, armX.Last, breadthY.Last, pixel);
    Fill(part_, breadthX.First, armY.First, breadthX.Last, armY.Last, pixel);
  }

 private:
  struct Range {
    int First, Last;
  };
  Range At(double start, int place, int reach) const {
    return {FirstScreenPixel(start, scaling_.Ratio, place - reach),
            FirstScreenPixel(start, scaling_.Ratio, place + reach + 1) - 1};
  }

  Raster& part_;
  const MarkScaling& scaling_;
  double left_, top_;
};

}  // namespace

void PaintMarks(Raster& part, int left, int top, const PlotOverlay::Marks& marks,
                const MarkScaling& scaling) {
  const std::uint32_t edge = PixelOfColour(EdgeColour(marks.MarkColour));
  const std::uint32_t inside = PixelOfColour(marks.MarkColour);
  Crosses crosses(part, left, top, scaling);
  for (const PlotOverlay::Point& point : marks.Points)
    crosses.Paint(point, kCurvePointReach + kMarkEdge, kMarkEdge, edge);
  for (const PlotOverlay::Point& point : marks.Points)
    crosses.Paint(point, kCurvePointReach, 0, inside);
}

}  // namespace graphize
