// Tables of points: their values, their common X, their text, and the form they are chosen in.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/numbers.h"
#include "capture/cursor.h"
#include "data/curve_length.h"
#include "data/export_form.h"
#include "data/list_edit.h"
#include "data/resampling.h"
#include "data/sort.h"
#include "data/x_grid.h"
#include "support/calibrated.h"
#include "support/points.h"
#include "support/scripted_desktop.h"

namespace graphize {
namespace {

using test::ScriptedDesktop;

constexpr int kHeight = 480;

/// Points captured at these places.
PointStore CaptureAt(const std::vector<Place>& places, const AxisCalibration& axes) {
  PointStore store;
  CommandStates commands;
  ReadOut readOut;
  const ScriptedDesktop desktop;
  for (const auto& [column, row] : places) {
    MoveCursor(readOut, store, axes, desktop, kHeight, column, row);
    AddPoint(store, commands, desktop, false);
  }
  return store;
}

std::vector<Place> RandomPlaces(int count) {
  std::mt19937 random(3);
  std::vector<Place> places;
  for (int i = 0; i < count; ++i)
    places.push_back(
        {static_cast<float>(random() % 6000) / 10, static_cast<float>(random() % 4000) / 7});
  return places;
}

/// The value by the definition of the transform, with more digits than any it is compared to.
std::pair<long double, long double> SlowValues(const AxisCalibration& c, const Place& place) {
  const long double angle =
      std::atan(static_cast<long double>(c.PixelY[1] - c.PixelY[0]) / (c.PixelX[1] - c.PixelX[0]));
  const long double cosine = std::cos(angle), sine = std::sin(angle);
  const long double px = static_cast<long double>(place.Column) - c.PixelX[0];
  const long double py = kHeight - static_cast<long double>(place.Row) - c.PixelY[0];
  const auto value = [](bool log, long double share, float from, float to) {
    const long double origin = DecimalValue(from), end = DecimalValue(to);
    return log ? origin * std::pow(end / origin, share) : origin + share * (end - origin);
  };
  return {value(c.XLog, (px * cosine + py * sine) * cosine / (c.PixelX[1] - c.PixelX[0]),
                c.ValueX[0], c.ValueX[1]),
          value(c.YLog, (py * cosine - px * sine) * cosine / (c.PixelY[2] - c.PixelY[0]),
                c.ValueY[0], c.ValueY[2])};
}

const AxisCalibration kTurned = test::Calibrate(
    {{{600, 400, "0.01", "0.7"}, {70, 390, "1e4", "0.7"}, {600, 20, "0.01", "-8.1"}}}, true);

TEST(ExportCurve, HasTheValuesOfThePlacesInDoublePrecisionInTheListsOrder) {
  const std::vector<Place> places = RandomPlaces(400);
  PointStore store = CaptureAt(places, kTurned);
  SortList(store, SortOrder::Descending);
  store.Page.SelectionActive = true;
  store.Page.SelectionStart = 20;
  store.Page.SelectionEnd = 50;
  ClearSelected(store);
  for (const bool swapped : {false, true}) {
    if (swapped) SwapXY(store);
    const ExportCurve curve = PlacedCurve("a", store, kTurned, kHeight);
    ASSERT_EQ(curve.Rows.size(), 369u);
    EXPECT_EQ(curve.WithoutPlace, 0);
    EXPECT_EQ(curve.XLog, !swapped);
    EXPECT_EQ(curve.YLog, swapped);
    const std::vector<RowError> errors = RowErrorsOf(store, kTurned, kHeight);
    for (std::size_t i = 0; i < curve.Rows.size(); ++i) {
      const ExportRow& row = curve.Rows[i];
      auto [x, y] = SlowValues(kTurned, store.Places[store.ListId[i + 1]]);
      if (swapped) std::swap(x, y);
      const auto near = [](double value, long double slow) {
        return std::fabs(static_cast<double>(value - slow)) < 2e-14 * (1 + std::fabs(value));
      };
      ASSERT_TRUE(near(row.X, x) && near(row.Y, y)) << "row " << i << ": " << row.X << "," << row.Y;
      EXPECT_EQ(row.Error.X, errors[i].X);
      EXPECT_EQ(row.Error.Y, errors[i].Y);
    }
  }
  // What single precision and binary fractions would spoil: ticks of plain axes are short numbers.
  const AxisCalibration plain =
      test::Calibrate({{{70, 50, "0", "-0.1"}, {610, 50, "12", "-0.1"}, {70, 440, "0", "0.2"}}});
  const ExportCurve ticks =
      PlacedCurve("", CaptureAt({{70, 40}, {115, 170}, {583, 430}, {79, 417}}, plain), plain, 480);
  EXPECT_EQ(CsvText({{ticks}}), "x,y\r\n0,0.2\r\n1,0.1\r\n11.4,-0.1\r\n0.2,-0.09\r\n");
}

TEST(ExportCurve, RowsThatAreNoPlacesKeepTheListsValues) {
  const AxisCalibration axes = test::PixelCalibration();
  const std::vector<Place> places = {{10.5f, 70}, {20.1f, 80}, {30, 90.3f}};
  const AxisCalibration redefined =
      test::Calibrate({{{0, 0, "0", "0"}, {100, 0, "101", "0"}, {0, 100, "0", "100"}}});
  AxisCalibration noLog = axes;
  noLog.XLog = true;
  struct Case {
    const char* name;
    void (*change)(PointStore&);
    const AxisCalibration& now;
    int height, withoutPlace;
  };
  const auto none = [](PointStore&) {};
  const Case cases[] = {
      {"as captured", none, axes, kHeight, 0},
      {"axes redefined since", none, redefined, kHeight, 3},
      {"log axis from 0", none, noLog, kHeight, 3},
      {"no axes any more", none, AxisCalibration(), kHeight, 3},
      {"another picture", none, axes, kHeight + 1, 3},
      {"resampled",
       [](PointStore& store) {
         ReSampleList(store, {4, 10, 30}, false, ScriptedDesktop());
       },
       axes, kHeight, 4},
      {"lengths",
       [](PointStore& store) {
         StatusBar status;
         ScriptedDesktop desktop;
         desktop.ExpectMessage("curve length");
         CurveLength(store, status, desktop);
       },
       axes, kHeight, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PointStore store = CaptureAt(places, axes);
    c.change(store);
    const ExportCurve curve = PlacedCurve("", store, c.now, c.height);
    EXPECT_EQ(curve.WithoutPlace, c.withoutPlace);
    const test::RowList list = test::ListRows(store);
    ASSERT_EQ(curve.Rows.size(), list.size());
    if (c.withoutPlace == 0) continue;
    for (std::size_t i = 0; i < list.size(); ++i) {
      EXPECT_EQ(ShortestText(curve.Rows[i].X), ShortestText(list[i].X));
      EXPECT_EQ(ShortestText(curve.Rows[i].Y), ShortestText(list[i].Y));
    }
  }
}

ExportCurve CurveOf(const std::vector<std::pair<double, double>>& rows, bool yLog = false) {
  ExportCurve curve{.Name = "c", .YLog = yLog};
  for (const auto& [x, y] : rows) curve.Rows.push_back({.X = x, .Y = y});
  return curve;
}

TEST(ExportCurve, ACommonXIsInterpolatedAsAPlainSearchDoes) {
  std::mt19937 random(8);
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    const bool yLog = round % 2 == 1;
    std::vector<std::pair<double, double>> rows(1 + random() % 12);
    for (auto& [x, y] : rows) {
      x = static_cast<double>(random() % 20) / 3;
      y = static_cast<double>(1 + random() % 100) / 7;
    }
    if (round % 3 > 0) std::stable_sort(rows.begin(), rows.end());
    if (round % 3 > 1) std::reverse(rows.begin(), rows.end());
    const ExportCurve curve = CurveOf(rows, yLog);
    std::vector<double> xs = AllX({&curve, 1});
    EXPECT_TRUE(std::is_sorted(xs.begin(), xs.end()));
    const std::size_t own = xs.size();
    for (int i = -3; i < 80; ++i) xs.push_back(i / 11.0);
    const ExportCurve common = OverCommonX({&curve, 1}, xs, AxisCalibration())[0];
    ASSERT_EQ(common.Rows.size(), xs.size());
    for (std::size_t k = 0; k < xs.size(); ++k) {
      const double x = xs[k];
      const ExportRow& row = common.Rows[k];
      EXPECT_EQ(row.X, x);
      // The first segment that ends at or behind x, if x lies in it, else the first it lies in.
      const auto liesIn = [&](std::size_t j) {
        return std::min(rows[j].first, rows[j + 1].first) <= x &&
               x <= std::max(rows[j].first, rows[j + 1].first);
      };
      std::size_t j = 0;
      while (j + 2 < rows.size() && rows[j + 1].first < x) ++j;
      if (rows.size() < 2 || !liesIn(j))
        for (j = 0; j + 1 < rows.size() && !liesIn(j);) ++j;
      const bool inside = j + 1 < rows.size() || (rows.size() == 1 && x == rows[0].first);
      ASSERT_EQ(row.HasY, inside) << x;
      if (!inside) {
        EXPECT_GE(k, own) << "an X of the curve's own";
        continue;
      }
      if (x == rows[j].first) {
        EXPECT_EQ(row.Y, rows[j].second);
      } else if (x == rows[j + 1].first) {
        EXPECT_EQ(row.Y, rows[j + 1].second);
      } else {
        const auto [x1, y1] = rows[j];
        const auto [x2, y2] = rows[j + 1];
        const double share = (x - x1) / (x2 - x1);
        EXPECT_NEAR(row.Y, yLog ? y1 * std::pow(y2 / y1, share) : y1 + share * (y2 - y1), 1e-12);
      }
    }
  }
}

TEST(XGrid, ReadsNumbersAndRanges) {
  std::vector<double> tenths, falling;
  for (int i = 0; i <= 1000; ++i) tenths.push_back((i - 500) / 10.0);
  for (int i = 4; i >= 0; --i) falling.push_back(i / 4.0);
  struct Case {
    const char* text;
    std::vector<double> values;
    const char* fault = "";
  };
  const Case cases[] = {
      {"", {}},
      {" \t", {}},
      {"0, 0.5, 1", {0, 0.5, 1}},
      {"3;-1e-3 +2\t5,", {3, -1e-3, 2, 5}},
      {"0,5", {0, 5}},
      {"-50:0.1:50", tenths},
      {"1 : -.25 : 0", falling},
      {"0:0.3:1", {0, 0.3, 0.6, 0.9}},
      {"5:1:5, 7", {5, 7}},
      {"1e6:2.5e-7:1000000.0000005", {1e6, 1000000.00000025, 1000000.0000005}},
      {"x", {}, "\"x\" is no number."},
      {"1, 2m", {}, "\"2m\" is no number."},
      {"1..2", {}, "is no number."},
      {"inf", {}, "is no number."},
      {"1e999", {}, "is no number."},
      {"0:1", {}, "\"0:1\" is no range first:step:last."},
      {"0:1:2:3", {}, "is no range"},
      {"0:1:", {}, "is no range"},
      {"0:a:2", {}, "is no range"},
      {"0 1:1:5", {}, "is no range"},
      {"0:0:1", {}, "The step of \"0:0:1\" is 0."},
      {"0:-1:1", {}, "leads away from its end."},
      {"0:1e-9:1", {}, "more than 100000 values."},
      {"-1e308:1e-308:1e308", {}, "more than 100000 values."},
      {"1:1:60000, 1:1:60000", {}, "more than 100000 values."},
  };
  for (const Case& c : cases) {
    const XGrid grid = ReadXGrid(c.text);
    const std::string fault = c.fault;
    EXPECT_EQ(grid.Fault.empty(), fault.empty()) << c.text << ": " << grid.Fault;
    EXPECT_TRUE(grid.Fault.ends_with(fault) || grid.Fault.find(fault) != std::string::npos)
        << c.text << ": " << grid.Fault;
    EXPECT_EQ(fault.empty() ? grid.Values : c.values, c.values) << c.text;
  }
}

TEST(PointTable, TextOfOneAndOfSeveralCurves) {
  const AxisCalibration axes = test::PixelCalibration();
  ExportCurve a = ListCurve("a, \"b\"", test::MakeStore({{0, 1}, {2, 0.1f}}), axes);
  PointStore lengths = test::MakeStore({{1, 5}, {3, 7}});
  lengths.ListRows = PointStore::Rows::Other;
  const ExportCurve b = ListCurve("b", lengths, axes);
  const std::vector<ExportCurve> both = {a, b};
  const auto common = OverCommonX(both, AllX(both), axes);

  EXPECT_EQ(CsvText({.Curves = {a}}), "x,y\r\n0,1\r\n2,0.1\r\n");
  EXPECT_EQ(CsvText({.Curves = {a}, .Errors = true}),
            "x,y,x_error,y_error\r\n0,1,1,1\r\n2,0.1,1,1\r\n");
  EXPECT_EQ(CsvText({.Curves = {b}, .Errors = true}), "x,y\r\n1,5\r\n3,7\r\n");
  EXPECT_EQ(
      CsvText({.Curves = both, .Errors = true}),
      "curve,x,y,x_error,y_error\r\n\"a, \"\"b\"\"\",0,1,1,1\r\n\"a, \"\"b\"\"\",2,0.1,1,1\r\n"
      "b,1,5,,\r\nb,3,7,,\r\n");
  EXPECT_EQ(CsvText({.Curves = common, .CommonX = true}),
            "x,\"a, \"\"b\"\"\",b\r\n0,1,\r\n1,0.55,5\r\n2,0.1,6\r\n3,,7\r\n");
  EXPECT_EQ(CsvText({.Curves = {common[0]}, .CommonX = true, .Errors = true}),
            "x,y,x_error,y_error\r\n0,1,1,1\r\n1,0.55,1,1\r\n2,0.1,1,1\r\n3,,,\r\n");

  const std::string json = JsonText({.Curves = common, .CommonX = true, .Errors = true},
                                    AxisCalibration(), {"p.png", 3, 2, "t"});
  EXPECT_EQ(json, R"({
  "title": "t",
  "picture": {"name": "p.png", "width": 3, "height": 2},
  "units": {"column": "pixel", "row": "pixel, downward from the top", "angle": "radian"},
  "curves": [
    {
      "name": "a, \"b\"",
      "units": {"x": "value on the x axis", "y": "value on the y axis", "x_error": "size of one pixel, in units of x", "y_error": "size of one pixel, in units of y"},
      "points": [
        {"x": 0, "y": 1, "x_error": 1, "y_error": 1},
        {"x": 1, "y": 0.55, "x_error": 1, "y_error": 1},
        {"x": 2, "y": 0.1, "x_error": 1, "y_error": 1},
        {"x": 3, "y": null, "x_error": null, "y_error": null}
      ]
    },
    {
      "name": "b",
      "units": {"x": "number", "y": "length"},
      "points": [
        {"x": 0, "y": null},
        {"x": 1, "y": 5},
        {"x": 2, "y": 6},
        {"x": 3, "y": 7}
      ]
    }
  ]
}
)");
}

TEST(ExportForm, SaysWhatWillBeWrittenAndRefusesWhatIsNoGrid) {
  ExportForm form;
  ScriptedDesktop desktop;
  desktop.ExpectMessage("No Points in List");
  EXPECT_FALSE(OpenExport(form, {CurveOf({})}, desktop));

  ExportCurve unplaced = CurveOf({{5, 1}});
  unplaced.WithoutPlace = 1;
  const ExportCurve curve = CurveOf({{0, 1}, {2, 3}, {1, 4}});
  struct Case {
    bool all, commonX;
    const char* grid;
    const char* hint;
    std::size_t curves, rows;  // of the table; 0: a message instead
  };
  const Case cases[] = {
      {false, false, "none", "3 points of c alone.", 1, 3},
      {true, false, "",
       "4 points.\n1 of 4 rows are no places on the picture as it is: they have the list's values.",
       2, 3},
      {false, true, "", "3 X values, all that there are.", 1, 3},
      {false, true, "0:0.5:3", "7 X values from 0 to 3; 2 outside the curve, left empty.", 1, 7},
      {false, true, "2", "1 X value from 2 to 2.", 1, 1},
      {true, true, "0 5",
       "2 X values from 0 to 5; 2 cells outside the curves, left empty.\n"
       "1 of 4 rows are no places on the picture as it is: they have the list's values.",
       2, 2},
      {false, true, "0:1", "\"0:1\" is no range first:step:last.", 0, 0},
  };
  ASSERT_TRUE(OpenExport(form, {curve, unplaced}, desktop));
  EXPECT_TRUE(form.CanAllCurves());
  for (const Case& c : cases) {
    SCOPED_TRACE(c.hint);
    form.AllCurves = c.all;
    form.CommonX = c.commonX;
    form.XGrid = c.grid;
    ShowHint(form);
    EXPECT_EQ(form.Hint, c.hint);
    if (c.curves == 0) desktop.ExpectMessage(c.hint);
    const auto table = TableOfForm(form, AxisCalibration(), desktop);
    ASSERT_EQ(table.has_value(), c.curves > 0);
    if (!table) continue;
    EXPECT_EQ(table->Curves.size(), c.curves);
    EXPECT_EQ(table->Curves[0].Rows.size(), c.rows);
  }
  // The choices stay for the next time, as far as there are such curves then.
  form.AllCurves = true;
  ASSERT_TRUE(OpenExport(form, {curve}, desktop));
  EXPECT_FALSE(form.AllCurves || form.CanAllCurves() || form.CanErrors());
  EXPECT_TRUE(form.CommonX);
}

}  // namespace
}  // namespace graphize
