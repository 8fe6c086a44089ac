// Curves read in their colours, with mouse and keys.

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QScreen>
#include <QSlider>
#include <QTableWidget>

#include "app/window_driver.h"
#include "commands/preview_commands.h"
#include "commands/symbol_preview.h"
#include "support/colour_plot.h"
#include "support/true_data.h"

namespace graphize::test {
namespace {

constexpr double kUnitsPerRow = 30.0 / 430;

class ReadingWindow : public WindowTest {
 protected:
  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }

  /// Three curves in blue, red and green, of which two cross.
  void OpenTemperatures() { OpenInColours(kSamples / "temperature_colour.jpg"); }
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

TEST_F(ReadingWindow, WhatIsNoCurveIsNamedAndNothingIsShown) {
  Start();
  OpenTemperatures();
  struct Case {
    int X, Y;
    const char *Curve, *Symbols;
  };
  for (const bool hasAxes : {false, true}) {
    if (hasAxes) CalibrateTemperatures();
    for (const Case& test : {Case{145, 65, "a word", "a word"},
                             {105, 65, "a sample of the legend", "a sample of the legend"},
                             {69, 300, "the frame", "the frame"},
                             {400, 17, "a word", "outside the axes"},
                             {450, 255, "only paper", "only paper"}}) {
      SCOPED_TRACE(testing::Message() << test.X << "," << test.Y << " axes " << hasAxes);
      for (const bool isCurve : {true, false}) {
        Key(isCurve ? "ctrl+6" : "ctrl+7");
        ClickPlot(test.X, test.Y);
        EXPECT_TRUE(Reading().startsWith("No ")) << Reading().toStdString();
        EXPECT_TRUE(Reading().contains(QLatin1String(isCurve ? test.Curve : test.Symbols)))
            << Reading().toStdString();
        EXPECT_FALSE(CanAccept());
      }
    }
  }
}

TEST_F(ReadingWindow, EscapeStopsASearchAndLeavesWhatWasShown) {
  Start();
  // A page of noise, which takes its time.
  Raster page = Raster::Filled(3000, 3000, kWhitePixel);
  std::uint32_t random = 7;
  for (std::size_t i = 0; i < page.PixelCount(); ++i) {
    random = random * 1664525u + 1013904223u;
    if ((random >> 24) < 90) page.Pixels()[i] = kBlackPixel;
  }
  QImage(reinterpret_cast<const uchar*>(page.Pixels()), 3000, 3000, QImage::Format_RGB32)
      .save(QString::fromStdString((Folder() / "noise.png").string()));
  OnFileDialog(Folder() / "noise.png");
  ClickTool("open");
  Until([this] { return State().plot.IsPresent(); }, "the picture is open");
  Settle();
  for (const char* mode : {"ctrl+6", "ctrl+7"}) {
    Key(mode);
    Xdo({"keydown", "Escape"});
    ClickPlot(300, 300);
    Xdo({"keyup", "Escape"});
    EXPECT_TRUE(Reading().startsWith("Stopped: nothing was ")) << Reading().toStdString();
    EXPECT_FALSE(HasReading(State()));
  }
}

TEST_F(ReadingWindow, DoubtfulSymbolsAreSteppedThroughInTurn) {
  Start();
  ColourPlot drawn;
  const std::vector<PixelPosition> centres = {{70, 60},   {110, 200}, {150, 120}, {190, 80},
                                              {230, 160}, {270, 60},  {310, 220}};
  drawn.Symbols(centres, {Symbol::Disc, 12}, kBlackPixel);
  PlotDrawing cover = drawn.Layer();
  for (const int i : {1, 4}) cover.Disc({centres[i].X + 5, centres[i].Y + 1}, 13);
  drawn.Put(cover, 0xffd62728);
  QImage(reinterpret_cast<const uchar*>(drawn.Picture.Pixels()), 400, 300, QImage::Format_RGB32)
      .save(QString::fromStdString((Folder() / "discs.png").string()));
  OpenInColours(Folder() / "discs.png");
  Key("ctrl+7");
  ClickPlot(70, 60);
  ASSERT_TRUE(State().reading.Symbols) << Reading().toStdString();
  ASSERT_TRUE(Reading().contains("2 of them doubtful")) << Reading().toStdString();
  const auto current = [this] { return static_cast<int>(std::lround(CurrentSymbol(State())->X)); };
  std::vector<int> seen;
  for (int i = 0; i < 3; ++i) {
    ClickControl(Find<QWidget>("BTN_NextDoubtful"));
    seen.push_back(current());
    EXPECT_TRUE(Reading().contains("The framed one, kept: ")) << Reading().toStdString();
  }
  EXPECT_NEAR(seen[0], 110, 3);
  EXPECT_NEAR(seen[1], 230, 3);
  EXPECT_EQ(seen[2], seen[0]) << "and round again";
}

TEST_F(ReadingWindow, DensityToleranceAndBlockersChangeWhatIsShown) {
  Start();
  OpenTemperatures();
  Key("ctrl+6");
  ClickCurve(1, 200);
  ASSERT_TRUE(State().reading.Curve);
  EXPECT_TRUE(CanAccept());
  EXPECT_TRUE(Reading().contains("values come when the axes")) << Reading().toStdString();
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
  EXPECT_LE(shown(), all / 40);
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

TEST_F(ReadingWindow, AllCurvesAreReadAndTheTickedOnesTaken) {
  Start();
  OpenTemperatures();
  CalibrateTemperatures();
  ChooseForm("MNU_DATA_ReadAll", "FRM_ReadAll");
  auto* table = Find<QTableWidget>("LST_Curves");
  ASSERT_EQ(table->rowCount(), 3);
  EXPECT_GT(table->item(0, 1)->text().toInt(), 600);
  const auto clickName = [&](int row) {
    MoveTo(table->viewport(), table->visualItemRect(table->item(row, 0)).center());
    Xdo({"click", "1"});
  };
  clickName(1);
  Key("space");
  EXPECT_EQ(State().readAll.Current, 1);
  EXPECT_FALSE(State().readAll.Items[1].IsTaken);
  clickName(2);
  Key("F2");
  Xdo({"type", "summit"});
  Key("Return");
  EXPECT_TRUE(FormIsOpen()) << "Return ends the name alone";
  EXPECT_EQ(State().readAll.Items[2].Name, "summit");
  ClickControl(Find<QWidget>("BTN_Accept"));
  UntilFormIsClosed();
  ASSERT_EQ(State().curves.Curves.size(), 2u);
  EXPECT_EQ(State().curves.Curves[1].Name, "summit");
  for (int i = 0; i < 2; ++i)
    EXPECT_GT(PointsOf(State().curves, State().store, i).CaptureCount, 600);
  EXPECT_TRUE(TextOf("LBL_InkCheck").contains("points: ")) << "they are held against the picture";
  Key("ctrl+z");
  EXPECT_EQ(State().curves.Curves.size(), 1u);
  EXPECT_EQ(State().store.CaptureCount, 0);

  // A name that is there is told, and nothing is taken.
  ChooseForm("MNU_DATA_ReadAll", "FRM_ReadAll");
  table = Find<QTableWidget>("LST_Curves");
  clickName(2);
  Key("F2");
  Xdo({"type", "curve 1"});
  ClickControl(Find<QWidget>("BTN_Accept"));
  EXPECT_TRUE(TextOf("LBL_Hint").contains("curve 1")) << TextOf("LBL_Hint").toStdString();
  Key("Escape");
  UntilFormIsClosed();
  EXPECT_EQ(State().store.CaptureCount, 0);
}

TEST_F(ReadingWindow, AnInkThatIsClickedBecomesBlackAndItsColoursComeBack) {
  Start();
  OpenTemperatures();
  ChooseForm("MNU_IMAGE_InkFromColour", "FRM_Ink");
  const auto in = [&](const char* name) { return Find<QWidget>(name); };
  const auto text = [&] { return TextOf("LBL_Ink"); };
  ASSERT_NE(in("BTN_Swatch_2"), nullptr);
  EXPECT_FALSE(CanAccept());
  ClickPlot(450, 255);
  EXPECT_EQ(text(), "This is the colour of the paper");
  const QPoint red = On(2, 450), blue = On(1, 300);
  const QColor before = Seen(red);
  ClickControl(in("BTN_Swatch_0"));
  const BitMap ofSwatch = State().ink.Mask;
  EXPECT_FALSE(ofSwatch.IsEmpty());
  ClickPlot(red.x(), red.y());
  EXPECT_TRUE(text().contains(" pixels are this ink")) << text().toStdString();
  EXPECT_NE(Seen(red), before) << "the mask lies over it";
  EXPECT_EQ(State().store.CaptureCount, 0);
  const QString wide = text();
  auto* slider = in("SCRL_Tolerance");
  MoveTo(slider, QPoint(2, slider->height() / 2));
  Xdo({"click", "1"});
  Until([&] { return text() != wide; }, "what counts as the ink is shown again");
  ClickControl(in("BTN_Accept"));
  UntilFormIsClosed();
  const auto isBlackNear = [&](QPoint at) {
    bool black = false;
    for (int dy = -1; dy <= 1; ++dy) black = black || IsBlack(State().plot, at.x(), at.y() + dy);
    return black;
  };
  EXPECT_TRUE(isBlackNear(red));
  EXPECT_FALSE(isBlackNear(blue));

  // Another one from the colours, which are not shown.
  ChooseForm("MNU_IMAGE_InkFromColour", "FRM_Ink");
  ClickPlot(blue.x(), blue.y());
  ClickControl(in("BTN_Accept"));
  UntilFormIsClosed();
  EXPECT_FALSE(isBlackNear(red));
  EXPECT_TRUE(isBlackNear(blue));
  ChooseMenu("MNU_IMAGE_ShowColours");
  EXPECT_FALSE(isBlackNear(blue));
  EXPECT_FALSE(IsEnabled("MNU_IMAGE_ShowColours"));
  EXPECT_EQ(Seen(red), before);
}

TEST_F(ReadingWindow, OneSymbolFindsItsKindOfWhichSomeAreLeftOut) {
  Start();
  OpenSample("groups_scatter.tga");
  ClickControl(Find<QWidget>("CMD_FindSymbols"));
  EXPECT_TRUE(Find<QWidget>("FRM_FindSymbols")->isVisible());
  EXPECT_FALSE(Find<QWidget>("FRM_ReadCurve")->isVisible());
  ClickPlot(300, 400);
  EXPECT_TRUE(Reading().startsWith("No symbols: ")) << Reading().toStdString();
  ClickPlot(548, 163);
  ASSERT_TRUE(State().reading.Symbols) << Reading().toStdString();
  EXPECT_TRUE(Reading().contains("No axes yet")) << Reading().toStdString();
  const auto found = [this]() -> const auto& {
    return State().reading.Symbols->Finding.Symbols;
  };
  constexpr std::size_t kFilled = 26;
  EXPECT_EQ(found().size(), kFilled);
  EXPECT_TRUE(Reading().startsWith("26 symbols")) << Reading().toStdString();
  ClickControl(Find<QWidget>("OPT_Centre_1"));
  EXPECT_EQ(State().reading.Symbols->Centre, SymbolCentre::Box);

  const auto clickSymbol = [&](std::size_t i) {
    ClickPlot(static_cast<int>(std::lround(found()[i].X)),
              static_cast<int>(std::lround(found()[i].Y)));
  };
  clickSymbol(3);
  EXPECT_TRUE(Reading().contains("1 is left out")) << Reading().toStdString();
  Key("Insert");
  EXPECT_FALSE(Reading().contains("is left out")) << Reading().toStdString();
  Key("Delete");
  clickSymbol(5);
  ClickControl(Find<QWidget>("OPT_Centre_0"));
  EXPECT_TRUE(Reading().contains("2 are left out")) << "they stay so: " << Reading().toStdString();

  // Their places are kept until the axes come.
  Key("Return");
  EXPECT_EQ(State().store.CaptureCount, kFilled - 2);
  EXPECT_FALSE(State().reading.Symbols);
  EXPECT_TRUE(ValueOf("TXT_Line_0").startsWith("column ")) << ValueOf("TXT_Line_0").toStdString();
  OnMessage("points have no values yet", QMessageBox::Ok);
  ClickTool("save");
  Calibrate({{{70, 430, "0", "0"}, {610, 430, "90", "0"}, {70, 40, "0", "65"}}});
  EXPECT_NEAR(State().store.CaptureX[1] * 6 + 70,
              State().store.Places[State().store.CaptureId[1]].Column, 1e-2);
  Key("ctrl+7");
  ClickPlot(548, 163);
  EXPECT_EQ(found().size(), kFilled);
  Key("Escape");
  EXPECT_FALSE(State().reading.Symbols);
}

}  // namespace
}  // namespace graphize::test
