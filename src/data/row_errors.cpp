#include "data/row_errors.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_pattern.h"
#include "base/translation.h"
#include "calibration/axis_fit.h"

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

RowError StandardErrorAt(const AxisCalibration& c, int pictureHeight, const Place& place,
                         const Certainty& certainty, float X, float Y) {
  // Shares of both axes.
  const double px = place.Column - static_cast<double>(c.PixelX[0]);
  const double py = pictureHeight - static_cast<double>(place.Row) - c.PixelY[0];
  const double cosine = c.CosAngle, sine = c.SinAngle;
  const double width = c.XAxisLength, height = c.YAxisLength;
  const double u = (px * cosine + py * sine) / width, v = (py * cosine - px * sine) / height;
  // Each row's place is off in column and row, and turns the axes.
  const double origin = SigmaOfRow(c, 0), ofX = SigmaOfRow(c, 1), ofY = SigmaOfRow(c, 2);
  const double turned = v * height / width;
  AxisSpread axes{std::hypot(origin * std::hypot(1 - u, turned), ofX * std::hypot(u, turned)),
                  std::hypot(origin * (1 - u - v), ofX * u, ofY * v)};
  if (c.Refined.On)
    axes = SpreadAt(c, place.Column, pictureHeight - static_cast<double>(place.Row));
  const double right = certainty.AcrossColumns, up = -static_cast<double>(certainty.AcrossRows);
  const double acrossX = std::fabs(right * cosine + up * sine);
  const double acrossY = std::fabs(up * cosine - right * sine);
  const double sigma = std::hypot(acrossX, acrossY);
  const double alongX = sigma / std::max(acrossX / sigma, std::sqrt(0.5));
  const double alongY = sigma / std::max(acrossY / sigma, 1.0 / 8);
  const PixelSize pixel = PixelSizeAt(c, X, Y);
  return {static_cast<float>(pixel.X * std::hypot(alongX, axes.X)),
          static_cast<float>(pixel.Y * std::hypot(alongY, axes.Y))};
}

bool HasStandardError(const PointStore& store, const AxisCalibration& calibration,
                      int pictureHeight, int row) {
  const PointId id = store.ListId[row];
  if (!HasPlace(store, id) || !CertaintyOf(store, id).IsKnown()) return false;
  const bool swapped = store.ListRows == PointStore::Rows::SwappedPlaces;
  const Place& place = store.Places[id];
  return Reads(calibration, place.Column, static_cast<float>(pictureHeight) - place.Row,
               swapped ? store.ListY[row] : store.ListX[row],
               swapped ? store.ListX[row] : store.ListY[row]);
}

std::vector<RowError> RowErrorsOf(const PointStore& store, const AxisCalibration& calibration,
                                  int pictureHeight, ErrorKind kind) {
  std::vector<RowError> errors;
  errors.reserve(static_cast<std::size_t>(store.ListCount));
  const bool swapped = store.ListRows == PointStore::Rows::SwappedPlaces;
  for (int i = 1; i <= store.ListCount; ++i) {
    if (kind == ErrorKind::Pixel || !HasStandardError(store, calibration, pictureHeight, i)) {
      errors.push_back(RowErrorAt(store.ListRows, calibration, store.ListX[i], store.ListY[i]));
      continue;
    }
    const PointId id = store.ListId[i];
    RowError error = StandardErrorAt(
        calibration, pictureHeight, store.Places[id], CertaintyOf(store, id),
        swapped ? store.ListY[i] : store.ListX[i], swapped ? store.ListX[i] : store.ListY[i]);
    if (swapped) std::swap(error.X, error.Y);
    errors.push_back(error);
  }
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
  const std::vector<RowError> pixels = RowErrorsOf(store, calibration, 0, ErrorKind::Pixel);
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
