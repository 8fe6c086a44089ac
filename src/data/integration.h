#pragma once

#include <cstdint>
#include <string>

#include "base/translation.h"
#include "calibration/axis_calibration.h"
#include "capture/point_store.h"
#include "desktop/desktop.h"
#include "raster/plot_image.h"

namespace graphize {

/// The window FRM_Integrate. Its sliders run over the captured points, 1 to `Points`, and stand at
/// the limits: after a refused move they are back there.
struct IntegrateForm {
  std::int16_t Points = 0;
  std::int16_t LowLimit = 1;   // SCRL_Min
  std::int16_t HighLimit = 0;  // SCRL_Max
  float Area = 0;              // last computed, in X units times Y units
  std::string Xmin, Xmax;      // LBL_Xmin, LBL_Xmax
  std::string AreaText = Tr("Click the integrate button");  // LBL_Area
};

IntegrateForm OpenIntegrate(const PointStore& store);

/// A slider was moved to `value`. The limits stay at least three points apart: false for a move
/// that is refused.
bool MoveLowLimit(IntegrateForm& form, const PointStore& store, int value);
bool MoveHighLimit(IntegrateForm& form, const PointStore& store, int value);

/// The trapezoid sum over the captured points' intervals (low-1, low) to (high-1, high), in the
/// order of capture: with limit 1 the first trapezoid starts at element 0, which is (0, 0). Falling
/// X counts negative, log axes are not treated apart.
float TrapezoidSum(const PointStore& store, int low, int high);

/// Computes and shows the area and shades it with marks on the plot: a line from each point to the
/// origin's Y level. Earlier shading is the caller's to clear. Without a complete calibration, and
/// for points without a place on the picture, there is no shading. Escape stops the shading.
void Integrate(IntegrateForm& form, const PointStore& store, const AxisCalibration& calibration,
               PlotImage& plot, const Desktop& desktop);

}  // namespace graphize
