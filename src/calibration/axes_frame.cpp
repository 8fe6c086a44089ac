#include "calibration/axes_frame.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace graphize {

AxesFrame FrameOf(const AxisCalibration& calibration, int width, int height) {
  AxesFrame frame{.Right = width - 1.0, .Bottom = height - 1.0};
  if (!calibration.IsComplete()) return frame;
  const auto x = [&](int i) { return static_cast<double>(calibration.PixelX[i]); };
  const auto y = [&](int i) { return static_cast<double>(height - calibration.PixelY[i]); };
  double dx = x(1) - x(0), dy = y(1) - y(0);
  if (calibration.Refined.On) {
    // Along X all places have the same Y; rows of the scale count upward.
    dx = calibration.Refined.Scale.YY;
    dy = calibration.Refined.Scale.YX;
  }
  if (dx < 0) dx = -dx, dy = -dy;
  const double length = std::hypot(dx, dy);
  frame.Cos = dx / length;
  frame.Sin = dy / length;
  std::tie(frame.Left, frame.Right) = std::minmax({frame.U(x(0), y(0)), frame.U(x(1), y(1))});
  std::tie(frame.Top, frame.Bottom) = std::minmax({frame.V(x(0), y(0)), frame.V(x(2), y(2))});
  return frame;
}

}  // namespace graphize
