#pragma once

#include "calibration/axis_calibration.h"

namespace graphize {

/// The axes' frame on the picture: u along the X axis, v downward across it, in pixels from the
/// picture's corner; and the box that the axis points span.
struct AxesFrame {
  double Cos = 1, Sin = 0;
  double Left = 0, Top = 0, Right = 0, Bottom = 0;

  double U(double x, double y) const { return x * Cos + y * Sin; }
  double V(double x, double y) const { return y * Cos - x * Sin; }
  double X(double u, double v) const { return u * Cos - v * Sin; }
  double Y(double u, double v) const { return u * Sin + v * Cos; }
};
/// Without complete axes, the whole picture, upright. Cos is above 0.
AxesFrame FrameOf(const AxisCalibration& calibration, int width, int height);

}  // namespace graphize
