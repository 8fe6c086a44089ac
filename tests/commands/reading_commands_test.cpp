#include "commands/reading_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/numbers.h"
#include "calibration/axis_fit.h"
#include "calibration/transform.h"
#include "commands/do.h"
#include "commands/export_points.h"
#include "commands/preview_commands.h"
#include "commands/run_command.h"
#include "data/list_edit.h"
#include "data/list_text.h"
#include "data/point_edit.h"
#include "data/point_table.h"
#include "data/row_errors.h"
#include "data/waiting_points.h"
#include "finding_axes/axis_law.h"
#include "support/calibrated.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"
#include "workspace/picture_map.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

class ReadingTest : public ::testing::Test {
 protected:
  ReadingTest() {
    test::PlotDrawing drawing(300, 200, 20, 20, 280, 180);
    course = drawing.Curve([](double u) { return 0.5 + 0.3 * std::sin(6 * u); }, {.Thickness = 2},
                           0.05, 0.95);
    SetPicture(ws.plot, drawing.GreyPicture());
    ws.calibration = test::PixelCalibration();
  }
  Outcome Read(ReadingDensity density = {}) {
    return Do(ws, desktop,
              ReadStep{static_cast<float>(std::round(course[200].X)),
                       static_cast<float>(std::round(course[200].Y)), density});
  }

  Workspace ws;
  Desktop desktop = test::QuietDesktop();
  std::vector<test::PixelPosition> course;
};

TEST_F(ReadingTest, CapturesTheCurveWithItsPlaces) {
  const Outcome outcome = Read();
  ASSERT_TRUE(outcome.IsDone()) << outcome.Reason;
  ASSERT_GT(outcome.Points, 220);
  EXPECT_EQ(ws.store.CaptureCount, outcome.Points);
  EXPECT_EQ(ws.store.ListCount, outcome.Points);
  EXPECT_THAT(ws.status.Status, testing::StartsWith("Read " + std::to_string(outcome.Points)));
  EXPECT_EQ(ExportCurves(ws).front().WithoutPlace, 0);
  for (int i = 1; i <= ws.store.CaptureCount; ++i) {
    const Place& place = ws.store.Places[ws.store.CaptureId[i]];
    EXPECT_NEAR(ws.store.CaptureX[i], place.Column, 1e-3);
    EXPECT_NEAR(ws.store.CaptureY[i], 200 - place.Row, 1e-3);
    EXPECT_TRUE(CertaintyOf(ws.store, ws.store.CaptureId[i]).IsKnown());
  }
}

TEST_F(ReadingTest, TellsStandardUncertaintiesWhereverThePointsGo) {
  Read({.Is = ReadingDensity::Kind::Every, .Pixels = 40});
  const auto table = [&](ErrorKind kind) {
    return CsvText({.Curves = ExportCurves(ws), .Errors = true, .Kind = kind});
  };
  const ExportRow row = ExportCurves(ws).front().Rows[2];
  ASSERT_TRUE(row.HasStandard);
  // On axes of a unit per pixel: the stroke's share is small, the axes' is that of rounded clicks.
  EXPECT_GT(row.Standard.Y, 0.15);
  EXPECT_LT(row.Standard.Y, 1);
  EXPECT_THAT(table(ErrorKind::Pixel), testing::EndsWith(",1,1\r\n"));
  EXPECT_THAT(table(ErrorKind::Standard), testing::Not(testing::HasSubstr(",1,1\r\n")));
  const std::string json =
      JsonText({.Curves = ExportCurves(ws), .Errors = true}, ws.calibration, {});
  EXPECT_THAT(json, testing::HasSubstr("\"x_error\": \"standard uncertainty, in units of x\""));
  EXPECT_THAT(json, testing::HasSubstr("\"y_pixel\": 1}"));

  // An image tool takes them along and back; moved by hand, a point is no longer known so well.
  const std::vector<Certainty> before = ws.store.Certainties;
  const std::vector<Place> places = ws.store.Places;
  const std::vector<PlaceRest> rests = ws.store.Rests;
  CarryAlong(ws, {0, -2, 400, 2, 0, 0}, 600);
  for (std::size_t id = 1; id < before.size(); ++id) {
    EXPECT_NEAR(ws.store.Certainties[id].AcrossColumns, -2 * before[id].AcrossRows, 1e-6);
    EXPECT_NEAR(ws.store.Certainties[id].AcrossRows, 2 * before[id].AcrossColumns, 1e-6);
  }
  CarryBack(ws, 200);
  EXPECT_EQ(ws.store.Certainties, before);
  EXPECT_EQ(ws.store.Places, places);
  EXPECT_EQ(ws.store.Rests, rests);
  EXPECT_EQ(MovePoints(ws.store, ws.calibration, 300, 200, PointSet({2}), 1, 0), "");
  EXPECT_FALSE(CertaintyOf(ws.store, 2).IsKnown());
  EXPECT_EQ(RealPlaceOf(ws.store, 2).Column, ws.store.Places[2].Column);
}

TEST_F(ReadingTest, GivesPointsAtTheValuesThatWereAskedFor) {
  const std::vector<float> xs = {40, 100.1f, 222.3f};
  ASSERT_EQ(Read({.Is = ReadingDensity::Kind::AtX, .Xs = xs}).Points, 3);
  for (std::size_t i = 0; i < xs.size(); ++i)
    EXPECT_EQ(ExportCurves(ws).front().Rows[i].X, DecimalValue(xs[i]));
}

/// Ticks are drawn on whole pixels, or found a little beside; the scale through them is proposed.
TEST(ReadingErrors, HoldOnProposedAxes) {
  std::mt19937 random(12);
  const auto between = [&](double a, double b) {
    return std::uniform_real_distribution<double>(a, b)(random);
  };
  for (const bool isRefined : {false, true})
    for (const double beside : {0.0, 0.5}) {
      int within[] = {0, 0, 0}, all = 0;
      for (int run = 0; run < 100; ++run) {
        struct Axis {
          double First, Pitch;
          bool Log;
          std::vector<double> Places, Values;

          double At(double place) const {
            const double tick = (place - First) / Pitch;
            return Log ? std::pow(10, tick) : 0.25 * tick;
          }
        };
        const auto axis = [&](double length) {
          const int count = 4 + static_cast<int>(random() % 6);
          Axis made{.First = between(60, 90), .Pitch = length / count, .Log = random() % 4 == 0};
          for (int i = 0; i < count; ++i) {
            const double place = made.First + i * made.Pitch;
            made.Places.push_back(beside == 0
                                      ? std::round(place)
                                      : std::normal_distribution<double>(place, beside)(random));
            made.Values.push_back(made.At(place));
          }
          return made;
        };
        const Axis x = axis(between(400, 800)), y = axis(between(300, 600));
        const auto law = [](const Axis& of) { return FitLaw(of.Log, of.Places, of.Values); };
        const auto sigma = [&](const Axis& of, double value) {
          return SigmaAt(law(of), of.Places, of.Values, value, 0.35);
        };
        Workspace ws;
        const Desktop desktop = test::QuietDesktop();
        SetPicture(ws.plot, Raster::Filled(900, 700, kWhitePixel));
        ws.commands.Picture = true;
        Do(ws, desktop, ModeStep{Mode::AxisDef});
        ws.calibration.XLog = x.Log;
        ws.calibration.YLog = y.Log;
        for (int row = 0; row < 3; ++row) {
          const double u = row == 1 ? x.Values.back() : x.Values.front(),
                       v = row == 2 ? y.Values.back() : y.Values.front();
          const double column = law(x).PositionOf(u), down = 700 - law(y).PositionOf(v);
          const AxisStep step{row,
                              static_cast<float>(std::round(column)),
                              static_cast<float>(std::round(down)),
                              ShortestText(u),
                              ShortestText(v),
                              PlotPosition{static_cast<float>(column), static_cast<float>(down)},
                              static_cast<float>(std::max(sigma(x, u), sigma(y, v)))};
          const auto told = StepOf(TextOf(step));
          ASSERT_TRUE(Do(ws, desktop, std::get<Step>(told)).IsDone());
        }
        ASSERT_TRUE(!isRefined || SwitchRefined(ws.calibration, true));
        for (int i = 0; i < 5; ++i, all += 2) {
          const Place at{static_cast<float>(between(60, 800)),
                         static_cast<float>(between(90, 640))};
          const RealPoint read = RealPointAt(ws.calibration, at.Column, 700 - at.Row);
          const RowError error =
              StandardErrorAt(ws.calibration, 700, at, {0.001f, 0.001f}, static_cast<float>(read.X),
                              static_cast<float>(read.Y));
          for (const double off :
               {(read.X - x.At(at.Column)) / error.X, (read.Y - y.At(700 - at.Row)) / error.Y})
            for (int most = 1; most <= 2; ++most) within[most] += std::fabs(off) <= most ? 1 : 0;
        }
      }
      EXPECT_GT(within[1], 0.9 * 0.68 * all) << isRefined << beside;
      EXPECT_LT(within[1], 0.95 * all) << isRefined << beside;
      EXPECT_GT(within[2], 0.9 * 0.95 * all) << isRefined << beside;
    }
}

TEST_F(ReadingTest, RefusesWithoutChangingAnything) {
  EXPECT_THAT(Do(ws, desktop, ReadStep{5, 5, {}}).Reason, testing::HasSubstr("only paper"));
  EXPECT_THAT(Do(ws, desktop, ReadStep{900, 5, {}}).Reason, testing::HasSubstr("lies outside"));
  EXPECT_THAT(Read({.Is = ReadingDensity::Kind::AtX, .Xs = {9999}}).Reason,
              testing::HasSubstr("no point there"));
  EXPECT_THAT(Do(ws, desktop, ReadStep{5, 5, {}, 3}).Reason, testing::HasSubstr("tolerance"));
  EXPECT_THAT(Do(ws, desktop, ReadStep{5, 5, {}, 1, {{900, 5}}}).Reason,
              testing::HasSubstr("lies outside"));
  ws.store.MaxPoints = 100;
  EXPECT_THAT(Read().Reason, testing::HasSubstr("takes only 100 more"));
  ws.store.MaxPoints = 32767;
  ws.calibration.XLog = true;  // the origin is 0
  EXPECT_THAT(Read().Reason, testing::HasSubstr("Log"));
  EXPECT_EQ(ws.store.CaptureCount, 0);
  EXPECT_TRUE(ws.recipe.Steps.empty());
}

TEST_F(ReadingTest, WithoutAxesKeepsPlacesWhoseValuesComeWithThem) {
  ws.calibration = {};
  ws.commands.Picture = true;
  const auto done = [&](const Step& step) { return Do(ws, desktop, step); };
  Read({.Is = ReadingDensity::Kind::Every, .Pixels = 40});
  done(NewCurveStep{});
  Read({.Is = ReadingDensity::Kind::Every, .Pixels = 60});
  const int points = ws.store.CaptureCount;
  ASSERT_GT(points, 3);
  EXPECT_EQ(CountWaiting(ws.store), points);
  EXPECT_THAT(LineText(ws.store, 1, ws.formats, true), testing::StartsWith("column "));
  for (const Step& step : {Step(SortStep{}), Step(SwapStep{}), Step(CurveLengthStep{}),
                           Step(ResampleStep{.Count = "9"}), Step(SaveStep{})})
    EXPECT_THAT(done(step).Reason, testing::HasSubstr("points have no values yet"));
  UpdateDataMenu(ws.store, ws.commands);
  EXPECT_FALSE(ws.commands.Sort || ws.commands.Resample || ws.commands.CurveLength);
  EXPECT_TRUE(done(DeletePointsStep{{2}}).IsDone());

  // A unit per pixel.
  done(ModeStep{Mode::AxisDef});
  done(AxisStep{0, 0, 199, "0", "1"});
  done(AxisStep{1, 299, 199, "299", "1"});
  EXPECT_EQ(CountWaiting(ws.store), points - 1);
  ASSERT_TRUE(done(AxisStep{2, 0, 0, "0", "200"}).IsDone());
  EXPECT_THAT(ws.status.Status, testing::EndsWith(" points have got their values"));
  for (int curve = 0; curve < 2; ++curve) {
    const PointStore& store = PointsOf(ws.curves, ws.store, curve);
    EXPECT_EQ(store.ListX[1], store.CaptureX[1]);
    for (int i = 1; i <= store.CaptureCount; ++i) {
      const Place& place = store.Places[store.CaptureId[i]];
      EXPECT_NEAR(store.CaptureX[i], place.Column, 1e-3);
      EXPECT_NEAR(store.CaptureY[i], 200 - place.Row, 1e-3);
    }
  }
}

TEST_F(ReadingTest, WhatIsShownIsTakenAsItWasReadAndGoesWithWhatItWasReadFrom) {
  ws.commands.Picture = ws.commands.Graphize = true;
  const auto run = [this](const Step& step) {
    RunCommand(ws, desktop, [&] { Do(ws, desktop, step); });
  };
  const auto show = [&] {
    run(ModeStep{Mode::ReadCurve});
    ClickCurve(ws, desktop, static_cast<int>(std::lround(course[200].X)),
               static_cast<int>(std::lround(course[200].Y)));
    ASSERT_TRUE(HasReading(ws)) << ws.reading.Reading;
  };
  show();
  DropStaleReading(ws);
  EXPECT_EQ(ws.status.Hint, ReadingShownHint(Mode::ReadCurve));
  DropReading(ws);
  DropStaleReading(ws);
  EXPECT_EQ(ws.status.Hint, ModeHint(Mode::ReadCurve));
  for (const Step& step : {Step(ModeStep{Mode::Graphize}), Step(BlockStep{50, 50, 4}),
                           Step(RedefineStep{1}), Step(BlackWhiteStep{})}) {
    ws.calibration = test::PixelCalibration();
    show();
    EXPECT_EQ(ws.store.CaptureCount, 0);
    run(step);
    EXPECT_FALSE(HasReading(ws)) << TextOf(step);
  }

  ws.calibration = test::PixelCalibration();
  show();
  // A place that is not the curve's is told and left out; Backspace takes one back that is.
  const std::size_t all = ws.reading.Curve->Points.size();
  ClickCurve(ws, desktop, 150, 165);
  EXPECT_EQ(ws.reading.Curve->Clicks.size(), 1u) << ws.reading.Reading;
  EXPECT_EQ(ws.reading.Curve->Points.size(), all);
  EXPECT_FALSE(TakeBackClick(ws, desktop));
  ClickCurve(ws, desktop, static_cast<int>(std::lround(course[90].X)),
             static_cast<int>(std::lround(course[90].Y)));
  EXPECT_EQ(ws.reading.Curve->Clicks.size(), 2u);
  EXPECT_TRUE(TakeBackClick(ws, desktop));
  EXPECT_EQ(ws.reading.Curve->Clicks.size(), 1u);
  SetDensity(ws, ReadingDensity::Kind::Every);
  TypeDensity(ws, "0");
  EXPECT_FALSE(CanTakeReading(ws));
  TypeDensity(ws, "50");
  SetTolerance(ws, 60);  // and it is not read again yet
  const std::size_t points = ws.reading.Curve->Points.size();
  EXPECT_LT(points, 10u);
  desktop.EscapeHeld = [] { return true; };
  TakeReading(ws, desktop);
  EXPECT_EQ(ws.store.CaptureCount, static_cast<int>(points)) << "without reading it again";
  desktop.EscapeHeld = [] { return false; };
  EXPECT_FALSE(HasReading(ws));
  const auto* step = std::get_if<ReadStep>(&ws.recipe.Steps.back());
  ASSERT_NE(step, nullptr);
  EXPECT_EQ(step->Tolerance, 1);
  DropStaleReading(ws);
  EXPECT_THAT(ws.reading.Reading, testing::StartsWith("Read "));
  run(NewCurveStep{});
  EXPECT_EQ(ws.reading.Reading, "") << "which is no longer so";
}

TEST(ReadStep, IsWrittenWithItsDensity) {
  using Kind = ReadingDensity::Kind;
  for (const auto& [density, words] : {std::pair{ReadingDensity{}, "each"},
                                       {{Kind::Every, 7, {}}, "every 7"},
                                       {{.Is = Kind::Bends}, "bends"},
                                       {{Kind::AtX, 10, {0.5f, -2, 3e-20f}}, "at 0.5 -2 3e-20"}}) {
    const std::string text = TextOf(ReadStep{12, 34, density});
    EXPECT_EQ(text, std::string("read 12 34 ") + words);
    const auto read = StepOf(text);
    ASSERT_TRUE(std::holds_alternative<Step>(read));
    EXPECT_EQ(std::get<ReadStep>(std::get<Step>(read)).Density, density);
  }
  const std::string told = "read 12 34 tolerance 1.5 through 2 7 8 90 91 each";
  const auto read = StepOf(told);
  ASSERT_TRUE(std::holds_alternative<Step>(read));
  EXPECT_EQ(TextOf(std::get<Step>(read)), told);
  EXPECT_EQ(std::get<std::string>(StepOf("read 1 2 at")), "something is missing at the end");
}

}  // namespace
}  // namespace graphize
