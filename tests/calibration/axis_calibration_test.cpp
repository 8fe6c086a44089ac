#include "calibration/axis_calibration.h"
#include "base/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/run_time_error.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

class AxisCalibrationTest : public ::testing::Test {
 protected:
  AxisCalibrationTest() { InitAxisDefFrame(calibration, panel); }

  bool Define(int row, int x, int y, const char* X = nullptr, const char* Y = nullptr) {
    if (X != nullptr) panel.Rows[row].XText = X;
    if (Y != nullptr) panel.Rows[row].YText = Y;
    return DefineAxis(calibration, panel, commands, desktop, row, ToInt16(x), ToInt16(y));
  }

  AxisCalibration calibration;
  AxisPanel panel;
  CommandStates commands;
  ScriptedDesktop desktop;
};

TEST_F(AxisCalibrationTest, ThreeClicksCompleteTheDefinition) {
  EXPECT_TRUE(calibration.Armed[0]);
  EXPECT_TRUE(panel.Rows[0].XEnabled && panel.Rows[0].YEnabled);
  EXPECT_FALSE(panel.Rows[1].XEnabled || panel.Rows[2].YEnabled);

  ASSERT_TRUE(Define(0, 100, 50, "0.1", "-2"));
  EXPECT_EQ(panel.Rows[1].YText, "-2");
  EXPECT_EQ(panel.Focus, FocusTarget::X1);
  EXPECT_TRUE(panel.Rows[1].XEnabled && !panel.Rows[1].YEnabled && !panel.Rows[0].XEnabled);

  ASSERT_TRUE(Define(1, 110, 51, "1e3"));
  EXPECT_EQ(panel.Angle, "5.7");  // 5.71 with the divisor 3.14
  EXPECT_EQ(panel.Rows[2].XText, "0.1");
  EXPECT_NEAR(calibration.XAxisLength, std::sqrt(101.0f), 1e-5);
  EXPECT_EQ(panel.Focus, FocusTarget::Y2);
  EXPECT_FALSE(commands.Graphize);

  ASSERT_TRUE(Define(2, 7, 250, nullptr, "8"));
  EXPECT_TRUE(calibration.IsComplete());
  EXPECT_NEAR(calibration.YAxisLength, 200 / std::cos(std::atan(0.1f)), 1e-3);
  EXPECT_TRUE(commands.Graphize && commands.GridBuster);
  EXPECT_EQ(panel.Tips, "To continue, click the Graphize button");
  EXPECT_EQ(calibration.ValueX[1], 1000);
  EXPECT_EQ(panel.Rows[1].XPixel, "110");
  for (const AxisPanel::Row& row : panel.Rows) EXPECT_TRUE(row.ReDefineEnabled);

  EXPECT_FALSE(Define(2, 9, 99)) << "a row already defined";
  EXPECT_EQ(calibration.PixelY[2], 250);
}

TEST_F(AxisCalibrationTest, TheAngleIsShownWithTheDivisor314) {
  ASSERT_TRUE(Define(0, 0, 0, "0", "0"));
  ASSERT_TRUE(Define(1, 478, 477, "1"));
  EXPECT_EQ(panel.Angle, "45.0");  // 44.94 degrees
}

TEST_F(AxisCalibrationTest, ABoxShowsTheNumberThatWasReadAndTheTipSaysSo) {
  ASSERT_TRUE(Define(0, 100, 50, "0,5", "\u22122"));
  EXPECT_EQ(Instruction(panel).find("was read"), std::string::npos);
  EXPECT_EQ(calibration.ValueX[0], 0.5f);
  EXPECT_EQ(calibration.ValueY[0], -2);
  desktop.ExpectMessage("Please ReDefine X axis");
  EXPECT_FALSE(Define(1, 100, 50, "12 m"));
  EXPECT_EQ(Instruction(panel).find("X was read as 12. Enter an X axis value"), 0u);
  ASSERT_TRUE(Define(1, 110, 50, "1,000"));
  EXPECT_EQ(panel.Rows[1].XText, "1");
  EXPECT_EQ(Instruction(panel).find("X was read as 1. Enter a Y axis value"), 0u);
  ASSERT_TRUE(Define(2, 100, 90, nullptr, "high"));
  EXPECT_EQ(panel.Rows[2].YText, "0");
  EXPECT_EQ(Instruction(panel), "Y was read as 0. To continue, click the Graphize button");
}

TEST_F(AxisCalibrationTest, RefusalsKeepTheEarlierRows) {
  desktop.ExpectMessage("Please enter values in the X,Y boxes and then click on the plot");
  EXPECT_FALSE(Define(0, 10, 10, "0", ""));
  EXPECT_FALSE(calibration.Defined[0]);
  ASSERT_TRUE(Define(0, 10, 10, "0", "0"));

  desktop.ExpectMessage("Origin and axis point can't be same, Please ReDefine X axis");
  EXPECT_FALSE(Define(1, 10, 400, "5")) << "straight above the origin";
  EXPECT_TRUE(calibration.Defined[0] && !calibration.Defined[1] && !calibration.Armed[1]);
  ASSERT_TRUE(Define(1, 4, 10, "5"));
  EXPECT_LT(calibration.XAxisLength, 0) << "to the left of the origin";
  EXPECT_LT(std::abs(calibration.Angle), 1.6f);

  desktop.ExpectMessage("Origin and axis point can't be identical, Please ReDefine Y axis");
  EXPECT_FALSE(Define(2, 500, 10, nullptr, "3")) << "in the origin's row";
  EXPECT_FALSE(calibration.IsComplete() || commands.Graphize);
  ASSERT_TRUE(Define(2, 500, 9, nullptr, "3")) << "only its row counts";
  EXPECT_EQ(calibration.YAxisLength, -1);
}

TEST_F(AxisCalibrationTest, OverflowChangesNothing) {
  ASSERT_TRUE(Define(0, -20000, 0, "0", "0"));
  for (const auto& [x, value] : {std::pair{20000, "1"}, {10, "1e999"}, {40000, "1"}}) {
    EXPECT_THROW(Define(1, x, 0, value), RunTimeError) << x << ' ' << value;
    EXPECT_FALSE(calibration.Defined[1]);
    EXPECT_TRUE(calibration.Armed[1]);
  }
  EXPECT_THROW(DefineAxis(calibration, panel, commands, desktop, 3, 0, 0), RunTimeError);
  EXPECT_THROW(ReDefineAxis(calibration, panel, commands, -1), RunTimeError);
}

TEST_F(AxisCalibrationTest, ReDefineOpensTheRowAndThoseAfterIt) {
  Define(0, 10, 10, "0", "0");
  Define(1, 20, 10, "5");
  Define(2, 10, 20, nullptr, "5");
  ReDefineAxis(calibration, panel, commands, 1);
  EXPECT_EQ(calibration.CurrentRow, 1);
  EXPECT_TRUE(calibration.Defined[0] && !calibration.Defined[1] && !calibration.Defined[2]);
  EXPECT_TRUE(panel.Rows[1].XEnabled && panel.Rows[1].YEnabled && !panel.Rows[0].XEnabled);
  EXPECT_EQ(panel.Rows[1].XText, "5") << "what was typed stays";
  EXPECT_FALSE(commands.Graphize);
  EXPECT_TRUE(commands.GridBuster);
  for (const AxisPanel::Row& row : panel.Rows) EXPECT_FALSE(row.ReDefineEnabled);
  ReDefineAxis(calibration, panel, commands, 2);
  EXPECT_EQ(panel.Tips, "Enter an Y axis value and click on the apropriate location on the plot");
  EXPECT_EQ(panel.Focus, FocusTarget::Y2);
}

TEST_F(AxisCalibrationTest, TheMousePullsTheFocusOfTheOriginOnlyUntilTheUserTabsOn) {
  FocusArmedRow(calibration, panel);
  EXPECT_EQ(panel.Focus, FocusTarget::X0);
  panel.Focus = FocusTarget::None;
  calibration.FocusOriginPending = false;
  FocusArmedRow(calibration, panel);
  EXPECT_EQ(panel.Focus, FocusTarget::None);
}

}  // namespace
}  // namespace graphize::test
