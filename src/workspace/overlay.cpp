#include "workspace/overlay.h"

#include <algorithm>
#include <cmath>

namespace graphize {

namespace {

bool Touches(const PlotOverlay::Rectangle& area, float column, float row, int reach) {
  const auto r = static_cast<float>(reach);
  return column >= static_cast<float>(area.Left) - r &&
         column <= static_cast<float>(area.Right) + r &&
         row >= static_cast<float>(area.Top) - r && row <= static_cast<float>(area.Bottom) + r;
}

}  // namespace

PlotOverlay Plot_Paint(const Workspace& ws, const PlotOverlay::Rectangle& area) {
  PlotOverlay overlay;
  if (!ws.plot.IsPresent()) return overlay;
  if (const ScanRectangle& band = ws.scanRectangle; band.Active)
    overlay.RubberBand = {std::min(band.Left, band.Right), std::min(band.Top, band.Bottom),
                          std::max(band.Left, band.Right), std::max(band.Top, band.Bottom)};
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
      // Values without a place on the picture are not finite here and touch nothing.
      const auto [column, row] = PositionOfReal(ws.calibration, ws.plot.Height(),
                                                ws.store.ListX[i], ws.store.ListY[i]);
      if (!Touches(area, column, row, kDataPointReach)) continue;
      overlay.DataPoints.push_back(
          {static_cast<int>(std::nearbyint(column)), static_cast<int>(std::nearbyint(row))});
    }
  }
  if (ws.commands.ShowLastPoint) {
    overlay.LastPoint = {ws.store.LastPixelX, ws.plot.Height() - ws.store.LastPixelY};
    overlay.LastColour = PaletteColour(1);
  }
  return overlay;
}

}  // namespace graphize
