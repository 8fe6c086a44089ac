#pragma once

#include "base/raster.h"
#include "raster/plot_overlay.h"

namespace graphize {

/// How marks lie on a screen: the picture's zoom, screen pixels per logical pixel, and where the
/// picture's upper left corner is in screen pixels.
struct MarkScaling {
  double Zoom = 1, Ratio = 1;
  double Left = 0, Top = 0;
};

/// Paints a curve's marks over the part of the screen whose first pixel is (left, top): small
/// crosses with an edge, which covers no other mark of the curve. About as fast as writing their
/// pixels: a page may have a hundred thousand of them.
void PaintMarks(Raster& part, int left, int top, const PlotOverlay::Marks& marks,
                const MarkScaling& scaling = {});

}  // namespace graphize
