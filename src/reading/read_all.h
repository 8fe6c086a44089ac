#pragma once

#include <vector>

#include "calibration/plot_surroundings.h"
#include "reading/ink.h"
#include "reading/read_curve.h"

namespace graphize {

/// A curve of a plot of which all are read.
struct PlotCurve {
  Rgb Colour;                  // of its ink
  double X = 0, Y = 0;         // where it was begun
  std::vector<TextBox> Label;  // the words beside its sample in the legend
  CurveReading Reading;        // its map left out
};

/// All curves within the plot.
struct PlotReading {
  std::vector<PlotCurve> Curves;  // in the legend's order where there is one, else from the top
  bool IsStopped = false;         // nothing was read then
};

/// Reads every stroke of every ink that goes along a fifth of the plot or more. Grid and frame,
/// words, symbols and the legend's samples are left out. The frame is ReadCurve's.
PlotReading ReadAllCurves(const Raster& picture, const AxesFrame& frame,
                          const PlotSurroundings& around, const std::vector<ReadingWall>& walls,
                          PictureOperation& operation);

}  // namespace graphize
