#pragma once

#include <QRegion>

#include "raster/plot_overlay.h"
#include "raster/viewport.h"

class QPainter;

namespace graphize {

/// Marks above the picture but for the curves', in places of the zoomed picture (viewport.h). They
/// are as large at every zoom, and grow around pixels that are seen large, which stay free.
void PaintOverlay(QPainter& painter, const PlotOverlay& overlay, double zoom);

/// The outline of a rectangle of picture pixels.
QRegion OutlineOf(const PlotOverlay::Rectangle& band, double zoom);
/// Black and white by turns, so that it shows on ink and on paper.
void PaintRubberBand(QPainter& painter, const QRegion& visible, const PlotOverlay::Rectangle& band,
                     double zoom);

}  // namespace graphize
