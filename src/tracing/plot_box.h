#pragma once

#include <functional>

#include "calibration/axes_frame.h"
#include "raster/plot_image.h"

namespace graphize {

/// The inside of a plot, a rectangle that is turned with its axes.
class PlotBox {
 public:
  explicit PlotBox(const AxesFrame& frame) : frame_(frame) {}

  /// Rows, or columns, of picture pixels; none when First > Last.
  struct Span {
    int First = 0, Last = -1;
  };
  Span RowsIn(int column) const;
  bool Contains(int x, int y) const;

 private:
  AxesFrame frame_;
};

/// Whether a picture pixel is ink; there is none outside of the picture.
using InkTest = std::function<bool(int x, int y)>;

/// The sides of a plot as they are drawn: a line between `Inner` and `Outer`, which are the same
/// where none is drawn.
struct PlotFrame {
  AxesFrame Inner, Outer;
};
/// Of a frame or of axes that are drawn, to where they end; on sides where none is drawn, at the
/// outermost axis point. The axes are complete; sizes in pixels.
PlotFrame FindPlotFrame(const InkTest& isInk, int width, int height,
                        const AxisCalibration& calibration);

/// What lies inside of the frame that is drawn in black, marks on the picture left aside; nothing
/// may be drawn meanwhile.
PlotBox FindPlotBox(PlotImage& image, const AxisCalibration& calibration);

}  // namespace graphize
