#pragma once

#include "measure.h"
#include "plots.h"

namespace graphize::accuracy {

/// Draws the plot, calibrates, wipes its grid, and traces or scans it.
Accuracy Run(const CurvePlot& plot, Tracer tracer);
Accuracy Run(const ScanPlot& plot);

}  // namespace graphize::accuracy
