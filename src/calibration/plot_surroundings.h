#pragma once

#include <algorithm>
#include <vector>

#include "calibration/axes_frame.h"

namespace graphize {

/// A word on the picture, in the u and v of an AxesFrame.
struct TextBox {
  double Left = 0, Top = 0, Right = 0, Bottom = 0;

  double Height() const { return Bottom - Top; }
  /// How far a place is from it, along u or v; 0 within.
  double Distance(double u, double v) const {
    return std::max({Left - u, u - Right, Top - v, v - Bottom, 0.0});
  }
};

/// The lines that enclose a plot, or its two axes alone.
struct DrawnFrame {
  AxesFrame Box;  // to their middles
  bool HasLeft = false, HasTop = false, HasRight = false, HasBottom = false;
};

/// What is drawn about the curves, told from the picture alone. All has one turn.
struct PlotSurroundings {
  std::vector<DrawnFrame> Frames;  // of the plots, the largest first
  std::vector<TextBox> Texts;
  AxesFrame Turn;  // with the whole picture for its box
};

}  // namespace graphize
