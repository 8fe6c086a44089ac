#include "calibration/transform.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/run_time_error.h"
#include "support/calibrated.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

Reading Read(const AxisCalibration& calibration, float x, float y, bool percent = false) {
  ScriptedDesktop desktop;
  Reading reading;
  Pixels2Real(calibration, desktop, percent, x, y, reading);
  return reading;
}

TEST(Transform, UprightLinearPlot) {
  const AxisCalibration c =
      Calibrate({{{100, 100, "0", "0"}, {500, 100, "10", "0"}, {100, 500, "0", "100"}}});
  const Reading r = Read(c, 300, 300);
  EXPECT_EQ(r.X, 5);
  EXPECT_EQ(r.Y, 50);
  EXPECT_FLOAT_EQ(r.ErrorX, 0.025f);
  EXPECT_FLOAT_EQ(r.ErrorY, 0.25f);
  const Reading percent = Read(c, 300, 300, true);
  EXPECT_FLOAT_EQ(percent.ErrorX, 0.5f);
  EXPECT_FLOAT_EQ(percent.ErrorY, 0.5f);

  Reading kept{.ErrorX = 7, .ErrorY = 8};
  Pixels2Real(c, ScriptedDesktop(), true, 100, 300, kept);
  EXPECT_EQ(kept.ErrorX, 7) << "a relative error at 0 stays as it was";
  EXPECT_FLOAT_EQ(kept.ErrorY, 0.5f);

  const AxisCalibration down =
      Calibrate({{{100, 100, "0", "0"}, {500, 100, "10", "0"}, {100, 50, "0", "100"}}});
  EXPECT_LT(Read(down, 300, 300).ErrorY, 0);
  EXPECT_FLOAT_EQ(PixelSizeAt(down, 5, 50).Y, 2);
}

TEST(Transform, LogAxes) {
  const AxisCalibration c = Calibrate(
      {{{100, 100, "0", "1"}, {500, 100, "10", "1"}, {100, 500, "0", "100"}}}, false, true);
  const Reading r = Read(c, 300, 300);
  EXPECT_FLOAT_EQ(r.Y, 10);
  EXPECT_NEAR(r.ErrorY, 0.1151, 1e-4);
  EXPECT_NEAR(Read(c, 300, 300, true).ErrorY, 0.005 * 230.2585, 1e-5);
}

TEST(Transform, LogOriginsMustBePositive) {
  const std::array<AxisPoint, 3> points = {
      {{0, 0, "-1", "0"}, {10, 0, "10", "0"}, {0, 10, "-1", "9"}}};
  struct Case {
    bool xLog, yLog;
    const char* message;  // none: silent
  };
  for (const auto& [xLog, yLog, message] :
       {Case{true, false, "X origin must be positive for Log Axis"},
        Case{false, true, "Y origin must be positive for Log Axis"}, Case{true, true, nullptr}}) {
    const AxisCalibration c = Calibrate(points, xLog, yLog);
    ScriptedDesktop desktop;
    if (message != nullptr) desktop.ExpectMessage(message);
    Reading reading{1, 2, 3, 4};
    Pixels2Real(c, desktop, false, 5, 5, reading);
    EXPECT_EQ(reading.X, 1);
    EXPECT_EQ(reading.Y, 2);
    EXPECT_EQ(reading.ErrorX, 3);
    for (const Message& m : desktop.Messages) EXPECT_EQ(m.Icon, MessageIcon::Critical);
  }
}

TEST(Transform, ARotatedAxisReadsItsOwnValues) {
  const AxisCalibration c =
      Calibrate({{{50, 200, "0", "3"}, {250, 180, "20", "3"}, {50, 20, "0", "9"}}});
  for (const int step : {0, 3, 7, 20}) {
    const Reading r = Read(c, static_cast<float>(50 + 10 * step), static_cast<float>(200 - step));
    EXPECT_NEAR(r.Y, 3, 1e-5);
    EXPECT_NEAR(r.X, step, 1e-4);
  }
}

TEST(Transform, PixelsToValuesAndBack) {
  const std::array<AxisPoint, 3> linear = {
      {{70, 50, "-3", "0.5"}, {600, 66, "12", "0.5"}, {70, 460, "-3", "-80"}}};
  const std::array<AxisPoint, 3> logarithmic = {
      {{600, 400, "0.01", "1"}, {70, 390, "1e4", "1"}, {600, 20, "0.01", "1e-6"}}};
  for (const AxisCalibration& c : {Calibrate(linear), Calibrate(logarithmic, true, true)}) {
    for (int column = -40; column < 700; column += 37) {
      for (int rowUp = -11; rowUp < 520; rowUp += 29) {
        const Reading r = Read(c, static_cast<float>(column), static_cast<float>(rowUp));
        const auto pixel = Real2Pixels(c, 480, r.X, r.Y);
        ASSERT_TRUE(pixel);
        EXPECT_EQ(pixel->X, column);
        EXPECT_EQ(480 - pixel->Y, rowUp);
      }
    }
  }
}

TEST(Transform, WhatIsOutOfRangeIsNoPixelAndNoValue) {
  const AxisCalibration c = PixelCalibration();
  for (const float value : {1e6f, -INFINITY, NAN}) {
    EXPECT_FALSE(Real2Pixels(c, 100, value, 0));
    EXPECT_FALSE(Real2Pixels(c, 100, 0, value));
  }
  for (const float edge : {32767.0f, -32767.0f}) {
    EXPECT_TRUE(Real2Pixels(c, 100, edge, edge));
    EXPECT_FALSE(Real2Pixels(c, 100, edge + std::copysign(1.0f, edge), 0));
    EXPECT_FALSE(Real2Pixels(c, 100, 0, edge + std::copysign(1.0f, edge)));
  }
  // A log axis whose point is not positive has no values: nothing of the reading changes.
  AxisCalibration bad = test::PixelCalibration();
  bad.XLog = true;
  bad.ValueX = {1, -5, 1};
  ScriptedDesktop desktop;
  Reading reading{1, 2, 3, 4};
  EXPECT_THROW(Pixels2Real(bad, desktop, false, 5, 5, reading), RunTimeError);
  EXPECT_EQ(reading.X, 1);
  EXPECT_EQ(reading.Y, 2);
}

}  // namespace
}  // namespace graphize::test
