#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "support/ascii_picture.h"
#include "tracing/extraction_context.h"

namespace graphize::test {

/// What a tracer or a scan works on, with a calibration whose graph values are the pixel column and
/// the row counted upward, exactly: 128 pixels are a power of two. The whole picture is in view.
struct ExtractionRecords {
  PlotImage Image;
  Viewport View;
  ReadOut Cursor;
  AxisPanel Panel;
  PointStore Store;
  CommandStates Commands;
  StatusBar Status{.Status = "before"};
  TracerControl Control;
  AxisCalibration Calibration;
  Settings Options;
  bool CapturePressed = true;

  explicit ExtractionRecords(const std::vector<std::string>& rows)
      : ExtractionRecords(MakePlotImage(rows)) {}
  explicit ExtractionRecords(PlotImage image) : Image(std::move(image)) {
    View.Width = Image.Width();
    View.Height = Image.Height();
    Calibration.Defined = {true, true, true};
    Calibration.ValueX = {0, 128, 0};
    Calibration.ValueY = {0, 0, 128};
    Calibration.PixelX = {0, 128, 0};
    Calibration.PixelY = {0, 0, 128};
    Calibration.XAxisLength = Calibration.YAxisLength = 128;
  }

  ExtractionContext With(const Desktop& desktop) {
    return {Image,  View,    Cursor,      Panel,   Store,   Commands,
            Status, Control, Calibration, Options, desktop, CapturePressed};
  }

  void Check(bool center, bool below, bool above) {
    Control.Center.Checked = center;
    Control.Below.Checked = below;
    Control.Above.Checked = above;
  }

  /// The captured points as "column,row" with the row counted downward, blanks between.
  std::string Captured() const {
    std::string text;
    for (int i = 1; i <= Store.CaptureCount; ++i) {
      const float row = static_cast<float>(Image.Height()) - Store.CaptureY[i];
      text += (i > 1 ? " " : "") + ShortestText(Store.CaptureX[i]) + "," + ShortestText(row);
    }
    return text;
  }
};

}  // namespace graphize::test
