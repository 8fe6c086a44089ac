#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axis_calibration.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::PixelPosition;

/// A plot in colour, drawn with the truth known.
struct ReadPlot {
  Raster Picture;
  AxisCalibration Axes;
  std::vector<PixelPosition> Course;  // the clicked curve's
  PixelPosition Click;
  std::function<double(double)> Value;  // of Y at X, where the axes are off
};

/// What one kind of plot must reach, in pixels; `Draw` makes one of it from a seed.
struct ReadFamily {
  std::string Name;
  double Middle = 0, Worst = 0;  // rms of the shortest distances, over the seeds
  double Coverage = 0.99;
  ReadPlot (*Draw)(unsigned seed) = nullptr;
  unsigned Plots = 6;  // that are drawn
};

std::vector<ReadFamily> ReadFamilies();

}  // namespace graphize::accuracy
