#pragma once

#include <cmath>
#include <limits>
#include <string>

#include "calibration/axis_calibration.h"
#include "capture/curve_list.h"
#include "capture/point_store.h"

namespace graphize {

/// X and Y of a point that was captured before the axes were defined: it has a place alone, and
/// waits for its values.
inline constexpr float kNoValueYet = std::numeric_limits<float>::quiet_NaN();

/// Whether a row or a captured point, by its id and values, waits for them.
inline bool IsWaiting(PointId id, float X, float Y) {
  return id != 0 && std::isnan(X) && std::isnan(Y);
}
int CountWaiting(const PointStore& store);
/// Of all curves, where `active` holds the points of the active one.
int CountWaiting(const CurveList& curves, const PointStore& active);
/// That so many wait, which is why nothing can be done with their values.
std::string WaitingText(int points);

/// The waiting points that the axes, which are complete, give numbers to get them. Returns how many
/// do. The height is that of the picture that the places are on.
int GiveValues(PointStore& store, const AxisCalibration& calibration, int height);

}  // namespace graphize
