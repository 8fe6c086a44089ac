#pragma once

#include <optional>

#include "raster/plot_overlay.h"
#include "workspace/workspace.h"

namespace graphize {

/// What the plot shows above its raster, of points those within `area`: the points of several
/// curves, the data list's points when the overlay is on, the last captured point when its marker
/// is on, the reference points while axes are defined.
PlotOverlay Plot_Paint(const Workspace& ws, const PlotOverlay::Rectangle& area);
/// The rubber band of a scan while it is dragged, its corners put in order.
std::optional<PlotOverlay::Rectangle> RubberBand(const Workspace& ws);

}  // namespace graphize
