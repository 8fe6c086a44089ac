#include "data/row_errors.h"

#include <algorithm>
#include <cmath>

#include "base/number_pattern.h"
#include "base/translation.h"

namespace graphize {

bool HasRowErrors(const PointStore& store, const AxisCalibration& calibration) {
  return store.ListRows != PointStore::Rows::Other && calibration.IsComplete() &&
         LogOriginFault(calibration) == nullptr;
}

RowError RowErrorAt(PointStore::Rows rows, const AxisCalibration& calibration, float x, float y) {
  if (rows != PointStore::Rows::SwappedPlaces) return PixelSizeAt(calibration, x, y);
  const RowError error = PixelSizeAt(calibration, y, x);
  return {error.Y, error.X};
}

std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration) {
  std::vector<RowError> errors;
  errors.reserve(static_cast<std::size_t>(store.ListCount));
  for (int i = 1; i <= store.ListCount; ++i)
    errors.push_back(RowErrorAt(store.ListRows, calibration, store.ListX[i], store.ListY[i]));
  return errors;
}

std::string HiddenDigits(const PointStore& store, const AxisCalibration& calibration,
                         const Settings& settings, const NumberFormats& formats) {
  if (!HasRowErrors(store, calibration)) return {};
  int missingX = 0, missingY = 0;
  const auto missing = [](float value, const std::string& pattern, float pixel) {
    const double step = std::fabs(static_cast<double>(pixel));
    return std::isfinite(value) && std::isnormal(step) ? MissingPlaces(value, pattern, step) : 0;
  };
  const std::vector<RowError> pixels = RowErrorsOf(store, calibration);
  for (int i = 1; i <= store.ListCount; ++i) {
    missingX = std::max(missingX, missing(store.ListX[i], formats.X, pixels[i - 1].X));
    missingY = std::max(missingY, missing(store.ListY[i], formats.Y, pixels[i - 1].Y));
  }
  std::string needed;
  const auto name = [&](const std::string& decimals) {
    needed = needed.empty() ? decimals : Tr("%1 and %2", needed, decimals);
  };
  if (missingX > 0)
    name(TrCount("%1 decimal for X", "%1 decimals for X", settings.XDecimals + missingX));
  if (missingY > 0)
    name(TrCount("%1 decimal for Y", "%1 decimals for Y", settings.YDecimals + missingY));
  if (needed.empty()) return {};
  return Tr(
      "The number format hides digits: neighbouring pixels may be saved as one number. %1 would "
      "show them.",
      needed);
}

}  // namespace graphize
