#include "data/integration.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "base/palette.h"
#include "support/ascii_picture.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
using Rows = std::vector<std::string>;

/// A picture whose value (0, level) is at column 0 and `level` rows above the bottom edge; one unit
/// is one pixel.
AxisCalibration PixelUnits(float level = 0) {
  AxisCalibration c;
  c.Defined = {true, true, true};
  c.PixelX = {0, 10, 0};
  c.PixelY = {static_cast<std::int16_t>(level), static_cast<std::int16_t>(level), 10};
  c.ValueX = {0, 10, 0};
  c.ValueY = {level, level, 10};
  c.XAxisLength = 10;
  c.YAxisLength = 10 - level;
  return c;
}

TEST(TrapezoidSum, PairsEveryPointWithTheOneBefore) {
  const std::tuple<const char*, RowList, int, int, float> cases[] = {
      {"from element 0", {{1, 1}, {2, 1}, {3, 1}}, 1, 3, 2.5f},
      {"falling X", {{3, 1}, {2, 1}, {1, 1}}, 2, 3, -2},
      {"a straight line", {{0, 0}, {1, 2}, {2.5f, 5}, {4, 8}, {10, 20}}, 1, 5, 100},
      {"no range", {{1, 1}}, 2, 1, 0},
      {"infinite", {{0, 0}, {1, kInfinity}}, 1, 2, kInfinity},
  };
  for (const auto& [name, points, low, high, area] : cases)
    EXPECT_EQ(TrapezoidSum(MakeStore(points), low, high), area) << name;
}

TEST(TrapezoidSum, AdjoiningRangesAddUp) {
  RowList points;
  for (int i = 0; i <= 64; ++i) {
    const float x = static_cast<float>(i) / 8;
    points.push_back({x, x * (8 - x)});
  }
  const PointStore store = MakeStore(points);
  for (int split = 1; split < 65; ++split)
    EXPECT_FLOAT_EQ(TrapezoidSum(store, 1, split) + TrapezoidSum(store, split + 1, 65),
                    TrapezoidSum(store, 1, 65));
  // The parabola's area is 8^3 / 6.
  EXPECT_NEAR(TrapezoidSum(store, 1, 65), 512.0 / 6, 0.05);
}

TEST(IntegrateForm, LimitsKeepTheirDistance) {
  RowList points;
  for (int i = 1; i <= 8; ++i) points.push_back({0.1f * static_cast<float>(i), 1});
  const PointStore store = MakeStore(points);
  IntegrateForm form = OpenIntegrate(store);
  EXPECT_EQ(form.Xmin, "0.1");
  EXPECT_EQ(form.Xmax, "0.8");
  EXPECT_EQ(form.AreaText, "Click the integrate button");

  // High limit, value, accepted, the limits and the label of the moved one after the move.
  const std::tuple<bool, int, bool, int, int, const char*> moves[] = {
      {false, 5, true, 5, 8, "0.5"},     {false, 6, false, 5, 8, "0.5"},
      {true, 7, false, 5, 8, "0.8"},     {false, 2, true, 2, 8, "0.2"},
      {true, 5, true, 2, 5, "0.5"},      {true, 4, false, 2, 5, "0.5"},
      {true, 40000, false, 2, 5, "0.5"}, {false, -32768, false, 2, 5, "0.2"},
  };
  for (const auto& [isHigh, value, accepted, low, high, label] : moves) {
    SCOPED_TRACE(value);
    EXPECT_EQ((isHigh ? MoveHighLimit : MoveLowLimit)(form, store, value), accepted);
    EXPECT_EQ(form.LowLimit, low);
    EXPECT_EQ(form.HighLimit, high);
    EXPECT_EQ(isHigh ? form.Xmax : form.Xmin, label);
  }

  const PointStore three = MakeStore({{1, 1}, {2, 1}, {3, 1}});
  IntegrateForm fixed = OpenIntegrate(three);
  for (int value = 0; value <= 4; ++value) {
    // A slider that stands where it is moves nowhere either.
    EXPECT_FALSE(MoveLowLimit(fixed, three, value));
    EXPECT_FALSE(MoveHighLimit(fixed, three, value));
  }
}

TEST(Integrate, ShowsTheAreaAndShadesToTheOriginsLevel) {
  AxisCalibration incomplete = PixelUnits(), degenerate = PixelUnits();
  incomplete.Defined[2] = false;
  degenerate.ValueX[1] = degenerate.ValueX[0];
  const RowList points = {{1, 1}, {2, 3}, {3, 2}};
  const char* const nothing = "...... ...... ...... ......";
  // Calibration, points, area, the shading.
  const std::tuple<AxisCalibration, RowList, const char*, const char*> cases[] = {
      {PixelUnits(), points, "5", "...... ..?... ..??.. .???.."},
      {PixelUnits(2), {{1, 4}, {2, 1}, {4, 2}}, "7.5", ".?.... .?.... .??.?. ..?..."},
      {PixelUnits(9), {{1, 1}, {2, 3}, {3, 4}}, "6", ".???.. .??... .?.... .?...."},
      {PixelUnits(), {{1e30f, 3}, {2, 1e30f}, {3, -1e30f}}, "", "..?... ..?... ..?... ..?..."},
      {PixelUnits(), {{kNaN, 3}, {2, kInfinity}, {3, 1}}, "", "...... ...... ...... ...?.."},
      {incomplete, points, "5", nothing},
      {degenerate, points, "5", nothing},
  };
  for (const auto& [calibration, rows, area, picture] : cases) {
    SCOPED_TRACE(picture);
    const PointStore store = MakeStore(rows);
    PlotImage plot = MakePlotImage(RowsOf(nothing));
    IntegrateForm form = OpenIntegrate(store);
    Integrate(form, store, calibration, plot, ScriptedDesktop());
    EXPECT_TRUE(*area == '\0' || form.AreaText == area) << form.AreaText;
    EXPECT_EQ(Show(plot), RowsOf(picture));
    for (const OverdrawnPixel& mark : plot.Marks)
      EXPECT_EQ(plot.Pixels.Pixels()[mark.Index], PixelOfColour(MakeColour(0, 0, 128)));
    ClearMarks(plot);
    EXPECT_EQ(Show(plot), RowsOf(nothing));
  }
}

TEST(Integrate, ShadesOnlyTheRangeAndStopsOnEscapeWithTheWholeArea) {
  const PointStore store = MakeStore({{0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}});
  IntegrateForm form = OpenIntegrate(store);
  ASSERT_TRUE(MoveLowLimit(form, store, 2));
  ASSERT_TRUE(MoveHighLimit(form, store, 5));
  PlotImage plot = MakePlotImage({"......"});
  Integrate(form, store, PixelUnits(), plot, ScriptedDesktop());
  EXPECT_EQ(Show(plot), Rows{".????."});
  EXPECT_EQ(form.AreaText, "4");

  ClearMarks(plot);
  ScriptedDesktop desktop;
  desktop.EscapeAfter = 1;
  Integrate(form, store, PixelUnits(), plot, desktop);
  EXPECT_EQ(Show(plot), Rows{".??..."});
  EXPECT_EQ(form.AreaText, "4");
}

}  // namespace
}  // namespace graphize::test
