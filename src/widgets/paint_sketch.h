#pragma once

#include "raster/plot_overlay.h"

class QPainter;

namespace graphize {

/// Lines of one logical pixel with a light edge, words on light ground and crosses. The painter's
/// units are picture pixels times `zoom`; widths and letters are the same at every zoom. Words that
/// would cover others of the sketch move on.
void PaintSketch(QPainter& painter, const PlotOverlay::Sketch& sketch, double zoom);

}  // namespace graphize
