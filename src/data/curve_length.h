#pragma once

#include "capture/point_store.h"
#include "desktop/desktop.h"
#include "desktop/status_bar.h"

namespace graphize {

/// Lengths in graph units along the captured points, whatever the axes' types are.
struct CurveSums {
  float Length = 0, XLength = 0, YLength = 0;
};

/// Puts the segments between the captured points into the list, one row (number from 1, length)
/// each, and tells the sums. The captured points stay. With a point that is not finite the lengths
/// are not either, and shown so.
CurveSums CurveLength(PointStore& store, StatusBar& status, const Desktop& desktop);

}  // namespace graphize
