// Tracing, scanning and grid removal in the real window, compared with the samples' true data.

#include <QAction>
#include <QScreen>
#include <QSlider>
#include <QSpinBox>
#include <algorithm>
#include <cmath>
#include <fstream>

#include "app/window_driver.h"
#include "support/true_data.h"

namespace graphize::test {
namespace {

class Extraction : public WindowTest {
 protected:
  /// Pixels by which the captured points miss the curve, for a given number of units per pixel.
  std::vector<double> Misses(const std::vector<TruePoint>& truth, double unitsPerRow) const {
    std::vector<double> misses;
    const PointStore& store = State().store;
    for (int i = 1; i <= store.CaptureCount; ++i)
      misses.push_back(std::abs(store.CaptureY[i] - TrueY(truth, store.CaptureX[i])) / unitsPerRow);
    return misses;
  }

  /// The part of a side of the scan's outline that shows: black and white pixels by turns.
  double OutlineShown(QPoint from, QPoint to) {
    const QPoint at = Find<QWidget>("Plot")->mapToGlobal(from);
    const QSize size = QRect(from, to).size();
    const QImage screen =
        Window().screen()->grabWindow(0, at.x(), at.y(), size.width(), size.height()).toImage();
    const int length = std::max(size.width(), size.height());
    int turns = 0;
    for (int i = 1; i < length; ++i) {
      const auto value = [&](int j) {
        return size.width() > 1 ? qGray(screen.pixel(j, 0)) : qGray(screen.pixel(0, j));
      };
      turns += std::abs(value(i) - value(i - 1)) == 255 ? 1 : 0;
    }
    return static_cast<double>(turns) / length;
  }

  void ShiftClickPlot(int x, int y, int button) {
    Xdo({QStringLiteral("keydown"), QStringLiteral("shift")});
    ClickPlot(x, y, button);
    Xdo({QStringLiteral("keyup"), QStringLiteral("shift")});
  }
};

TEST_F(Extraction, ARightClickTracesTheCurve) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(77, 58, 3);
  EXPECT_GT(State().store.CaptureCount, 525);
  EXPECT_EQ(TextOf("npts"), QString::number(State().store.ListCount));
  EXPECT_LT(Median(Misses(ReadPoints(kSamples / "pendulum.csv", ',', 1), 2.0 / 390)), 0.3);
  EXPECT_FALSE(State().plot.Marks.empty()) << "the marks stay";
  ClickTool("refresh");
  EXPECT_TRUE(State().plot.Marks.empty());
}

TEST_F(Extraction, DoubtfulPointsAreToldUnderTheListShownRemovedAndBroughtBack) {
  Start();
  EXPECT_TRUE(TextOf("LBL_Next").startsWith(QStringLiteral("Open")));
  OpenSample("pendulum.bmp");
  EXPECT_TRUE(TextOf("LBL_Next").contains(QStringLiteral("Define Axis")));
  CalibratePendulum();
  EXPECT_TRUE(TextOf("LBL_Next").contains(QStringLiteral("right: trace")));
  auto* check = Find<QLabel>("LBL_InkCheck");
  EXPECT_FALSE(check->isVisible());
  ClickControl(Find<QWidget>("CHK_InsideAxes"));
  EXPECT_TRUE(State().tracer.InsideAxes);
  ClickPlot(77, 58, 3);
  const int good = State().store.ListCount;
  EXPECT_GT(good, 500);
  EXPECT_TRUE(check->isVisible());
  EXPECT_EQ(check->text(), QString::number(good) + QStringLiteral(" points: all on ink"));
  EXPECT_FALSE(Find<QWidget>("BTN_ShowDoubtful")->isVisible());
  ClickPlot(300, 120);
  EXPECT_TRUE(check->text().endsWith(QStringLiteral(" points: 1 not on ink")));
  ChooseMenu("MNU_DATA_CheckInk");
  ClickControl(Find<QWidget>("BTN_ShowDoubtful"));
  EXPECT_EQ(State().store.Page.SelectionStart, good + 1);
  QWidget* remove = Find<QWidget>("BTN_RemoveDoubtful");
  const QRect removed = remove->geometry();
  ClickControl(remove);
  EXPECT_EQ(State().store.ListCount, good);
  EXPECT_FALSE(Find<QWidget>("BTN_UndoRemove")->geometry().intersects(removed))
      << "a double click would undo it";
  EXPECT_TRUE(check->text().endsWith(QStringLiteral(" points: all on ink")));
  ClickControl(Find<QWidget>("BTN_UndoRemove"));
  EXPECT_EQ(State().store.ListCount, good + 1);
  EXPECT_FALSE(Find<QWidget>("BTN_UndoRemove")->isVisible());
  EXPECT_TRUE(check->text().endsWith(QStringLiteral(" points: 1 not on ink")));
  ChooseMenu("MNU_OPT_WhatComesNext");
  EXPECT_FALSE(Find<QLabel>("LBL_Next")->isVisible());
  EXPECT_TRUE(Find<QLabel>("hint")->isVisible());
}

TEST_F(Extraction, TheBoxesBesideThePictureAreTheSettings) {
  Start();
  const auto choose = [&](const char* name, int downs) {
    ClickControl(Find<QWidget>(name));
    for (int i = 0; i < downs; ++i) Xdo({QStringLiteral("key"), QStringLiteral("Down")});
    Xdo({QStringLiteral("key"), QStringLiteral("Return")});
  };
  choose("CMB_TraceType", 2);
  Until([&] { return State().settings.Trace == 2; }, "the scan is chosen");
  EXPECT_EQ(Find<QWidget>("CHK_Center")->isEnabled(), false);
  EXPECT_EQ(ValueOf("Yrange"), QStringLiteral("2"));
  choose("CMB_Snap", 3);
  Until([&] { return State().settings.SnapMode == 3; }, "the snap mode is chosen");
  auto* threshold = Find<QSpinBox>("SPN_Threshold");
  EXPECT_EQ(threshold->value(), 128);
  ClickControl(threshold);
  Xdo({QStringLiteral("key"), QStringLiteral("Up")});
  Until([&] { return State().settings.Threshold == 129; }, "the threshold is raised");
}

TEST_F(Extraction, BlackAndWhiteIsSeenBeforeItIsDone) {
  Start();
  OpenInColours(kSamples / "record_scanned.jpg");
  ChooseForm("MNU_IMAGE_BlackWhite", "FRM_BlackWhite");
  const BlackWhiteForm& form = State().blackWhite;
  const auto black = [&] {
    return std::count(form.Preview.Pixels(), form.Preview.Pixels() + form.Preview.PixelCount(),
                      kBlackPixel);
  };
  const auto fixedBlack = black();
  auto* slider = Find<QSlider>("SCRL_Threshold");
  // A click at its right end, then keys.
  MoveTo(slider, {slider->width() - 4, slider->height() / 2});
  Xdo({"click", "1"});
  Xdo({"key", "Right", "Right", "Left"});
  const int level = form.Threshold;
  EXPECT_EQ(level, 128 + slider->pageStep() + 1);
  EXPECT_EQ(TextOf("LBL_Threshold"), QString::number(level));
  EXPECT_GT(black(), fixedBlack);

  ClickControl(Find<QWidget>("OPT_Threshold_1"));
  EXPECT_TRUE(form.Local);
  EXPECT_FALSE(slider->isEnabled());
  EXPECT_NE(black(), fixedBlack);
  const int left = form.Left, top = form.Top;
  auto* preview = Find<QWidget>("PreviewOfPart");
  MoveTo(preview, preview->rect().center());
  Xdo({"mousedown", "1"});
  Xdo({"mousemove_relative", "--", "-30", "12"});
  Xdo({"mouseup", "1"});
  EXPECT_EQ(QPoint(form.Left, form.Top), QPoint(left + 30, top - 12));
  // What is seen is what is previewed.
  const QImage seen = preview->grab().toImage();
  const int x = (preview->width() - form.Preview.Width()) / 2 + 200,
            y = (preview->height() - form.Preview.Height()) / 2;
  int differ = 0;
  for (int row = 0; row < form.Preview.Height(); ++row)
    if (seen.rect().contains(x, y + row))
      differ += seen.pixel(x, y + row) != form.Preview.Row(row)[200] ? 1 : 0;
  EXPECT_EQ(differ, 0);

  ClickControl(Find<QWidget>("OPT_Threshold_0"));
  const Raster part = form.Preview.Clone();
  ClickControl(Find<QWidget>("BTN_Reduce"));
  UntilFormIsClosed();
  EXPECT_EQ(State().settings.Threshold, level);
  EXPECT_TRUE(IsBlackAndWhite(State().plot.Pixels));
  for (int row = 0; row < part.Height(); ++row)
    ASSERT_TRUE(std::equal(part.Row(row), part.Row(row) + part.Width(),
                           State().plot.Pixels.Row(form.Top + row) + form.Left));
  ChooseForm("MNU_IMAGE_BlackWhite", "FRM_BlackWhite");
  EXPECT_FALSE(Find<QWidget>("BTN_Reduce")->isEnabled()) << "there is nothing to reduce";
  ClickControl(Find<QWidget>("BTN_Cancel"));
  UntilFormIsClosed();
  ChooseMenu("MNU_EDIT_Undo");
  EXPECT_FALSE(IsBlackAndWhite(State().plot.Pixels)) << "its colours are back";
}

TEST_F(Extraction, ABlockerEndsTheTrace) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickTool("blocktest");
  const auto truth = ReadPoints(kSamples / "pendulum.csv", ',', 1);
  const int column = 212;  // on the second crest
  ClickPlot(column, static_cast<int>(430 - 195 * (TrueY(truth, (column - 70) * 12.0 / 540) + 1)));
  ClickPlot(400, 60);
  ASSERT_EQ(State().blockers.Count, 2);
  ClickTool("undo");
  ASSERT_EQ(State().blockers.Count, 1);
  ClickPlot(77, 58, 3);
  EXPECT_EQ(State().store.CaptureCount, 0) << "in blocker mode the trace only marks";
  ClickTool("graphize");
  ClickPlot(77, 58, 3);
  const PointStore& store = State().store;
  ASSERT_GT(store.CaptureCount, 100);
  EXPECT_LT(store.CaptureX[store.CaptureCount], (column - 70) * 12.0 / 540);
}

TEST_F(Extraction, ADraggedRectangleIsScanned) {
  std::ofstream(SettingsFile()) << "[Options]\nTrace=2\n";
  Start();
  OpenSample("groups_scatter.tga");
  Calibrate({{{70, 430, "0", "0"}, {610, 430, "90", "0"}, {70, 40, "0", "65"}}});
  const auto press = [this] {
    MoveOverPlot(74, 44);
    Xdo({QStringLiteral("mousedown"), QStringLiteral("3")});
  };
  press();
  MoveOverPlot(200, 200);
  Xdo({QStringLiteral("key"), QStringLiteral("Escape")});
  EXPECT_FALSE(State().scanRectangle.Active);
  MoveOverPlot(606, 426);
  Xdo({QStringLiteral("mouseup"), QStringLiteral("3")});
  EXPECT_EQ(State().store.CaptureCount, 0) << "cancelled";
  press();
  MoveOverPlot(300, 200);
  EXPECT_TRUE(State().scanRectangle.Active);
  EXPECT_GT(OutlineShown({74, 44}, {300, 44}), 0.9);
  EXPECT_GT(OutlineShown({300, 44}, {300, 180}), 0.9) << "but the pointer";
  MoveOverPlot(606, 426);
  EXPECT_LT(OutlineShown({300, 44}, {300, 180}), 0.1) << "where it was before";
  EXPECT_GT(OutlineShown({606, 44}, {606, 400}), 0.9);
  Xdo({QStringLiteral("mouseup"), QStringLiteral("3")});
  EXPECT_LT(OutlineShown({606, 44}, {606, 400}), 0.1);
  EXPECT_FALSE(State().scanRectangle.Active);
  const PointStore& store = State().store;
  ASSERT_GT(store.CaptureCount, 100);
  EXPECT_EQ(TextOf("points"), QString::number(store.CaptureCount));

  // Every symbol was found, and nothing but symbols: distances in pixels.
  const auto truth = ReadPoints(kSamples / "groups_scatter.csv", ',', 1);
  const auto distance = [&](int i, const TruePoint& symbol) {
    return std::hypot((store.CaptureX[i] - symbol.X) * 6, (store.CaptureY[i] - symbol.Y) * 6);
  };
  for (const TruePoint& symbol : truth) {
    double nearest = 1e9;
    for (int i = 1; i <= store.CaptureCount; ++i) nearest = std::min(nearest, distance(i, symbol));
    EXPECT_LT(nearest, 6) << symbol.X << ' ' << symbol.Y;
  }
  for (int i = 1; i <= store.CaptureCount; ++i) {
    double nearest = 1e9;
    for (const TruePoint& symbol : truth) nearest = std::min(nearest, distance(i, symbol));
    ASSERT_LT(nearest, 8) << store.CaptureX[i] << ' ' << store.CaptureY[i];
  }
  ClickPlot(320, 240);
  EXPECT_EQ(State().store.LastPixelX, 320) << "the next left click counts";
}

TEST_F(Extraction, AGridIsWipedOutAndTheTracerFollowsTheCurve) {
  Start();
  OpenSample("melting_grid.tif");
  Calibrate({{{80, 460, "0", "0"}, {680, 460, "30", "0"}, {80, 40, "0", "70"}}});
  const auto truth = ReadPoints(kSamples / "melting_grid.csv", ',', 1);
  ClickTool("gridbuster");
  ShiftClickPlot(333, 333, 1);
  ShiftClickPlot(333, 333, 3);
  ClickTool("graphize");
  ClickPlot(86, 407, 3);
  EXPECT_GT(State().store.CaptureCount, 0.97 * 594);
  EXPECT_LT(Median(Misses(truth, 70.0 / 420)), 0.5);

  // One undo brings the lines of the last removal back.
  const int row = 340;  // a grid line of constant Y: 20
  EXPECT_FALSE(IsBlack(State().plot, 450, row));
  ChooseMenu("MNU_Edit_UndoErase");
  EXPECT_TRUE(IsBlack(State().plot, 450, row));
}

TEST_F(Extraction, CtrlZTakesStepsBackAndCtrlShiftZDoesThemAgain) {
  Start();
  const auto press = [this](const char* keys) {
    Xdo({QStringLiteral("key"), QString::fromLatin1(keys)});
  };
  const auto caption = [this](const char* name) { return Find<QAction>(name)->text(); };
  EXPECT_FALSE(IsEnabled("MNU_EDIT_Undo"));
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(300, 300);
  EXPECT_EQ(caption("MNU_EDIT_Undo"), QStringLiteral("Undo Capture"));
  ClickPlot(77, 58, 3);
  const int points = State().store.CaptureCount;
  const QString trace = QStringLiteral("Trace (%1 points)").arg(points - 1);
  EXPECT_EQ(caption("MNU_EDIT_Undo"), QStringLiteral("Undo ") + trace);
  EXPECT_FALSE(IsEnabled("MNU_EDIT_Redo"));

  press("ctrl+z");
  EXPECT_EQ(TextOf("npts"), QStringLiteral("1"));
  EXPECT_TRUE(State().plot.Marks.empty());
  EXPECT_EQ(caption("MNU_EDIT_Redo"), QStringLiteral("Redo ") + trace);
  press("ctrl+shift+z");
  EXPECT_EQ(State().store.CaptureCount, points);

  // What is typed into a box is the box's own; the axis point before it is the window's.
  ClickTool("axisdef");
  for (int i = 0; i < 3; ++i) press("ctrl+z");
  EXPECT_EQ(State().store.CaptureCount, 0);
  EXPECT_FALSE(State().calibration.Defined[2]);
  EXPECT_EQ(caption("MNU_EDIT_Undo"), QStringLiteral("Undo Axis point"));
  for (int i = 0; i < 3; ++i) press("ctrl+z");
  EXPECT_FALSE(State().plot.IsPresent());
  EXPECT_FALSE(IsEnabled("MNU_EDIT_Undo"));
  for (int i = 0; i < 6; ++i) press("ctrl+shift+z");
  EXPECT_EQ(State().store.CaptureCount, points);
  EXPECT_TRUE(State().calibration.IsComplete());
  EXPECT_FALSE(IsEnabled("MNU_EDIT_Redo"));
}

TEST_F(Extraction, TheZoomWindowCoversNothingWhereThereIsRoomForIt) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  const auto* zoom = Find<QWidget>("FRM_Zoom");
  const auto place = [&](const QWidget* widget) {
    return QRect(widget->mapToGlobal(QPoint()), widget->size());
  };
  for (const int height : {1000, 860, 640}) {
    Window().resize(1200, height);
    for (const char* mode : {"graphize", "axisdef", "graphize"}) {
      ClickTool(mode);
      Settle();
      ASSERT_TRUE(zoom->isVisible());
      EXPECT_TRUE(place(&Window()).contains(place(zoom))) << height;
      int panelsEnd = 0;
      for (const char* panel : {"FRM_Tracer", "FRM_AxisDef"})
        if (Find<QWidget>(panel)->isVisible()) panelsEnd = place(Find<QWidget>(panel)).bottom();
      const bool overPicture = place(zoom).intersects(place(Find<QWidget>("Plot")->parentWidget()));
      const int room = place(Find<QWidget>("HPScroll")).bottom() - panelsEnd;
      EXPECT_TRUE(overPicture || place(zoom).top() > panelsEnd);
      constexpr int kMargins = 16;
      if (room < zoom->height() || room >= zoom->height() + kMargins) {
        EXPECT_EQ(overPicture, room < zoom->height()) << height << ' ' << mode;
      }
    }
  }
}

TEST_F(Extraction, WhereTheZoomWindowCoversThePictureItMakesWayForAClick) {
  Start();
  OpenSample("pendulum.bmp");
  Window().resize(900, 560);
  Settle();
  auto* zoom = Find<QWidget>("FRM_Zoom");
  const auto* plot = Find<QWidget>("Plot");
  const QPoint hidden = plot->mapFromGlobal(zoom->mapToGlobal(zoom->rect().center()));
  ASSERT_TRUE(plot->rect().contains(hidden)) << "it stands beside the picture";
  MoveOverPlot(hidden.x(), hidden.y());
  EXPECT_TRUE(zoom->underMouse()) << "without a mode it is there to be used";
  ClickTool("axisdef");
  MoveOverPlot(hidden.x(), hidden.y());
  EXPECT_EQ(State().readOut.PlotX, hidden.x());
  EXPECT_TRUE(zoom->isVisible());
}

}  // namespace
}  // namespace graphize::test
