#pragma once

#include "raster/plot_overlay.h"

class QPainter;
class QRect;

namespace graphize {

/// What was read and is not taken over yet, within `area`: the pixels that count as ink tinted, the
/// course over them, doubtful stretches dotted, the points and the clicks, and rings around
/// symbols, dashed around doubtful ones; those that are left out are crossed out. The painter's
/// units are picture pixels, the middle of pixel (0, 0) at (0.5, 0.5); lines keep their width at
/// every scale.
void PaintPreview(QPainter& painter, const PlotOverlay::Preview& preview, const QRect& area);

}  // namespace graphize
