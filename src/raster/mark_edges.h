#pragma once

#include "base/raster.h"
#include "raster/curve_marks.h"
#include "raster/plot_image.h"

namespace graphize {

/// Paints a thin edge beside the picture's own marks where they hardly stand out from all that is
/// around them, over the part of the screen whose first pixel is (left, top). The picture's pixels,
/// which tracers read, stay as they are.
void PaintMarkEdges(Raster& part, int left, int top, const PlotImage& image,
                    const MarkScaling& scaling);

/// Picture pixels around a mark that its edge depends on.
int ReachOfMarkEdges(double zoom);

}  // namespace graphize
