#include "data/row_errors.h"

namespace graphize {

bool HasRowErrors(const PointStore& store, const AxisCalibration& calibration) {
  return store.ListRows != PointStore::Rows::Other && calibration.IsComplete() &&
         LogOriginFault(calibration) == nullptr;
}

std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration) {
  const bool swapped = store.ListRows == PointStore::Rows::SwappedPlaces;
  std::vector<RowError> errors;
  errors.reserve(static_cast<std::size_t>(store.ListCount));
  for (int i = 1; i <= store.ListCount; ++i) {
    const float x = store.ListX[i], y = store.ListY[i];
    const RowError error =
        swapped ? PixelSizeAt(calibration, y, x) : PixelSizeAt(calibration, x, y);
    errors.push_back(swapped ? RowError{error.Y, error.X} : error);
  }
  return errors;
}

}  // namespace graphize
