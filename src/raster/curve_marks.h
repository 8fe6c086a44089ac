#pragma once

#include "base/raster.h"
#include "raster/plot_overlay.h"

namespace graphize {

/// Paints a curve's marks over a part of the picture whose first pixel is (left, top) of it: small
/// crosses with an edge, which covers no other mark of the curve. About as fast as writing their
/// pixels: a page may have a hundred thousand of them.
void PaintMarks(Raster& part, int left, int top, const PlotOverlay::Marks& marks);

}  // namespace graphize
