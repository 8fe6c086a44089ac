#include "support/calibrated.h"
#include "base/numbers.h"

#include <gtest/gtest.h>

#include "support/scripted_desktop.h"

namespace graphize::test {

AxisCalibration Calibrate(const std::array<AxisPoint, 3>& points, bool xLog, bool yLog) {
  AxisCalibration calibration;
  AxisPanel panel;
  CommandStates commands;
  ScriptedDesktop desktop;
  InitAxisDefFrame(calibration, panel);
  calibration.XLog = xLog;
  calibration.YLog = yLog;
  for (int row = 0; row < 3; ++row) {
    panel.Rows[row].XText = points[row].X;
    panel.Rows[row].YText = points[row].Y;
    EXPECT_TRUE(DefineAxis(calibration, panel, commands, desktop, row, ToInt16(points[row].Column),
                           ToInt16(points[row].RowUp)));
  }
  return calibration;
}

AxisCalibration PixelCalibration() {
  return Calibrate({{{0, 0, "0", "0"}, {100, 0, "100", "0"}, {0, 100, "0", "100"}}});
}

}  // namespace graphize::test
