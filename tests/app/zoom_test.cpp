// The picture enlarged and seen from afar, by real keys, wheel and mouse.

#include <QMenu>
#include <QScrollBar>

#include "app/window_driver.h"
#include "raster/plot_view.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

class ZoomedWindow : public WindowTest {
 protected:
  void Key(const char* keys) { Xdo({"key", QString::fromLatin1(keys)}); }
  void TurnWheel(int notches) {
    Xdo({"keydown", "ctrl", "click", "--repeat", QString::number(std::abs(notches)), "--delay",
         "20", notches > 0 ? "4" : "5", "keyup", "ctrl"});
  }
  const Viewport& View() const { return State().view; }
  QPoint PlaceOf(int column, int row) const {
    return {PlaceOfMark(View().Zoom, static_cast<float>(column)),
            PlaceOfMark(View().Zoom, static_cast<float>(row))};
  }
  void MoveOverPixel(int column, int row) {
    MoveOverPlot(PlaceOf(column, row).x(), PlaceOf(column, row).y());
  }
  void ClickPixel(int column, int row, int button = 1) {
    MoveOverPixel(column, row);
    Xdo({"click", QString::number(button)});
  }
  QPoint Read() const { return {State().readOut.PlotX, State().readOut.PlotY}; }
  void Drag(const char* button, QPoint by) {
    Xdo({"mousedown", button});
    for (int i = 0; i < 2; ++i)
      Xdo({"mousemove_relative", "--", QString::number(by.x() / 2), QString::number(by.y() / 2)});
    Xdo({"mouseup", button});
  }
};

TEST_F(ZoomedWindow, WheelKeysAndMenusZoomAtThePointer) {
  Start();
  EXPECT_FALSE(IsEnabled("MNU_VIEW_Fit"));
  OpenSample("pendulum.bmp");
  Window().resize(900, 560);
  Settle();
  EXPECT_EQ(TextOf("zoompercent"), "100%");
  MoveOverPlot(300, 200);
  for (const auto& [notches, percent] :
       {std::pair(1, "200%"), {2, "400%"}, {6, "3200%"}, {-30, "1.6%"}}) {
    TurnWheel(notches);
    EXPECT_EQ(TextOf("zoompercent"), percent);
    if (View().Zoom > 1) {
      EXPECT_EQ(Read(), QPoint(300, 200)) << percent;
    }
    EXPECT_EQ(Find<QWidget>("Plot")->width(), ZoomedLength(View().Zoom, 640));
    EXPECT_EQ(Find<QScrollBar>("HPScroll")->value(), View().X);
  }
  EXPECT_FALSE(IsEnabled("MNU_VIEW_ZoomOut"));
  for (const auto& [key, zoom] : {std::pair("ctrl+1", 1.0),
                                  {"ctrl+plus", 2},
                                  {"ctrl+plus", 3},
                                  {"ctrl+KP_Add", 4},
                                  {"ctrl+minus", 3},
                                  {"ctrl+equal", 4}}) {
    Key(key);
    EXPECT_EQ(View().Zoom, zoom) << key;
  }
  Key("ctrl+0");
  const QWidget* area = Find<QWidget>("PictureArea");
  EXPECT_TRUE(View().Fits && !IsCutOff(View()));
  EXPECT_TRUE(Find<QWidget>("Plot")->width() == area->width() ||
              Find<QWidget>("Plot")->height() == area->height());
  const double fitted = View().Zoom;
  Window().resize(1000, 700);
  Settle();
  EXPECT_GT(View().Zoom, fitted) << "it goes on fitting";
  ChooseMenu("MNU_VIEW_ActualSize");
  EXPECT_EQ(View().Zoom, 1);
  ClickControl(Find<QLabel>("zoompercent"));
  Until([] { return QApplication::activePopupWidget() != nullptr; }, "the menu is open");
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  for (QAction* action : menu->actions())
    if (action->text() == "25%") menu->setActiveAction(action);
  Key("Return");
  EXPECT_EQ(View().Zoom, 0.25);
  Key("alt+1");
  EXPECT_EQ(State().mode, Mode::AxisDef);
}

TEST_F(ZoomedWindow, CapturesTracesAndDragsMeanTheSamePixelsAtEveryZoom) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(77, 58, 3);
  const std::vector<float> traced = State().store.ListY;
  const int count = State().store.CaptureCount;
  ASSERT_GT(count, 400);
  for (const auto& [key, times, zoom] :
       {std::tuple("ctrl+plus", 3, 4.0), std::tuple("ctrl+minus", 2, 0.25)}) {
    for (int i = 0; i < 4 && State().store.CaptureCount > 0; ++i) Key("ctrl+z");
    ASSERT_EQ(State().store.CaptureCount, 0);
    Key("ctrl+1");
    MoveOverPlot(77, 58);
    for (int i = 0; i < times; ++i) Key(key);
    ASSERT_EQ(View().Zoom, zoom);
    if (zoom > 1) {
      // The tracer takes the view along.
      ClickPixel(77, 58, 3);
      EXPECT_EQ(State().store.CaptureCount, count);
      EXPECT_EQ(State().store.ListY, traced);
      EXPECT_GT(View().X, 0);
      Key("ctrl+z");
      Find<QScrollBar>("HPScroll")->setValue(800);
      Find<QScrollBar>("VpScroll")->setValue(400);
      Settle();
      ClickPixel(301, 203);
      EXPECT_EQ(State().store.LastPixelX, 301);
      EXPECT_EQ(State().store.LastPixelY, 480 - 203);
      Key("Right");
      EXPECT_EQ(Read(), QPoint(302, 203)) << "a key goes one pixel of the picture";
      Key("ctrl+Up");
      EXPECT_EQ(Read(), QPoint(302, 193));
      Key("F6");
      EXPECT_EQ(Read(), QPoint(302, 193));
      // A dragged point goes by pixels of the picture.
      Key("ctrl+e");
      MoveOverPixel(301, 203);
      Drag("1", {40, -20});
      EXPECT_EQ(State().store.Places[State().store.ListId[1]], (Place{311, 198}));
      ClickTool("graphize");
    } else {
      ClickPlot(75, 50);
      EXPECT_EQ(State().store.LastPixelX, 300);
      EXPECT_EQ(State().store.LastPixelY, 480 - 200);
    }
  }
}

TEST_F(ZoomedWindow, TheViewIsDraggedByTheMiddleButtonAndBySpace) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  MoveOverPlot(300, 240);
  Key("ctrl+plus");
  Key("ctrl+plus");
  const auto from = QPoint(View().X, View().Y);
  const auto moved = [&] { return QPoint(View().X, View().Y) - from; };
  Drag("2", {-60, -40});
  EXPECT_EQ(moved(), QPoint(60, 40));
  Drag("2", {60, 40});
  EXPECT_EQ(moved(), QPoint(0, 0));
  Xdo({"keydown", "space"});
  Drag("1", {-30, 20});
  Xdo({"keyup", "space"});
  EXPECT_EQ(moved(), QPoint(30, -20));
  EXPECT_EQ(State().store.CaptureCount, 0) << "nothing was captured";
  Drag("1", {0, 0});
  EXPECT_EQ(State().store.CaptureCount, 1);
  // A control that Tab has led to keeps its key.
  Find<QWidget>("CHK_Center")->setFocus(Qt::TabFocusReason);
  const bool checked = State().tracer.Center.Checked;
  Key("space");
  EXPECT_NE(State().tracer.Center.Checked, checked);
}

TEST_F(ZoomedWindow, TheOverviewShowsWhereOneIsLeadsThereAndMakesWay) {
  Start();
  OpenSample("pendulum.bmp");
  Window().resize(900, 560);
  Settle();
  auto* overview = Find<QWidget>("Overview");
  const auto* plot = Find<QWidget>("Plot");
  const auto clickAt = [&](double x, double y) {
    MoveTo(overview, QPoint(static_cast<int>(x * overview->width()),
                            static_cast<int>(y * overview->height())));
    Xdo({"click", "1"});
  };
  EXPECT_EQ(overview->isVisible(), IsCutOff(View()));
  Key("ctrl+0");
  EXPECT_FALSE(overview->isVisible());
  for (int i = 0; i < 4; ++i) Key("ctrl+plus");
  ASSERT_TRUE(overview->isVisible());
  clickAt(0.5, 0.5);
  const auto middle = [&] {
    return QPointF((View().X + View().Width / 2.0) / plot->width(),
                   (View().Y + View().Height / 2.0) / plot->height());
  };
  EXPECT_NEAR(middle().x(), 0.5, 0.03);
  EXPECT_NEAR(middle().y(), 0.5, 0.03);
  Drag("1", {20, 10});
  EXPECT_NEAR(middle().x(), 0.5 + 20.0 / overview->width(), 0.04);
  clickAt(0.99, 0.99);
  EXPECT_EQ(View().X, View().MaximumX);
  EXPECT_EQ(View().Y, View().MaximumY);
  const QPoint hidden = plot->mapFromGlobal(overview->mapToGlobal(overview->rect().center()));
  if (!plot->visibleRegion().boundingRect().contains(hidden)) return;
  ClickTool("axisdef");
  MoveOverPlot(hidden.x(), hidden.y());
  EXPECT_EQ(PixelAt(View().Zoom, hidden.x()), Read().x());
}

TEST_F(ZoomedWindow, TheZoomWindowShowsWhereAPressSnapsToAndGrows) {
  WriteBytes(SettingsFile(), "[Snaps]\nSnapMode=2\nSnapDistance=10\n");
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  int row = 100;
  while (!IsBlack(State().plot, 300, row)) ++row;
  MoveOverPlot(300, row - 6);
  auto* zoom = Find<QWidget>("FRM_Zoom");
  auto* picture = Find<QWidget>("Zoom");
  const auto frameAt = [&](int rows) {
    const QImage shown = picture->grab().toImage();
    const int ratio = static_cast<int>(shown.devicePixelRatio());
    const int y = picture->height() / 2 + rows * State().zoom.Factor;
    return shown.pixelColor(ratio * (picture->width() / 2 - State().zoom.Factor / 2 - 1),
                            ratio * y) == QColor(0, 120, 215);
  };
  EXPECT_TRUE(frameAt(6) || frameAt(7));
  MoveOverPlot(300, row - 40);
  EXPECT_FALSE(frameAt(6) || frameAt(7));
  const QSize before = zoom->size();
  MoveTo(zoom, {zoom->width() - 2, 1});
  Drag("1", {80, -60});
  EXPECT_EQ(zoom->size(), before + QSize(80, 60));
  EXPECT_GT(picture->height(), 161 + 50);
}

TEST_F(ZoomedWindow, PartsOfPixelsAreCapturedOnlyWhenAskedFor) {
  WriteBytes(SettingsFile(), "[Options]\nSubPixelClicks=1\n");
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(300, 200);
  EXPECT_EQ(State().store.Places[State().store.CaptureId[1]], (Place{300, 200})) << "not at 1:1";
  MoveOverPlot(300, 200);
  for (int i = 0; i < 3; ++i) Key("ctrl+plus");
  const QPoint corner(4 * 300, 4 * 200);
  ClickPlot(corner.x() + 3, corner.y() + 2);
  EXPECT_EQ(State().store.Places[State().store.CaptureId[2]], (Place{300.25f, 200}));
}

}  // namespace
}  // namespace graphize::test
