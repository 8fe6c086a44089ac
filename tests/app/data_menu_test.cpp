// The Data menu, once through, with its two windows.

#include <QClipboard>
#include <QScreen>
#include <QSlider>

#include "app/window_driver.h"
#include "support/points.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

class DataMenu : public WindowTest {
 protected:
  /// Six points, not in the order of X.
  void CapturePoints() {
    Start();
    OpenSample("pendulum.bmp");
    CalibratePendulum();
    for (const auto& [x, y] : kPoints)
      ClickPlot(static_cast<int>(70 + 45 * x), static_cast<int>(235 - 195 * y));
    ASSERT_EQ(State().store.CaptureCount, 6);
  }

  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }

  void ExpectList(const RowList& expected) {
    const RowList rows = ListRows(State().store);
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_NEAR(rows[i].X, expected[i].X, 1e-4) << "row " << i;
      EXPECT_NEAR(rows[i].Y, expected[i].Y, 1e-4) << "row " << i;
    }
    EXPECT_EQ(TextOf("npts").toStdString(), std::to_string(expected.size()));
  }

  /// Whether a pixel of the picture is shaded: on the raster, and on the screen as well.
  bool IsShaded(int x, int y) {
    Settle();
    const QPoint at = Find<QWidget>("Plot")->mapToGlobal(QPoint(x, y));
    const QColor seen =
        Window().screen()->grabWindow(0, at.x(), at.y(), 1, 1).toImage().pixelColor(0, 0);
    const Colour colour = GetPixel(State().plot, x, y);
    EXPECT_EQ(seen.rgb(), PixelOfColour(colour)) << x << ", " << y;
    return colour == PaletteColour(1);
  }

  /// The names of the controls that Tab reaches, from the one that has the focus until it returns.
  std::string TabOrder() {
    const QWidget* first = QApplication::focusWidget();
    std::string names;
    do {
      names += QApplication::focusWidget()->objectName().toStdString() + " ";
      Key("Tab");
    } while (QApplication::focusWidget() != first && names.size() < 1000);
    return names;
  }

  const RowList kPoints = {{6, 0}, {2, 1}, {8, -1}, {4, 0}, {10, 1}, {11, 0}};
};

TEST_F(DataMenu, SortsSwapsMeasuresAndUndoes) {
  CapturePoints();
  ChooseMenu("MNU_DATA_SORT_Asc");
  ExpectList({{2, 1}, {4, 0}, {6, 0}, {8, -1}, {10, 1}, {11, 0}});
  ChooseMenu("MNU_DATA_SORT_Dec");
  ExpectList({{11, 0}, {10, 1}, {8, -1}, {6, 0}, {4, 0}, {2, 1}});
  ChooseMenu("MNU_DATA_SwapXY");
  ExpectList({{0, 11}, {1, 10}, {-1, 8}, {0, 6}, {0, 4}, {1, 2}});
  ChooseMenu("MNU_Data_XY2List");
  ExpectList(kPoints);

  OnMessage("Total curve length = 2.20677E+1\r\nX-length = 2.10000E+1\r\nY-length = 6.00000E+0\r\n",
            QMessageBox::Ok);
  ChooseMenu("MNU_DATA_CurveLenght");
  ExpectList({{1, 4.12311f}, {2, 6.32456f}, {3, 4.12311f}, {4, 6.08276f}, {5, 1.41421f}});
  EXPECT_EQ(TextOf("status"), "Curve length calculated successfully");
  ChooseMenu("MNU_Data_XY2List");
  ExpectList(kPoints);

  // Without points the menu offers nothing.
  OnMessage("Delete all graphized X,Y data ?", QMessageBox::Yes);
  ClickTool("delete");
  Key("alt+d");
  for (const char* entry :
       {"MNU_DATA_SORT", "MNU_DATA_SORT_Asc", "MNU_DATA_SwapXY", "MNU_DATA_CurveLenght",
        "MNU_DATA_integrate", "MNU_Data_Sample", "MNU_Data_XY2List"})
    EXPECT_FALSE(IsEnabled(entry)) << entry;
  Key("Escape");
}

TEST_F(DataMenu, IntegratesBetweenTheLimitsAndShadesThePicture) {
  CapturePoints();
  ChooseForm("MNU_DATA_integrate", "FRM_Integrate");
  EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(), "Integrate");
  EXPECT_EQ(TextOf("LBL_Area"), "Click the integrate button");
  EXPECT_NEAR(TextOf("LBL_Xmax").toDouble(), 11, 1e-4);
  EXPECT_EQ(TabOrder(), "SCRL_Min LBL_Xmin SCRL_Max LBL_Xmax LBL_Area Command1 Command2 ");

  ClickControl(Find<QWidget>("Command1"));
  EXPECT_NEAR(TextOf("LBL_Area").toDouble(), 3.5, 1e-4);
  EXPECT_TRUE(IsShaded(160, 300)) << "point 2";
  EXPECT_TRUE(IsShaded(520, 300)) << "point 5";
  EXPECT_FALSE(IsShaded(300, 300));

  // The third step would bring the limits too near to each other.
  Find<QSlider>("SCRL_Min")->setFocus();
  for (const int limit : {2, 3, 3}) {
    Key("Right");
    EXPECT_EQ(Find<QSlider>("SCRL_Min")->value(), limit);
    EXPECT_NEAR(TextOf("LBL_Xmin").toDouble(), kPoints[limit - 1].X, 1e-4);
  }
  Key("Return");
  EXPECT_NEAR(TextOf("LBL_Area").toDouble(), 5.5, 1e-4);
  EXPECT_FALSE(IsShaded(160, 300)) << "earlier shading goes";
  EXPECT_TRUE(IsShaded(520, 300));
  for (int i = 0; i < 3; ++i) Key("Tab");
  Key("Tab");
  Key("ctrl+c");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), TextOf("LBL_Area"));

  Key("Escape");
  EXPECT_FALSE(FormIsOpen());
  EXPECT_TRUE(IsShaded(520, 300));
  ClickTool("refresh");
  EXPECT_FALSE(IsShaded(520, 300));
  ExpectList(kPoints);
}

TEST_F(DataMenu, ResamplesWhatStandsInTheBoxes) {
  CapturePoints();
  ChooseForm("MNU_Data_Sample", "Sample");
  EXPECT_EQ(TextOf("LBL_Hint"), "X turns back at captured point 3: one of several Y is taken.");
  EXPECT_EQ(TabOrder(),
            "Steps dXBox Command3 MinXBox MaxXBox SampleXLog MinYBox MaxYBox SampleYLog Command2 "
            "Command1 ");
  TypeInto("MinXBox", "2");
  TypeInto("MaxXBox", "6");
  TypeInto("Steps", "5");
  EXPECT_EQ(ValueOf("dXBox"), "1.00000E+0");
  ClickControl(Find<QWidget>("Command2"));
  const RowList resampled = {{2, 1}, {3, 0.66667f}, {4, 0.33333f}, {5, 0}, {6, -0.33333f}};
  ExpectList(resampled);
  TypeInto("dXBox", "2");
  ClickControl(Find<QWidget>("Command3"));
  EXPECT_EQ(ValueOf("Steps"), "3");

  // A bad count is told when its box is left, and once only.
  TypeInto("Steps", "1");
  OnMessage("1\r\nError in sampling parameters\r\nSetting n=2", QMessageBox::Ok);
  Key("Tab");
  Until([this] { return ValueOf("Steps") == "2"; }, "the message is answered");
  Settle();
  TypeInto("Steps", "40000");
  OnMessage("Too many points", QMessageBox::Ok);
  ClickControl(Find<QWidget>("Command2"));
  Until([this] { return !State().commandRuns; }, "the message is answered");
  ExpectList(resampled);
  TypeInto("Steps", "5");
  ClickControl(Find<QWidget>("SampleYLog"));
  OnMessage("Error while ReSampling. Remove bad points and retry", QMessageBox::Ok);
  Key("Return");
  Until([this] { return !State().commandRuns; }, "the message is answered");
  ExpectList({});

  // Cancel asks nothing, whatever stands in the boxes.
  TypeInto("Steps", "none");
  ClickControl(Find<QWidget>("Command1"));
  EXPECT_FALSE(FormIsOpen());
  ChooseMenu("MNU_Data_XY2List");
  ExpectList(kPoints);
}

TEST_F(DataMenu, ExportsOnceEverythingIsInOrder) {
  CapturePoints();
  ChooseMenu("MNU_DATA_SORT_Asc");
  ChooseForm("MNU_FILE_Export", "FRM_Export");
  EXPECT_FALSE(Find<QWidget>("CHK_AllCurves")->isEnabled());
  EXPECT_FALSE(Find<QWidget>("TXT_XGrid")->isEnabled());
  EXPECT_EQ(TextOf("LBL_Hint"), "6 points.");
  ClickControl(Find<QWidget>("OPT_Table_1"));
  TypeInto("TXT_XGrid", "2:3");
  OnMessage("\"2:3\" is no range first:step:last.", QMessageBox::Ok);
  ClickControl(Find<QWidget>("BTN_Accept"));
  Until([this] { return !State().commandRuns; }, "the message is answered");
  EXPECT_TRUE(FormIsOpen());
  TypeInto("TXT_XGrid", "2:1.5:12");
  EXPECT_EQ(TextOf("LBL_Hint"), "7 X values from 2 to 11.");
  ClickControl(Find<QWidget>("CHK_Errors"));

  // Cancel, and a disk that is full: the form stays with all that is in it, the old file whole.
  OnFileDialogProposing("pendulum.csv");
  ClickControl(Find<QWidget>("BTN_Accept"));
  Until([this] { return !State().commandRuns; }, "the question is cancelled");
  EXPECT_EQ(ValueOf("TXT_XGrid"), "2:1.5:12");
  OnFileDialog(Folder() / "pendulum.csv");
  {
    const FullDisk full(20);
    OnMessage("Error while saving.", QMessageBox::Ok);
    ClickControl(Find<QWidget>("BTN_Accept"));
    Until([this] { return !State().commandRuns; }, "the message is answered");
  }
  EXPECT_FALSE(std::filesystem::exists(Folder() / "pendulum.csv"));
  OnFileDialog(Folder() / "pendulum.csv");
  Key("Return");
  UntilFormIsClosed();
  EXPECT_TRUE(BytesOf(Folder() / "pendulum.csv").starts_with("x,y,x_error,y_error\r\n2,1,0.0222"));

  ChooseForm("MNU_FILE_Export", "FRM_Export");
  ClickControl(Find<QWidget>("OPT_Format_1"));
  ClickControl(Find<QWidget>("OPT_Table_0"));
  OnFileDialog(Folder() / "pendulum.json");
  ClickControl(Find<QWidget>("BTN_Accept"));
  UntilFormIsClosed();
  EXPECT_NE(BytesOf(Folder() / "pendulum.json").find("{\"x\": 11, \"y\": 0, "), std::string::npos);
  ChooseForm("MNU_FILE_Export", "FRM_Export");
  Key("Escape");
  UntilFormIsClosed();
}

}  // namespace
}  // namespace graphize::test
