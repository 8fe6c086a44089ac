#pragma once

#include "image/plot_overlay.h"
#include "workspace/workspace.h"

namespace graphize {

/// What the plot shows above its raster within `area`: the data list's points when the overlay is
/// on, the last captured point when its marker is on, the reference points while axes are defined,
/// the rubber band of a scan.
PlotOverlay Plot_Paint(const Workspace& ws, const PlotOverlay::Rectangle& area);

}  // namespace graphize
