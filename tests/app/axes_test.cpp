// Axes that are proposed, snapped to and refined, with mouse and keys.

#include <QAction>
#include <QCheckBox>
#include <QListWidget>

#include "app/window_driver.h"
#include "codecs/picbuf.h"
#include "raster/orientation.h"
#include "support/plot_drawing.h"

namespace graphize::test {
namespace {

class AxesWindow : public WindowTest {
 protected:
  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }
  QString Verdict() { return TextOf("LBL_Verdict"); }
  /// Several frames have one of this name.
  QWidget* Button(const char* name) {
    return Find<QWidget>("FRM_ProposeAxes")->findChild<QWidget*>(QLatin1String(name));
  }
  void Propose() {
    ChooseMenu("MNU_IMAGE_ProposeAxes");
    Until([this] { return State().proposedAxes.Shown && !State().commandRuns; }, "axes are shown");
    Settle();
  }
  /// A scan of which no more than a proposal can be made.
  void OpenScan() { OpenInColours(kSamples / "record_scanned.jpg"); }
  void ExpectPendulum() {
    const AxisCalibration& axes = State().calibration;
    ASSERT_TRUE(axes.IsComplete());
    for (const auto& [column, row, x, y] :
         {std::tuple(70, 430, 0.0, -1.0), {610, 40, 12.0, 1.0}, {340, 235, 6.0, 0.0}}) {
      const RealPoint real = RealPointAt(axes, column, State().plot.Height() - row);
      EXPECT_NEAR(real.X, x, 0.02);
      EXPECT_NEAR(real.Y, y, 0.005);
    }
  }
};

TEST_F(AxesWindow, SureAxesAreAcceptedWithOneKeyAndTakenBackAtOnce) {
  Start();
  OpenSample("pendulum.bmp");
  Propose();
  EXPECT_TRUE(Find<QWidget>("FRM_ProposeAxes")->isVisible());
  EXPECT_TRUE(Verdict().startsWith(QLatin1String("sure"))) << Verdict().toStdString();
  EXPECT_FALSE(State().calibration.AnyDefined()) << "nothing changes before it is accepted";
  EXPECT_EQ(State().status.Status.substr(0, 4), "sure");
  Key("Escape");
  EXPECT_FALSE(State().proposedAxes.Shown);
  EXPECT_EQ(State().status.Status, " ") << "what it said is no longer so";
  EXPECT_FALSE(State().calibration.AnyDefined());

  ClickTool("axisdef");
  ClickControl(Find<QWidget>("CMD_ProposeAxes"));
  Until([this] { return State().proposedAxes.Shown && !State().commandRuns; }, "shown again");
  Settle();
  Key("Return");
  ExpectPendulum();
  EXPECT_TRUE(Find<QWidget>("FRM_AxisDef")->isVisible());
  EXPECT_TRUE(IsEnabled("graphize"));
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text(), QStringLiteral("Undo Propose Axes"));
  const AxisCalibration accepted = State().calibration;
  Key("ctrl+z");
  EXPECT_FALSE(State().calibration.AnyDefined());
  Key("ctrl+shift+z");
  EXPECT_EQ(State().calibration, accepted);

  // Over axes that are there: leaving keeps them, another mode drops what is shown.
  Propose();
  ClickControl(Button("BTN_Cancel"));
  EXPECT_EQ(State().calibration, accepted);
  Propose();
  ClickTool("graphize");
  EXPECT_FALSE(State().proposedAxes.Shown);
  EXPECT_EQ(State().calibration, accepted);
}

TEST_F(AxesWindow, OfAProposalEachValueIsConfirmedOrAmended) {
  Start();
  OpenScan();
  Propose();
  ASSERT_TRUE(Verdict().startsWith(QLatin1String("proposal"))) << Verdict().toStdString();
  EXPECT_FALSE(Button("BTN_Accept")->isEnabled());
  EXPECT_TRUE(Find<QWidget>("TXT_PXPos_0")->hasFocus());
  const auto confirmed = [this](const char* name) { return Find<QCheckBox>(name)->isChecked(); };
  Key("Return");
  EXPECT_TRUE(confirmed("CHK_PXConfirmed_0"));
  Key("Tab");
  EXPECT_TRUE(confirmed("CHK_PYConfirmed_0"));
  EXPECT_TRUE(Find<QWidget>("TXT_PXPos_1")->hasFocus());
  EXPECT_FALSE(Button("BTN_Accept")->isEnabled());
  // Twice as much, and a text that is none of a number is not taken.
  const double wide = ValueOf("TXT_PXPos_1").toDouble();
  TypeInto("TXT_PXPos_1", "wide");
  ClickControl(Find<QWidget>("CHK_PYConfirmed_2"));
  EXPECT_FALSE(Button("BTN_Accept")->isEnabled());
  TypeInto("TXT_PXPos_1", QString::number(2 * wide));
  EXPECT_TRUE(Button("BTN_Accept")->isEnabled());
  ClickControl(Button("BTN_Accept"));
  const AxisCalibration& axes = State().calibration;
  ASSERT_TRUE(axes.IsComplete());
  EXPECT_EQ(axes.ValueX[1], static_cast<float>(2 * wide));
  EXPECT_EQ(axes.ValueY[1], axes.ValueY[0]);
  EXPECT_EQ(axes.ValueX[2], axes.ValueX[0]);
}

TEST_F(AxesWindow, OfPlotsSideBySideAClickChooses) {
  const Raster one = LoadPicture(kSamples / "pendulum.bmp")->Picture.Clone();
  Raster two(2 * one.Width(), one.Height());
  for (int y = 0; y < one.Height(); ++y)
    for (const int left : {0, one.Width()})
      std::copy(one.Row(y), one.Row(y) + one.Width(), two.Row(y) + left);
  SavePicture(Folder() / "two.bmp", 3, 0, two);
  StartWith(Folder() / "two.bmp");
  Propose();
  EXPECT_TRUE(Verdict().startsWith(QLatin1String("none"))) << Verdict().toStdString();
  EXPECT_FALSE(Verdict().contains('\n')) << "it is told once";
  EXPECT_TRUE(Find<QWidget>("CMB_Plot")->isVisible());
  ClickPlot(300, 200);
  Until([this] { return State().proposedAxes.Found.Choice.Plot == 0; }, "the left one is chosen");
  Until([this] { return Button("BTN_Accept")->hasFocus(); }, "it can be accepted");
  EXPECT_TRUE(Verdict().startsWith(QLatin1String("sure"))) << Verdict().toStdString();
  // Also where the click on the picture has taken the keys to it.
  Find<QWidget>("Plot")->setFocus();
  Key("Return");
  ExpectPendulum();
}

TEST_F(AxesWindow, OfTwoScalesTheOtherCanBeChosen) {
  const Raster two = WithSecondScale(LoadPicture(kSamples / "pendulum.bmp")->Picture);
  SavePicture(Folder() / "two.bmp", 3, 0, two);
  StartWith(Folder() / "two.bmp");
  Propose();
  ASSERT_EQ(State().proposedAxes.Found.Y.Scales.size(), 2u) << Verdict().toStdString();
  const auto originRow = [this] {
    const ProposedRow& origin = State().proposedAxes.Found.Rows.at(0);
    return origin.Row + 195 * origin.Y;
  };
  EXPECT_NEAR(originRow(), 235, 1);
  ClickControl(Find<QWidget>("CMB_YScale"));
  Key("Down");
  Key("Return");
  Until([this] { return State().proposedAxes.Found.Y.Scale == 1 && !State().commandRuns; },
        "the right one is proposed");
  EXPECT_NEAR(originRow(), 235 + 97, 1);
  EXPECT_TRUE(Verdict().startsWith(QLatin1String("proposal"))) << "a choice is never sure";
}

TEST_F(AxesWindow, ClicksSnapToTicksWhileTheRowsKeepTheirPixels) {
  Start();
  OpenSample("pendulum.bmp");
  ClickTool("axisdef");
  TypeInto("TXT_XPos_0", "0");
  TypeInto("TXT_YPos_0", "-1");
  MoveOverPlot(72, 427);
  ASSERT_TRUE(State().mouse.AxisSnap);
  EXPECT_NEAR(State().mouse.AxisSnap->Column, 70, 0.6);
  EXPECT_NEAR(State().mouse.AxisSnap->Row, 430, 0.6);
  Xdo({"click", "1"});
  TypeInto("TXT_XPos_1", "12");
  MoveOverPlot(608, 432);
  EXPECT_TRUE(State().mouse.AxisSnap);
  Xdo({"keydown", "shift"});
  EXPECT_FALSE(State().mouse.AxisSnap) << "Shift holds it off";
  Xdo({"keyup", "shift"});
  EXPECT_TRUE(State().mouse.AxisSnap) << "without a move of the pointer";
  Xdo({"keydown", "shift"});
  MoveOverPlot(607, 432);
  EXPECT_FALSE(State().mouse.AxisSnap);
  Xdo({"click", "1"});
  Xdo({"keyup", "shift"});
  TypeInto("TXT_YPos_2", "1");
  ClickPlot(73, 42);
  const AxisCalibration& axes = State().calibration;
  ASSERT_TRUE(axes.IsComplete());
  const int height = State().plot.Height();
  EXPECT_EQ(axes.PixelX, (std::array<std::int16_t, 3>{72, 607, 73}));
  EXPECT_EQ(axes.PixelY[0], height - 427);
  EXPECT_EQ(axes.PixelY[2], height - 42);
  EXPECT_TRUE(axes.Refined.Rows[0] && axes.Refined.Rows[2]);
  EXPECT_FALSE(axes.Refined.Rows[1]);
  EXPECT_FALSE(axes.Refined.On) << "off until it is asked for";
  Key("space");
  EXPECT_FALSE(axes.XLog || axes.YLog) << "the keys are on no switch";
}

TEST_F(AxesWindow, ReferencesRefineTheAxesAndTellHowWellTheyAgree) {
  Start();
  OpenSample("pendulum.bmp");
  // Three clicks that are off by some pixels, none of them snapped.
  Xdo({"keydown", "shift"});
  ClickTool("axisdef");
  Xdo({"keyup", "shift"});
  Calibrate({{{70, 430, "0", "-1"}, {606, 434, "12", "-1"}, {70, 40, "0", "1"}}});
  ClickTool("axisdef");
  ASSERT_TRUE(Find<QWidget>("CMD_AddReference")->isEnabled());
  ClickControl(Find<QWidget>("CMD_AddReference"));
  EXPECT_TRUE(Find<QWidget>("TXT_RefX")->hasFocus());
  const auto add = [this](const char* x, const char* y, int column, int row) {
    Xdo({"type", x});
    Key("Tab");
    Xdo({"type", y});
    ClickPlot(column, row);
  };
  const QPoint place = Find<QWidget>("Plot")->mapToGlobal(QPoint());
  add("6", "", 340, 431);
  EXPECT_EQ(Find<QWidget>("Plot")->mapToGlobal(QPoint()), place) << "the picture stays";
  EXPECT_EQ(State().status.Hint.substr(0, 5), "Enter") << "it waits for more";
  EXPECT_TRUE(Find<QWidget>("TXT_RefX")->hasFocus());
  add("12", "1", 611, 41);
  ASSERT_EQ(State().calibration.Refined.References.size(), 2u);
  EXPECT_FALSE(State().calibration.Refined.References[0].Y);
  EXPECT_EQ(Find<QListWidget>("LST_References")->count(), 2);
  EXPECT_TRUE(TextOf("LBL_Residual").contains(QLatin1String("pixels"))) << "residuals are told";
  EXPECT_FALSE(TextOf("LBL_RowResidual_1").isEmpty());
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text(), QStringLiteral("Undo Axis reference"));

  Key("Escape");
  EXPECT_FALSE(State().reference.Armed);
  EXPECT_FALSE(Find<QWidget>("LBL_Refined")->isVisible());

  // A chosen one is moved by a click, values and all; Undo takes that back at once.
  auto* list = Find<QListWidget>("LST_References");
  list->setCurrentRow(0);
  const auto references = [this] { return State().calibration.Refined.References; };
  const auto placed = references();
  ClickPlot(340, 380);
  ASSERT_EQ(references().size(), 2u);
  EXPECT_EQ(references()[0], placed[1]);
  EXPECT_EQ(references()[1].X, 6);
  EXPECT_EQ(references()[1].At.RowUp, static_cast<float>(State().plot.Height() - 380));
  Key("ctrl+z");
  EXPECT_EQ(references(), placed);
  list->setCurrentRow(-1);
  MoveOverPlot(400, 200);
  const QString before = ValueOf("XValue"), angle = TextOf("LBL_Angle");
  ClickControl(Find<QWidget>("CHK_Refined"));
  MoveOverPlot(400, 200);
  EXPECT_NE(ValueOf("XValue"), before);
  EXPECT_TRUE(Find<QWidget>("LBL_Refined")->isVisible()) << "it is marked";
  EXPECT_NE(TextOf("LBL_Angle"), angle) << "the rotation of these axes";
  Key("ctrl+z");
  EXPECT_FALSE(State().calibration.Refined.On);
  Key("ctrl+shift+z");
  EXPECT_TRUE(State().calibration.Refined.On);

  ClickControl(Find<QWidget>("CMD_ReDefine_1"));
  EXPECT_FALSE(State().calibration.Refined.On) << "a change of a row drops it";
  EXPECT_EQ(State().calibration.Refined.References.size(), 2u);
  Key("ctrl+z");
  EXPECT_TRUE(State().calibration.Refined.On) << "not the typing in the box that has the focus";
  EXPECT_EQ(ValueOf("TXT_XPos_1"), "12");
}

TEST_F(AxesWindow, TheGridOfRoundValuesIsDrawnWhereTheAxesHaveThem) {
  Start();
  OpenSample("pendulum.bmp");
  EXPECT_FALSE(IsEnabled("MNU_VIEW_AxesGrid"));
  CalibratePendulum();
  const auto grab = [this] { return Find<QWidget>("Plot")->grab().toImage(); };
  const QImage plain = grab();
  ChooseMenu("MNU_VIEW_AxesGrid");
  EXPECT_TRUE(Find<QAction>("MNU_VIEW_AxesGrid")->isChecked());
  const QImage lines = grab();
  EXPECT_NE(lines.pixel(160, 300), plain.pixel(160, 300)) << "X of 2";
  EXPECT_EQ(lines.pixel(182, 300), plain.pixel(182, 300)) << "X of 2.5";
  ChooseMenu("MNU_VIEW_AxesGrid");
  EXPECT_EQ(grab(), plain);
}

}  // namespace
}  // namespace graphize::test
