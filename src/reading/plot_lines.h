#pragma once

#include <optional>
#include <vector>

#include "calibration/axis_calibration.h"
#include "reading/ink_map.h"

namespace graphize {

/// A straight line of the ink from one side of the plot to the other.
struct PlotLine {
  bool IsLevel = false;  // along the X axis
  int Offset = 0;        // pixels across it, in the axes' turned frame
  float Share = 0;       // of it that is ink
};

/// The axes' frame on the picture: u along the X axis, v downward across it, in pixels from the
/// picture's corner; and the box that the axis points span, in which lines are looked for.
struct AxesFrame {
  double Cos = 1, Sin = 0;
  double Left = 0, Top = 0, Right = 0, Bottom = 0;

  double U(double x, double y) const { return x * Cos + y * Sin; }
  double V(double x, double y) const { return y * Cos - x * Sin; }
};
/// Without complete axes, the whole picture, upright.
AxesFrame FrameOf(const AxisCalibration& calibration, int width, int height);

/// Takes grid lines and the frame out of the map: pale and even ones are subtracted, what lies on
/// the others is hidden. Outside of the outermost lines around the click there is wall, where they
/// end at each other as a plot's frame does. The lines that were found; a stopped operation leaves
/// the map half done.
std::vector<PlotLine> TakeOutLines(InkMap& map, const AxesFrame& frame, double x, double y,
                                   const PictureOperation& operation);

}  // namespace graphize
