// Curves read in their colours, with mouse and keys.

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QScreen>
#include <QSlider>

#include "app/window_driver.h"
#include "support/true_data.h"

namespace graphize::test {
namespace {

constexpr double kUnitsPerRow = 30.0 / 430;

class ReadingWindow : public WindowTest {
 protected:
  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }

  /// Three curves in blue, red and green, of which two cross.
  void OpenTemperatures() {
    OnFileDialog(kSamples / "temperature_colour.jpg");
    OnMessage("reduce colors", QMessageBox::No);
    ClickTool("open");
    Until([this] { return State().plot.IsPresent(); }, "the picture is open");
    Settle();
  }
  void CalibrateTemperatures() {
    Calibrate({{{70, 470, "0", "-6"}, {720, 470, "24", "-6"}, {70, 40, "0", "24"}}});
  }
  /// The pixel of a curve, 1 to 3, in a column.
  QPoint On(int curve, int column) const {
    const double y = TrueY(Truth(curve), (column - 70) * 24.0 / 650);
    return {column, static_cast<int>(std::lround(470 - (y + 6) / kUnitsPerRow))};
  }
  static std::vector<TruePoint> Truth(int curve) {
    QFile file(QString::fromStdString((kSamples / "temperature_colour.csv").string()));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    file.readLine();
    std::vector<TruePoint> points;
    while (!file.atEnd()) {
      const QByteArrayList values = file.readLine().trimmed().split(',');
      points.push_back({values.at(0).toDouble(), values.at(curve).toDouble()});
    }
    return points;
  }
  void ClickCurve(int curve, int column) {
    const QPoint at = On(curve, column);
    ClickPlot(at.x(), at.y());
  }
  QColor Seen(QPoint at) {
    const QPoint on = Find<QWidget>("Plot")->mapToGlobal(at);
    return Window().screen()->grabWindow(0, on.x(), on.y(), 1, 1).toImage().pixelColor(0, 0);
  }
  QString Reading() { return TextOf("LBL_Reading"); }
  bool CanAccept() { return Find<QWidget>("BTN_Accept")->isEnabled(); }
};

TEST_F(ReadingWindow, AClickShowsTheCurveThatReturnTakesAndEscapeLeaves) {
  Start();
  OpenTemperatures();
  CalibrateTemperatures();
  ClickControl(Find<QWidget>("CMD_ReadCurve"));
  ASSERT_EQ(State().mode, Mode::ReadCurve);
  EXPECT_TRUE(Find<QWidget>("FRM_ReadCurve")->isVisible());
  EXPECT_FALSE(Find<QWidget>("FRM_Tracer")->isVisible());
  ClickPlot(450, 255);
  EXPECT_TRUE(Reading().contains("only paper")) << Reading().toStdString();
  EXPECT_FALSE(CanAccept());

  const QPoint crest = On(2, 450);
  const QColor before = Seen(crest);
  ClickCurve(2, 300);
  EXPECT_TRUE(Reading().contains(" points, uncertain by ")) << Reading().toStdString();
  EXPECT_NE(Seen(crest), before);
  EXPECT_EQ(State().store.CaptureCount, 0);
  Key("Escape");
  EXPECT_EQ(Seen(crest), before);
  EXPECT_FALSE(CanAccept());

  ClickCurve(2, 300);
  ClickCurve(2, 600);
  ASSERT_TRUE(State().reading.Curve);
  EXPECT_EQ(State().reading.Curve->Clicks.size(), 2u) << "it goes through here, too";
  const auto points = static_cast<int>(State().reading.Curve->Points.size());
  EXPECT_GT(points, 640);
  Key("Return");
  EXPECT_EQ(State().store.CaptureCount, points);
  const PointStore& store = State().store;
  std::vector<double> misses;
  for (int i = 1; i <= store.CaptureCount; ++i)
    misses.push_back(std::abs(store.CaptureY[i] - TrueY(Truth(2), store.CaptureX[i])) /
                     kUnitsPerRow);
  EXPECT_LT(Median(misses), 0.1);
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text(),
            QStringLiteral("Undo Read Curve (%1 points)").arg(points));
  Key("ctrl+z");
  EXPECT_EQ(State().store.CaptureCount, 0);

  ClickCurve(3, 300);
  EXPECT_TRUE(CanAccept());
  ClickTool("graphize");
  EXPECT_FALSE(State().reading.Curve) << "another mode drops it";
}

TEST_F(ReadingWindow, DensityToleranceAndBlockersChangeWhatIsShown) {
  Start();
  OpenTemperatures();
  Key("ctrl+6");
  ClickCurve(1, 200);
  ASSERT_TRUE(State().reading.Curve);
  EXPECT_FALSE(CanAccept());
  EXPECT_TRUE(Reading().contains("Define the axes")) << Reading().toStdString();
  CalibrateTemperatures();
  Key("ctrl+6");
  ClickCurve(1, 200);
  const auto shown = [this] { return State().reading.Curve->Points.size(); };
  const std::size_t all = shown();

  auto* density = Find<QComboBox>("CMB_Density");
  const auto choose = [&](const char* what) {
    ClickControl(density);
    for (int i = 0; i < density->count(); ++i) Key("Up");
    for (int i = 0; i < density->findText(QLatin1String(what)); ++i) Key("Down");
    Key("Return");
    EXPECT_EQ(density->currentText(), what);
  };
  choose("every n pixels");
  TypeInto("TXT_Density", "50");
  EXPECT_LT(shown(), all / 40);
  choose("at given X");
  EXPECT_FALSE(CanAccept());
  TypeInto("TXT_Density", "2:4:22");
  EXPECT_EQ(shown(), 6u);
  choose("where it bends");
  EXPECT_GT(shown(), 6u);
  choose("each column");

  auto* slider = Find<QSlider>("SCRL_Tolerance");
  MoveTo(slider, QPoint(2, slider->height() / 2));
  Xdo({"click", "1"});
  EXPECT_LT(State().reading.Tolerance, 100);
  Until([&] { return CanAccept() && shown() > all / 2; }, "it is read again");

  const QPoint fence = On(1, 400);
  ClickPlot(fence.x(), fence.y(), 3);
  EXPECT_EQ(State().blockers.Count, 1);
  EXPECT_EQ(State().reading.Curve->From.Blockers.Count, 1) << "it is read with the blocker";
  ClickControl(Find<QWidget>("BTN_Accept"));
  EXPECT_EQ(static_cast<std::size_t>(State().store.CaptureCount), State().store.ListCount);
  EXPECT_GT(State().store.CaptureCount, 100);
  EXPECT_FALSE(State().reading.Curve);
}

}  // namespace
}  // namespace graphize::test
