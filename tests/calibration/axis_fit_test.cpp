#include "calibration/axis_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "calibration/axes_grid.h"
#include "calibration/transform.h"
#include "support/calibrated.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

/// Axes of known places: X from 0 to 10 over 600 pixels, Y over 400, turned and skewed about the
/// origin at column 100, row 80 (upward).
struct TrueAxes {
  double Turn = 0, Skew = 0;  // degrees
  bool YLog = false;          // Y from 1 to 1e4 instead of 0 to 4

  ExactPlace At(double x, double y) const {
    const double u = 60 * x, v = 100 * (YLog ? std::log10(y) : y);
    const double lean = (Turn + Skew + 90) * kDegree;
    return {static_cast<float>(100 + u * std::cos(Turn * kDegree) + v * std::cos(lean)),
            static_cast<float>(80 + u * std::sin(Turn * kDegree) + v * std::sin(lean))};
  }
  double Y(double part) const { return YLog ? std::pow(10, 4 * part) : 4 * part; }

  /// The three clicks, on whole pixels as a hand that is off by `aim` pixels makes them.
  AxisCalibration Clicked(std::mt19937& random, double aim) const {
    std::array<ExactPlace, 3> at = {At(0, Y(0)), At(10, Y(0)), At(0, Y(1))};
    for (ExactPlace& place : at) place = Missed(place, random, aim);
    const auto whole = [](float place) { return static_cast<int>(std::lround(place)); };
    const char* low = YLog ? "1" : "0";
    return Calibrate({{{whole(at[0].Column), whole(at[0].RowUp), "0", low},
                       {whole(at[1].Column), whole(at[1].RowUp), "10", low},
                       {whole(at[2].Column), whole(at[2].RowUp), "0", YLog ? "1e4" : "4"}}},
                     false, YLog);
  }
  static ExactPlace Missed(ExactPlace at, std::mt19937& random, double aim) {
    if (aim == 0) return at;
    std::normal_distribution<float> miss(0, static_cast<float>(aim));
    return {at.Column + miss(random), at.RowUp + miss(random)};
  }
  /// References all over the plot, both values known.
  void AddReferences(AxisCalibration& axes, int count, std::mt19937& random, double aim) const {
    for (int i = 0; i < count; ++i) {
      const double x = 10 * (i % 3) / 2.0, y = Y(std::fmod(0.37 * i + 0.3, 1));
      axes.Refined.References.push_back(
          {Missed(At(x, y), random, aim), static_cast<float>(x), static_cast<float>(y)});
    }
  }
};

double WorstCorner(const AxisCalibration& axes, const TrueAxes& truth) {
  double worst = 0;
  for (const double x : {0.0, 10.0})
    for (const double part : {0.0, 1.0}) {
      const float y = static_cast<float>(truth.Y(part));
      const PlotPosition at = PositionOfReal(axes, 600, static_cast<float>(x), y);
      const ExactPlace real = truth.At(x, y);
      worst = std::max(worst, std::hypot(static_cast<double>(at.Column) - real.Column,
                                         600.0 - at.Row - real.RowUp));
    }
  return worst;
}

TEST(AxisFit, ExactReferencesGiveTheAxesBackAndEveryReadingFollows) {
  std::mt19937 random(1);
  for (const TrueAxes& truth : {TrueAxes{},
                                {.Turn = 3},
                                {.Turn = -2, .YLog = true},
                                {.Turn = 1, .Skew = 1},
                                {.Skew = -0.1}}) {
    SCOPED_TRACE(std::to_string(truth.Turn) + ", " + std::to_string(truth.Skew));
    AxisCalibration axes = truth.Clicked(random, 0);
    truth.AddReferences(axes, 20, random, 0);
    // Those that know one value help, too.
    axes.Refined.References.push_back({truth.At(5, truth.Y(0.5)), 5.0f, std::nullopt});
    axes.Refined.References.push_back(
        {truth.At(5, truth.Y(0.5)), std::nullopt, static_cast<float>(truth.Y(0.5))});
    ASSERT_TRUE(SwitchRefined(axes, true));
    EXPECT_EQ(FitAxes(axes)->IsSkewed, std::fabs(truth.Skew) > 0.5);
    // The rows' whole pixels are what is left.
    EXPECT_LT(WorstCorner(axes, truth), 0.35 + (truth.Skew == -0.1 ? 0.4 : 0));
    Reading reading;
    for (const auto& [x, y] : {std::pair(130.0f, 90.0f), {420.5f, 300.25f}}) {
      Pixels2Real(axes, ScriptedDesktop(), false, x, y, reading);
      const RealPoint real = RealPointAt(axes, x, y);
      EXPECT_EQ(reading.X, static_cast<float>(real.X));
      EXPECT_TRUE(Reads(axes, x, y, reading.X, reading.Y));
      const PlotPosition back = PositionOfReal(axes, 600, reading.X, reading.Y);
      EXPECT_NEAR(back.Column, x, 0.01);
      EXPECT_NEAR(600 - back.Row, y, 0.01);
      // The error is what one pixel makes.
      EXPECT_NEAR(reading.ErrorX, RealPointAt(axes, x + 1, y).X - real.X, 1e-5);
    }
    ASSERT_TRUE(SwitchRefined(axes, false));
    EXPECT_EQ(axes.Refined.Scale, AffineMap{});
  }
}

TEST(AxisFit, ThreeRowsAloneAreTheThreeClicks) {
  // Turned by 3 to 4, so that the Y-axis point lies on whole pixels.
  for (const bool log : {false, true}) {
    AxisCalibration axes =
        Calibrate({{{300, 80, "1", "2"}, {700, 380, "11", "2"}, {150, 280, "1", "200"}}}, log, log);
    const RealPoint plain = RealPointAt(axes, 333, 222);
    const AffineMap scale = ScaleOf(axes);
    EXPECT_FALSE(SwitchRefined(axes, true)) << "there is nothing to refine them by";
    // An exact place that is the whole pixel changes nothing, either.
    axes.Refined.Rows[0] = {300, 80};
    ASSERT_TRUE(SwitchRefined(axes, true));
    EXPECT_NEAR(RealPointAt(axes, 333, 222).X, plain.X, 1e-9 * std::fabs(plain.X));
    EXPECT_NEAR(RealPointAt(axes, 333, 222).Y, plain.Y, 1e-9 * std::fabs(plain.Y));
    EXPECT_NEAR(axes.Refined.Scale.XX, scale.XX, 1e-12);
    EXPECT_NEAR(axes.Refined.Scale.YX, scale.YX, 1e-12);
    // A tick at a part of a pixel moves what is read.
    axes.Refined.Rows[1] = {700.4f, 380.3f};
    ASSERT_TRUE(SwitchRefined(axes, true));
    EXPECT_LT(RealPointAt(axes, 333, 222).X, plain.X);
  }
}

TEST(AxisFit, MoreClicksReadBetterAndASlipIsNamed) {
  std::mt19937 random(3);
  int rightlyNamed = 0, wronglyNamed = 0, skewed = 0, disagree = 0, agree = 0;
  double plain = 0, refined = 0;
  constexpr int kRuns = 200;
  for (int run = 0; run < kRuns; ++run) {
    const TrueAxes truth{.Turn = run % 5 - 2.0};
    AxisCalibration axes = truth.Clicked(random, 0.7);
    plain += WorstCorner(axes, truth) / kRuns;
    truth.AddReferences(axes, 7, random, 0.7);
    ASSERT_TRUE(SwitchRefined(axes, true));
    refined += WorstCorner(axes, truth) / kRuns;
    skewed += FitAxes(axes)->IsSkewed ? 1 : 0;
    wronglyNamed += FitAxes(axes)->Doubtful ? 1 : 0;
    const int slipped = run % 7;
    axes.Refined.References[static_cast<std::size_t>(slipped)].At.Column += 8;
    rightlyNamed += FitAxes(axes)->Doubtful == 3 + slipped ? 1 : 0;
    axes.Refined.References.resize(3);
    EXPECT_FALSE(FitAxes(axes)->Doubtful) << "six do not tell which";
    if (slipped < 3)
      disagree += FitAxes(axes)->Disagree ? 1 : 0;
    else
      agree += FitAxes(axes)->Disagree ? 0 : 1;
  }
  EXPECT_LT(refined, 0.6 * plain);
  EXPECT_LE(skewed, 4);
  EXPECT_LE(wronglyNamed, 4);
  EXPECT_GE(rightlyNamed, 190);
  EXPECT_GE(disagree, 65) << "of 87 or so";
  EXPECT_GE(agree, 108) << "of 113 or so";
}

TEST(AxisFit, ReferencesAlongAnAxisTellOfNoSkew) {
  std::mt19937 random(5);
  const TrueAxes truth;
  for (int run = 0; run < 40; ++run) {
    AxisCalibration axes = truth.Clicked(random, 0.7);
    for (int i = 1; i <= 6; ++i) {
      axes.Refined.References.push_back({TrueAxes::Missed(truth.At(1.5 * i, 0), random, 0.7),
                                         static_cast<float>(1.5 * i), std::nullopt});
      axes.Refined.References.push_back({TrueAxes::Missed(truth.At(0, 0.6 * i), random, 0.7),
                                         std::nullopt, static_cast<float>(0.6 * i)});
    }
    axes.Refined.References[4].At.Column += 7;
    ASSERT_TRUE(SwitchRefined(axes, true));
    EXPECT_FALSE(FitAxes(axes)->IsSkewed) << run;
    EXPECT_LT(WorstCorner(axes, truth), 8) << run;
  }
}

TEST(AxisFit, ItIsAsUncertainAsItScatters) {
  std::mt19937 random(4);
  const TrueAxes truth;
  double squares = 0, stated = 0;
  constexpr int kRuns = 300;
  for (int run = 0; run < kRuns; ++run) {
    AxisCalibration axes = truth.Clicked(random, 0.7);
    truth.AddReferences(axes, 9, random, 0.7);
    ASSERT_TRUE(SwitchRefined(axes, true));
    const ExactPlace corner = truth.At(10, 4);
    const double off = (RealPointAt(axes, corner.Column, corner.RowUp).X - 10) * 60;
    squares += off * off / kRuns;
    stated += SpreadAt(axes, corner.Column, corner.RowUp).X / kRuns;
  }
  EXPECT_NEAR(stated / std::sqrt(squares), 1, 0.2);
}

TEST(AxisFit, AChangeOfARowDropsItAndKeepsTheReferences) {
  std::mt19937 random(5);
  AxisCalibration axes = TrueAxes{}.Clicked(random, 0);
  TrueAxes{}.AddReferences(axes, 4, random, 0);
  AxisPanel panel;
  CommandStates commands;
  const auto refine = [&] {
    axes.Refined.Rows.fill(ExactPlace{1, 1});
    axes.Defined = {true, true, true};
    EXPECT_TRUE(SwitchRefined(axes, true));
  };
  refine();
  ReDefineAxis(axes, panel, commands, 1);
  EXPECT_FALSE(axes.Refined.On);
  EXPECT_TRUE(axes.Refined.Rows[0]);
  EXPECT_FALSE(axes.Refined.Rows[1] || axes.Refined.Rows[2]);
  EXPECT_EQ(axes.Refined.References.size(), 4u);
  EXPECT_FALSE(FitAxes(axes)) << "without a complete definition";
  refine();
  SetYLog(axes, true);
  EXPECT_FALSE(axes.Refined.On);
  InitAxisDefFrame(axes, panel);
  EXPECT_EQ(axes.Refined, AxisRefinement{});
}

/// The lines lie where the transform has their values, whatever it is.
TEST(AxesGrid, ItsLinesLieAtRoundValues) {
  std::mt19937 random(6);
  for (const TrueAxes& truth :
       {TrueAxes{}, {.Turn = 4}, {.Turn = -3, .YLog = true}, {.Turn = 1, .Skew = 1}}) {
    AxisCalibration axes = truth.Clicked(random, 0);
    if (truth.Skew != 0) {
      truth.AddReferences(axes, 9, random, 0);
      ASSERT_TRUE(SwitchRefined(axes, true));
    }
    const PicturePart part{50, 40, 650, 560};
    const std::vector<ValueLine> lines = AxesGrid(axes, 600, part);
    int ofX = 0, ofY = 0;
    for (const ValueLine& line : lines) {
      (line.OfX ? ofX : ofY) += 1;
      for (const auto& [column, row] :
           {std::pair(line.FromColumn, line.FromRow), {line.ToColumn, line.ToRow}}) {
        EXPECT_TRUE(column >= 49.99 && column <= 650.01 && row >= 39.99 && row <= 560.01);
        const RealPoint real = RealPointAt(axes, column, 600 - row);
        const double value = line.OfX ? real.X : real.Y;
        EXPECT_NEAR(value, line.Value, 1e-6 * std::max(std::fabs(line.Value), 1.0));
      }
      EXPECT_LE(line.Text.size(), 5u) << line.Text;
    }
    EXPECT_GE(ofX, 5);
    EXPECT_GE(ofY, 5);
    EXPECT_LE(ofX + ofY, 60);
  }
  EXPECT_TRUE(AxesGrid(AxisCalibration(), 600, {0, 0, 9, 9}).empty());
}

}  // namespace
}  // namespace graphize::test
