// The settings window, once through with real events.

#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QToolButton>
#include <fstream>

#include "app/window_driver.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

class SettingsWindow : public WindowTest {
 protected:
  void Tab(int index) {
    Find<QTabWidget>("Tabs")->setCurrentIndex(index);
    Settle();
  }
  void Press(const char* control) { ClickControl(Find<QWidget>(control)); }
  void Step(const char* upDown, const char* way) {
    ClickControl(Find<QWidget>(upDown)->findChild<QToolButton*>(QLatin1String(way)));
  }
};

TEST_F(SettingsWindow, ChangesShowAtOnceAndAreTakenOverSavedAndCancelled) {
  Start();
  OpenSample("pendulum.bmp");
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  Tab(5);
  EXPECT_EQ(ValueOf("Text1"), "1.24567E+01  5.49876E+01");
  Step("UpDown_1", "Up");
  EXPECT_EQ(TextOf("LBL_FMT_1"), "6");
  EXPECT_EQ(ValueOf("Text1"), "1.245670E+01  5.49876E+01");
  Press("CHK_Exp_1");
  Press("CHK_Delimiter_3");
  Press("OPT_Comma");
  EXPECT_EQ(ValueOf("Text1"), "1,245670E+01;54,98760");
  Press("cmdCancel");
  UntilFormIsClosed();
  EXPECT_EQ(State().formats.X, "0.00000E+00");
  EXPECT_EQ(State().settings.Delimiter, 0);

  ChooseForm("MNU_OPT_Settings", "frmOptions");
  Press("OPT_TraceType_1");
  Tab(1);
  Find<QWidget>("XUpDown")->setFocus();
  Xdo({"key", "Page_Up"});
  EXPECT_EQ(TextOf("LBL_XJump"), "60");
  Press("CHK_ZoomWindow");
  Tab(2);
  Press("Opt_Snap_3");
  TypeInto("TXT_SnapDistance", "2x5");
  EXPECT_EQ(ValueOf("TXT_SnapDistance"), "25");
  Step("UpDown1", "Down");
  EXPECT_EQ(ValueOf("TXT_SnapDistance"), "24");
  Tab(3);
  Press("OPT_Color_1");
  const QRect palette = Find<QWidget>("ColorPic")->rect();
  const QPoint blue = Find<QWidget>("ColorPic")
                          ->mapToGlobal(QPoint(palette.width() * 3 / 16, palette.height() * 3 / 4));
  Xdo({"mousemove", QString::number(blue.x()), QString::number(blue.y()), "click", "1"});
  EXPECT_EQ(State().settings.BlockColor, 9);
  Tab(4);
  Press("IMG_RevCursor_2");
  EXPECT_EQ(State().settings.CursorType, 3);
  EXPECT_EQ(Find<QWidget>("Plot")->cursor().shape(), Qt::BitmapCursor);
  EXPECT_EQ(State().settings.XJump, 50) << "nothing taken over yet";
  Press("Command4");
  EXPECT_EQ(State().settings.XJump, 60);
  const std::string file = BytesOf(SettingsFile());
  for (const char* line : {"XJump=60", "Zoom=0", "Trace=1", "BlockColor=9", "CursorType=3",
                           "SnapMode=3", "SnapDistance=24"})
    EXPECT_NE(file.find(line), std::string::npos) << line;
  Press("Command2");
  EXPECT_EQ(State().settings.CursorType, 0);
  EXPECT_EQ(State().settings.SnapDistance, 24);
  Press("Command3");
  EXPECT_EQ(State().settings.CursorType, 3);
  Press("cmdOK");
  UntilFormIsClosed();
  EXPECT_EQ(State().settings.Trace, 1);
  EXPECT_FALSE(Find<QWidget>("Zoom")->isVisible());
}

TEST_F(SettingsWindow, EveryControlIsWithinReachWithLargeType) {
  const QFont font = QApplication::font();
  QFont large = font;
  large.setPointSize(18);
  QApplication::setFont(large);
  Start();
  OpenSample("pendulum.bmp");
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  QWidget* form = QApplication::activeModalWidget();
  form->resize(form->width(), 400);  // as on a small screen
  Settle();
  EXPECT_EQ(form->height(), 400);
  const QRect screen = form->screen()->availableGeometry();
  for (int tab = 0; tab < Find<QTabWidget>("Tabs")->count(); ++tab) {
    Tab(tab);
    for (auto* control : form->findChildren<QWidget*>()) {
      if (!control->isVisible() || control->focusPolicy() == Qt::NoFocus) continue;
      for (QWidget* above = control; above != nullptr; above = above->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(above)) area->ensureWidgetVisible(control);
      QApplication::processEvents();
      const QRect shown = control->visibleRegion().boundingRect();
      EXPECT_GE(shown.height(), std::min(control->height(), 20))
          << control->objectName().toStdString();
      EXPECT_TRUE(screen.contains(QRect(control->mapToGlobal(shown.topLeft()), shown.size())))
          << tab << ' ' << control->objectName().toStdString();
    }
  }
  Press("cmdCancel");
  UntilFormIsClosed();
  QApplication::setFont(font);
}

TEST_F(SettingsWindow, TheSidePanelHasRoomForTheCaptionsOfEveryTraceType) {
  std::ofstream(SettingsFile()) << "[Options]\nTrace=2\n";
  Start();
  const int needed = Find<QWidget>("FRM_Tracer")->minimumSizeHint().width();
  for (const char* type : {"OPT_TraceType_0", "OPT_TraceType_2"}) {
    ChooseForm("MNU_OPT_Settings", "frmOptions");
    Press(type);
    Press("cmdOK");
    Until([this] { return !FormIsOpen(); }, "the window closes");
    Settle();
    EXPECT_EQ(Find<QWidget>("FRM_Tracer")->minimumSizeHint().width(), needed) << type;
    const QWidget* viewport = Find<QWidget>("FRM_Tracer")->parentWidget()->parentWidget();
    for (const char* name : {"CHK_Center", "CHK_Above", "CHK_Below", "BlockSize"}) {
      const auto* control = Find<QWidget>(name);
      EXPECT_GE(control->width(), control->sizeHint().width()) << type << ' ' << name;
      EXPECT_LE(control->mapTo(viewport, control->rect().topRight()).x(), viewport->width())
          << type << ' ' << name;
    }
  }
}

}  // namespace
}  // namespace graphize::test
