#pragma once

#include <vector>

#include "reading/ink.h"
#include "reading/read_curve.h"

namespace graphize {

/// A curve of a plot of which all are read.
struct PlotCurve {
  Rgb Colour;            // of its ink
  double X = 0, Y = 0;   // where it was begun
  CurveReading Reading;  // its map left out
};

/// All curves within the plot.
struct PlotReading {
  std::vector<PlotCurve> Curves;  // in the legend's order where there is one, else from the top
  bool IsStopped = false;         // nothing was read then
};

/// Reads every stroke of every ink that goes along a fifth of the plot or more. Grid and frame,
/// letters, symbols and the legend's samples are left out.
PlotReading ReadAllCurves(const Raster& picture, const AxisCalibration& calibration,
                          const std::vector<ReadingWall>& walls, PictureOperation& operation);

}  // namespace graphize
