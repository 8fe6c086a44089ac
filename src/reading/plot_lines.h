#pragma once

#include <optional>
#include <vector>

#include "calibration/axes_frame.h"
#include "reading/ink_map.h"

namespace graphize {

/// A straight line of the ink from one side of the plot to the other.
struct PlotLine {
  bool IsLevel = false;  // along the X axis
  int Offset = 0;        // pixels across it, in the axes' turned frame
  float Share = 0;       // of it that is ink
};

/// Takes grid lines and the frame out of the map: pale and even ones are subtracted, what lies on
/// the others is hidden. Outside of the outermost lines around the click there is wall, where they
/// end at each other as a plot's frame does. The lines that were found; a stopped operation leaves
/// the map half done.
std::vector<PlotLine> TakeOutLines(InkMap& map, const AxesFrame& frame, double x, double y,
                                   const PictureOperation& operation);

/// Whether a place lies on an axis or a side of the frame, of the lines that were found, and the
/// map has no ink beside that line within `reach` pixels.
bool IsOnFrame(const InkMap& map, const std::vector<PlotLine>& lines, const AxesFrame& frame,
               double x, double y, int reach);

}  // namespace graphize
