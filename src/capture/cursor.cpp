#include "capture/cursor.h"

#include <algorithm>
#include <cstdint>

#include "base/number_pattern.h"
#include "base/numbers.h"

namespace graphize {

void ClearReadOut(ReadOut& readOut) {
  for (std::string* text : {&readOut.XValue, &readOut.YValue, &readOut.XPOS, &readOut.YPos})
    text->clear();
}

namespace {

float RowUp(int pictureHeight, float row) {
  return static_cast<float>(pictureHeight) - row;
}

void PutOnPixel(ReadOut& readOut, PointStore& store, int pictureHeight, const Place& place) {
  store.CurrentPlace = place;
  store.CurrentPixelX = ToInt16(place.Column);
  store.CurrentPixelY = ToInt16(RowUp(pictureHeight, place.Row));
  readOut.PlotX = store.CurrentPixelX;
  readOut.PlotY = pictureHeight - store.CurrentPixelY;
}

}  // namespace

void MoveCursor(ReadOut& readOut, PointStore& store, const AxisCalibration& calibration,
                const Desktop& desktop, int pictureHeight, float x, float y) {
  PutOnPixel(readOut, store, pictureHeight, {x, y});
  if (!calibration.IsComplete()) return;
  Reading reading{store.CurrentX, store.CurrentY, readOut.ErrorX, readOut.ErrorY};
  Pixels2Real(calibration, desktop, readOut.Percent, x, RowUp(pictureHeight, y), reading);
  store.CurrentX = reading.X;
  store.CurrentY = reading.Y;
  readOut.ErrorX = reading.ErrorX;
  readOut.ErrorY = reading.ErrorY;
}

std::size_t MoveCursor(ReadOut& readOut, PointStore& store, const AxisCalibration& calibration,
                       int pictureHeight, FoundPoints& points) {
  auto& [places, X, Y] = points;
  const auto hasPixel = [&](const Place& place) {
    return FitsRounded<std::int16_t>(place.Column) &&
           FitsRounded<std::int16_t>(RowUp(pictureHeight, place.Row));
  };
  auto count =
      static_cast<std::size_t>(std::ranges::find_if_not(places, hasPixel) - places.begin());
  if (calibration.IsComplete()) {
    X.resize(count);
    Y.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      X[i] = places[i].Column;
      Y[i] = RowUp(pictureHeight, places[i].Row);
    }
    count = Pixels2Real(calibration, readOut.Percent, X, Y, readOut.ErrorX, readOut.ErrorY);
  }
  if (count == 0) return 0;
  PutOnPixel(readOut, store, pictureHeight, places[count - 1]);
  if (calibration.IsComplete()) {
    store.CurrentX = X[count - 1];
    store.CurrentY = Y[count - 1];
  }
  return count;
}

void ShowCursor(ReadOut& readOut, AxisPanel& panel, const PointStore& store,
                const AxisCalibration& calibration) {
  panel.LiveXPixel = std::to_string(store.CurrentPixelX);
  panel.LiveYPixel = std::to_string(store.CurrentPixelY);
  if (calibration.IsComplete()) {
    readOut.XValue = FormatNumber(store.CurrentX, kReadingPattern);
    readOut.YValue = FormatNumber(store.CurrentY, kReadingPattern);
  }
  if (!readOut.ShowError) {
    readOut.XPOS = panel.LiveXPixel;
    readOut.YPos = panel.LiveYPixel;
    return;
  }
  const std::string_view pattern = readOut.Percent ? kPercentPattern : kReadingPattern;
  const char* unit = readOut.Percent ? "%" : "";
  readOut.XPOS = FormatNumber(readOut.ErrorX, pattern) + unit;
  readOut.YPos = FormatNumber(readOut.ErrorY, pattern) + unit;
}

void ReadCursor(ReadOut& readOut, AxisPanel& panel, PointStore& store,
                const AxisCalibration& calibration, const Desktop& desktop, int pictureHeight,
                float x, float y) {
  MoveCursor(readOut, store, calibration, desktop, pictureHeight, x, y);
  ShowCursor(readOut, panel, store, calibration);
}

}  // namespace graphize
