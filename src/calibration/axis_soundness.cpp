#include "calibration/axis_soundness.h"

#include <cmath>

namespace graphize {

bool FitsItsPoints(const AxisCalibration& axes) {
  const auto isNear = [](double a, double b) {
    return std::isfinite(b) && std::abs(a - b) <= 1e-4 * (1 + std::abs(b));
  };
  for (std::size_t i = 0; i < 3; ++i)
    if (!std::isfinite(axes.ValueX[i]) || !std::isfinite(axes.ValueY[i])) return false;
  const double norm = std::hypot(axes.SinAngle, axes.CosAngle);
  if (!isNear(1, norm) || !std::isfinite(axes.Angle)) return false;
  const double cosAngle = axes.CosAngle;
  const double dx = axes.PixelX[1] - axes.PixelX[0], dy = axes.PixelY[1] - axes.PixelY[0];
  if (axes.Defined[1]) {
    const double angle = std::atan(dy / dx);
    if (dx == 0 || !isNear(axes.Angle, angle) || !isNear(axes.SinAngle, std::sin(angle)) ||
        !isNear(axes.CosAngle, std::cos(angle)) || !isNear(axes.XAxisLength, dx / cosAngle))
      return false;
  }
  const double up = axes.PixelY[2] - axes.PixelY[0];
  // The Y axis can be there while the X axis, which was refused, is not.
  return !axes.Defined[2] || (up != 0 && isNear(axes.YAxisLength, up / cosAngle));
}

}  // namespace graphize
