#include "capture/cursor.h"

#include "base/number_pattern.h"
#include "base/numbers.h"

namespace graphize {

void ReadCursor(ReadOut& readOut, AxisPanel& panel, PointStore& store,
                const AxisCalibration& calibration, const Desktop& desktop, int pictureHeight,
                float x, float y) {
  const float rowUp = static_cast<float>(pictureHeight) - y;
  store.CurrentPixelX = ToInt16(x);
  store.CurrentPixelY = ToInt16(rowUp);
  readOut.PlotX = store.CurrentPixelX;
  readOut.PlotY = pictureHeight - store.CurrentPixelY;
  panel.LiveXPixel = std::to_string(store.CurrentPixelX);
  panel.LiveYPixel = std::to_string(store.CurrentPixelY);

  if (calibration.IsComplete()) {
    Reading reading{store.CurrentX, store.CurrentY, readOut.ErrorX, readOut.ErrorY};
    Pixels2Real(calibration, desktop, readOut.Percent, x, rowUp, reading);
    store.CurrentX = reading.X;
    store.CurrentY = reading.Y;
    readOut.ErrorX = reading.ErrorX;
    readOut.ErrorY = reading.ErrorY;
    readOut.XValue = FormatNumber(reading.X, kReadingPattern);
    readOut.YValue = FormatNumber(reading.Y, kReadingPattern);
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

}  // namespace graphize
