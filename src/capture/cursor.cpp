#include "capture/cursor.h"

#include "base/number_pattern.h"
#include "base/numbers.h"

namespace graphize {

void ClearReadOut(ReadOut& readOut) {
  for (std::string* text : {&readOut.XValue, &readOut.YValue, &readOut.XPOS, &readOut.YPos})
    text->clear();
}

void MoveCursor(ReadOut& readOut, PointStore& store, const AxisCalibration& calibration,
                const Desktop& desktop, int pictureHeight, float x, float y) {
  const float rowUp = static_cast<float>(pictureHeight) - y;
  store.CurrentPlace = {x, y};
  store.CurrentPixelX = ToInt16(x);
  store.CurrentPixelY = ToInt16(rowUp);
  readOut.PlotX = store.CurrentPixelX;
  readOut.PlotY = pictureHeight - store.CurrentPixelY;
  if (!calibration.IsComplete()) return;
  Reading reading{store.CurrentX, store.CurrentY, readOut.ErrorX, readOut.ErrorY};
  Pixels2Real(calibration, desktop, readOut.Percent, x, rowUp, reading);
  store.CurrentX = reading.X;
  store.CurrentY = reading.Y;
  readOut.ErrorX = reading.ErrorX;
  readOut.ErrorY = reading.ErrorY;
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
