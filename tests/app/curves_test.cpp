// Three curves of one picture, made with mouse and keys.

#include <QCheckBox>
#include <QComboBox>
#include <QScreen>

#include "app/window_driver.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

class CurvesTest : public WindowTest {
 protected:
  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }
  void Type(const char* text) { Xdo({QStringLiteral("type"), QString::fromUtf8(text)}); }

  /// Whether the pixel of the picture has the colour of a curve on the screen, and never in the
  /// raster.
  bool IsMarked(int x, int y, int colour) {
    Settle();
    const QPoint at = Find<QWidget>("Plot")->mapToGlobal(QPoint(x, y));
    const QColor seen =
        Window().screen()->grabWindow(0, at.x(), at.y(), 1, 1).toImage().pixelColor(0, 0);
    EXPECT_NE(GetPixel(State().plot, x, y), kCurveColours[colour]);
    return seen.rgb() == PixelOfColour(kCurveColours[colour]);
  }

  std::string Export(const char* name) {
    OnFileDialog(Folder() / name);
    ClickControl(Find<QWidget>("BTN_Accept"));
    UntilFormIsClosed();
    return BytesOf(Folder() / name);
  }
};

TEST_F(CurvesTest, ThreeAreCapturedShownExportedAndTakenBack) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  EXPECT_FALSE(Find<QWidget>("CHK_CurveShown")->isEnabled() ||
               Find<QWidget>("CMD_DeleteCurve")->isEnabled());
  ClickPlot(70, 235);
  ClickPlot(250, 40);
  EXPECT_FALSE(IsMarked(70, 235, 0)) << "one curve alone is not marked";

  ClickControl(Find<QWidget>("CMD_NewCurve"));
  EXPECT_TRUE(IsMarked(70, 235, 0));
  OnMessage("There is a curve \"curve 1\" already.", QMessageBox::Ok);
  Type("curve 1");
  Key("Return");
  UntilFormIsClosed();
  Key("ctrl+a");
  Type("b, \"<x>\"");
  Key("Return");
  EXPECT_EQ(State().curves.Curves[1].Name, "b, \"<x>\"");
  ClickPlot(250, 235);
  ClickPlot(610, 430);
  Key("ctrl+n");
  ClickPlot(430, 40);
  EXPECT_EQ(State().curves.Curves[2].Name, "curve 3") << "a click leaves its name";
  EXPECT_EQ(TextOf("npts"), "1");

  auto* box = Find<QComboBox>("CMB_Curve");
  EXPECT_EQ(box->currentText(), "curve 3");
  ClickControl(box);
  Key("Up");
  Key("Return");
  EXPECT_EQ(State().curves.Active, 1);
  ClickControl(Find<QWidget>("CHK_CurveShown"));
  EXPECT_FALSE(IsMarked(250, 235, 1));
  EXPECT_TRUE(IsMarked(430, 40, 2));

  ChooseForm("MNU_FILE_Export", "FRM_Export");
  EXPECT_EQ(TextOf("LBL_Hint"), "2 points of b, \"<x>\" alone.");
  ClickControl(Find<QWidget>("CHK_AllCurves"));
  EXPECT_EQ(Export("blocks.csv"),
            "curve,x,y\r\n\"b, \"\"<x>\"\"\",4,0\r\n\"b, \"\"<x>\"\"\",12,-1\r\n"
            "curve 1,0,0\r\ncurve 1,4,1\r\ncurve 3,8,1\r\n");
  ChooseForm("MNU_FILE_Export", "FRM_Export");
  ClickControl(Find<QWidget>("OPT_Table_1"));
  TypeInto("TXT_XGrid", "0:4:12");
  EXPECT_EQ(Export("table.csv"),
            "x,\"b, \"\"<x>\"\"\",curve 1,curve 3\r\n0,,0,\r\n4,0,1,\r\n8,-0.5,,1\r\n12,-1,,\r\n");
  ChooseForm("MNU_FILE_Export", "FRM_Export");
  ClickControl(Find<QWidget>("OPT_Format_1"));
  ClickControl(Find<QWidget>("OPT_Table_0"));
  EXPECT_NE(Export("three.json").find("\"name\": \"b, \\\"<x>\\\"\""), std::string::npos);

  ClickControl(Find<QWidget>("CMD_DeleteCurve"));
  EXPECT_EQ(box->count(), 2);
  Key("F2");
  Type("other");
  Key("Escape");
  EXPECT_EQ(ActiveCurve(State().curves).Name, "curve 3");
  Key("ctrl+z");
  EXPECT_EQ(box->count(), 3);
  EXPECT_EQ(TextOf("npts"), "2");
  Key("ctrl+Tab");
  EXPECT_EQ(TextOf("npts"), "1");
  EXPECT_TRUE(Find<QCheckBox>("CHK_CurveShown")->isChecked());
}

}  // namespace
}  // namespace graphize::test
