#pragma once

#include "raster/plot_overlay.h"
#include "workspace/workspace.h"

namespace graphize {

/// The grid of round values, the axes that are proposed, the references and the place that a click
/// would snap to, where they are shown.
void AddAxes(const Workspace& ws, PlotOverlay& overlay);

}  // namespace graphize
