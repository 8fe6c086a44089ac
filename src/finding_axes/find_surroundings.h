#pragma once

#include "base/raster.h"
#include "calibration/plot_surroundings.h"
#include "raster/picture_operation.h"

namespace graphize {

/// The frames of the plots on a picture, or their axes where no frame is drawn, and the words of
/// two letters and more that are written along the rows. A row of dots, dashes or symbols, which
/// are all alike, is no word. A stopped operation gives some of it.
PlotSurroundings FindSurroundings(const Raster& picture, PictureOperation& operation);

}  // namespace graphize
