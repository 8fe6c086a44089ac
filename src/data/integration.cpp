#include "data/integration.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"
#include "base/palette.h"
#include "calibration/transform.h"

namespace graphize {

namespace {

constexpr int kShadingColour = 1;  // dark blue

bool IsAllowed(const IntegrateForm& form, int low, int high) {
  return low >= 1 && high <= form.Points && low < high - 2;
}

void ShadeAt(PlotImage& plot, const AxisCalibration& calibration, float X, float Y) {
  const auto height = static_cast<float>(plot.Height());
  const PlotPosition point = PositionOfReal(calibration, plot.Height(), X, Y);
  const PlotPosition level = PositionOfReal(calibration, plot.Height(), X, calibration.ValueY[0]);
  if (!std::isfinite(point.Column) || !std::isfinite(point.Row) || !std::isfinite(level.Row))
    return;
  // Rounded as Real2Pixels does; what is far away is cut to the picture before it is an integer.
  const float column = std::nearbyint(point.Column);
  if (column < 0 || column >= static_cast<float>(plot.Width())) return;
  const auto rowInside = [&](float row) {
    return static_cast<int>(std::clamp(height - std::nearbyint(height - row), 0.0f, height));
  };
  const int x = static_cast<int>(column);
  DrawLine(plot, x, rowInside(level.Row), x, rowInside(point.Row), PaletteColour(kShadingColour));
}

}  // namespace

IntegrateForm OpenIntegrate(const PointStore& store) {
  IntegrateForm form;
  form.Points = form.HighLimit = store.CaptureCount;
  form.Xmin = ShortestText(store.CaptureX[form.LowLimit]);
  form.Xmax = ShortestText(store.CaptureX[form.HighLimit]);
  return form;
}

bool MoveLowLimit(IntegrateForm& form, const PointStore& store, int value) {
  if (!IsAllowed(form, value, form.HighLimit)) return false;
  form.LowLimit = ToInt16(value);
  form.Xmin = ShortestText(store.CaptureX[value]);
  return true;
}

bool MoveHighLimit(IntegrateForm& form, const PointStore& store, int value) {
  if (!IsAllowed(form, form.LowLimit, value)) return false;
  form.HighLimit = ToInt16(value);
  form.Xmax = ShortestText(store.CaptureX[value]);
  return true;
}

float TrapezoidSum(const PointStore& store, int low, int high) {
  float area = 0;
  for (int i = low; i <= high; ++i) {
    const double x1 = store.CaptureX[i - 1], x2 = store.CaptureX[i];
    const double y1 = store.CaptureY[i - 1], y2 = store.CaptureY[i];
    area = static_cast<float>(area + (x2 - x1) / 2 * (y1 + y2));
  }
  return area;
}

void Integrate(IntegrateForm& form, const PointStore& store, const AxisCalibration& calibration,
               PlotImage& plot, const Desktop& desktop) {
  form.Area = TrapezoidSum(store, form.LowLimit, form.HighLimit);
  form.AreaText = ShortestText(form.Area);
  if (!calibration.IsComplete()) return;
  for (int i = form.LowLimit; i <= form.HighLimit; ++i) {
    ShadeAt(plot, calibration, store.CaptureX[i], store.CaptureY[i]);
    desktop.Pump();
    if (desktop.EscapeHeld()) return;
  }
}

}  // namespace graphize
