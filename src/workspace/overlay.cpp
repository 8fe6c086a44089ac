#include "workspace/overlay.h"

#include <algorithm>

namespace graphize {

namespace {

bool Touches(const PlotOverlay::Rectangle& area, const PlotPixel& pixel, int reach) {
  return pixel.X >= area.Left - reach && pixel.X <= area.Right + reach &&
         pixel.Y >= area.Top - reach && pixel.Y <= area.Bottom + reach;
}

}  // namespace

std::optional<PlotOverlay::Rectangle> RubberBand(const Workspace& ws) {
  const ScanRectangle& band = ws.scanRectangle;
  if (!band.Active) return std::nullopt;
  return PlotOverlay::Rectangle{std::min(band.Left, band.Right), std::min(band.Top, band.Bottom),
                                std::max(band.Left, band.Right), std::max(band.Top, band.Bottom)};
}

PlotOverlay Plot_Paint(const Workspace& ws, const PlotOverlay::Rectangle& area) {
  PlotOverlay overlay;
  if (!ws.plot.IsPresent()) return overlay;
  if (ws.mode == Mode::AxisDef) {
    overlay.AxisColour = PaletteColour(2);
    for (int row = 0; row < 3; ++row)
      if (ws.calibration.Defined[row])
        overlay.AxisPoints.push_back(
            {ws.calibration.PixelX[row], ws.plot.Height() - ws.calibration.PixelY[row]});
  }
  if (ws.store.CaptureCount == 0) return overlay;
  if (ws.commands.Overlay && ws.calibration.IsComplete()) {
    overlay.DataColour = PaletteColour(ws.settings.TraceColor);
    for (int i = 1; i <= ws.store.ListCount; ++i) {
      const auto pixel =
          Real2Pixels(ws.calibration, ws.plot.Height(), ws.store.ListX[i], ws.store.ListY[i]);
      if (pixel && Touches(area, *pixel, kDataPointReach + kMarkEdge))
        overlay.DataPoints.push_back({pixel->X, pixel->Y});
    }
  }
  if (ws.commands.ShowLastPoint) {
    overlay.LastPoint = {ws.store.LastPixelX, ws.plot.Height() - ws.store.LastPixelY};
    overlay.LastColour = PaletteColour(1);
  }
  return overlay;
}

}  // namespace graphize
