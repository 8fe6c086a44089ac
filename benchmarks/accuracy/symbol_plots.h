#pragma once

#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axis_calibration.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::PixelPosition;

/// A plot of symbols whose centres of mass are known.
struct SymbolPlot {
  Raster Picture;
  AxisCalibration Axes;
  std::vector<PixelPosition> Centres;  // of the clicked kind
  PixelPosition Click;
  double Size = 0;  // pixels
};

/// What one kind of plot must reach; `Draw` makes one of it from a seed.
struct SymbolFamily {
  std::string Name;
  double Rms = 0;  // of the distances of those found, pixels
  SymbolPlot (*Draw)(unsigned seed) = nullptr;
};

std::vector<SymbolFamily> SymbolFamilies();

}  // namespace graphize::accuracy
