// The scanner with the real window: a virtual one, and none.

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <fstream>

#include "app/window_driver.h"
#include "support/virtual_scanner.h"

namespace graphize::test {
namespace {

class ScannerWindow : public WindowTest {
 protected:
  void StartWithScanner() {
    Start();
    Until([this] { return IsEnabled("aquire"); }, "a scanner is found");
  }

  void UntilForm(const char* form) {
    Until(
        [&] {
          const QWidget* open = QApplication::activeModalWidget();
          return open != nullptr && open->objectName() == QLatin1String(form) &&
                 open->isActiveWindow() && !State().commandRuns;
        },
        form);
    Settle();
  }

  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }

  void TypeIntoBox(QWidget* box, const QString& text) {
    ClickControl(box);
    Key("ctrl+a");
    Xdo({QStringLiteral("type"), text});
    Key("Tab");
    Until([this] { return !State().commandRuns; }, "the scanner has taken it");
  }

  VirtualScanner scanner_{{"number_of_devices 2"}};
};

TEST_F(ScannerWindow, SelectsASourceAndAquiresThePicture) {
  StartWithScanner();
  EXPECT_TRUE(IsEnabled("MNU_FILE_Aquire") && IsEnabled("MNU_FILE_SelectSource"));
  ChooseForm("MNU_FILE_SelectSource", "FRM_SelectSource");
  UntilForm("FRM_SelectSource");
  auto* list = Find<QTreeWidget>("LST_Sources");
  ASSERT_EQ(list->topLevelItemCount(), 2);
  EXPECT_EQ(list->topLevelItem(0)->text(1), "frontend-tester");
  ClickControl(Find<QWidget>("CMD_Refresh"));
  Until([&] { return list->isEnabled() && list->topLevelItemCount() == 2; }, "the list is new");
  Key("Down");
  Key("Return");
  EXPECT_FALSE(FormIsOpen());
  std::string settings;
  std::getline(std::ifstream(SettingsFile()), settings, '\0');
  EXPECT_EQ(settings, "[Scanner]\nSource=test:1\nLabel=Noname%20frontend-tester\n");

  ClickTool("aquire");
  UntilForm("FRM_Scan");
  EXPECT_EQ(TextOf("LBL_Size"), "944 x 1181 pixels");
  EXPECT_EQ(State().scan.Can.Now.Mode, "Gray");
  Find<QComboBox>("CMB_Mode")->setFocus();
  Key("Down");
  Until([this] { return State().scan.Can.Now.Mode == "Color"; }, "the mode is taken");
  TypeIntoBox(Find<QComboBox>("CMB_Resolution"), QStringLiteral("120"));
  TypeIntoBox(Find<QDoubleSpinBox>("TXT_Height"), QStringLiteral("20"));
  TypeIntoBox(Find<QDoubleSpinBox>("TXT_Width"), QStringLiteral("50"));
  EXPECT_EQ(TextOf("LBL_Size"), "236 x 94 pixels");
  ClickControl(Find<QWidget>("CMD_Preview"));
  Until([this] { return State().scan.PreviewNumber == 1 && !State().commandRuns; }, "a preview");
  ClickControl(Find<QWidget>("CMD_Scan"));
  Until([this] { return State().plot.IsPresent() && !State().commandRuns; }, "the page is here");
  EXPECT_FALSE(FormIsOpen());
  EXPECT_EQ(Window().windowTitle(), "Graphize - Scanned Plot (236x94)");
  EXPECT_EQ(TextOf("sizex"), "W=236");
  const Raster expected = ScanimagePage("-d test:1 --mode Color --resolution 120 -x 50 -y 20");
  ASSERT_EQ(expected.PixelCount(), State().plot.Pixels.PixelCount());
  EXPECT_TRUE(std::equal(expected.Pixels(), expected.Pixels() + expected.PixelCount(),
                         State().plot.Pixels.Pixels()));

  OnFileDialogProposing("untitled.tif");
  ChooseMenu("MNU_FILE_SaveImage");
}

TEST_F(ScannerWindow, TheCancelButtonWorksInTheMiddleOfAPage) {
  scanner_.Configure({"read-delay true", "read-delay-duration 200000", "resolution 200"});
  StartWithScanner();
  OpenSample("pendulum.bmp");
  const QString caption = Window().windowTitle();
  for (const bool byKey : {false, true}) {
    ClickTool("aquire");
    UntilForm("FRM_Scan");
    auto* progress = Find<QProgressBar>("PRG_Scan");
    auto* cancel = Find<QPushButton>("CMD_Cancel");
    auto* scan = Find<QPushButton>("CMD_Scan");
    EXPECT_FALSE(progress->isVisible());
    int seen = 0;
    QTimer whileItScans;
    QObject::connect(&whileItScans, &QTimer::timeout, [&] {
      if (!progress->isVisible() || progress->value() == 0) return;
      whileItScans.stop();
      seen = progress->value();
      EXPECT_FALSE(scan->isEnabled());
      const QPoint at = cancel->mapToGlobal(cancel->rect().center());
      QStringList keys = {QStringLiteral("key"), QStringLiteral("space")};
      if (!byKey)
        keys = {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                QStringLiteral("click"), QStringLiteral("1")};
      QProcess::startDetached(QStringLiteral("xdotool"), keys);
    });
    whileItScans.start(10);
    Key("Return");
    EXPECT_GT(seen, 0);
    EXPECT_LT(seen, 90);
    Until([this] { return !FormIsOpen() && !State().commandRuns; }, "it has stopped");
    EXPECT_EQ(Window().windowTitle(), caption);
    EXPECT_EQ(State().scanner.Open, nullptr);
  }
}

TEST_F(ScannerWindow, WhatIsBeingTypedDoesNotOutliveTheForm) {
  StartWithScanner();
  for (const char* box : {"TXT_Left", "CMB_Resolution"}) {
    ClickTool("aquire");
    UntilForm("FRM_Scan");
    ClickControl(Find<QWidget>(box));
    Key("ctrl+a");
    Xdo({QStringLiteral("type"), QStringLiteral("99")});
    Key("Escape");
    Until([this] { return !FormIsOpen() && !State().commandRuns; }, "the form is closed");
    EXPECT_EQ(State().scanner.Open, nullptr);
  }
}

TEST_F(ScannerWindow, DraggingOverTheGlassChoosesTheArea) {
  StartWithScanner();
  ChooseForm("MNU_FILE_Aquire", "FRM_Scan");
  UntilForm("FRM_Scan");
  // The glass is a square of 200 mm as wide as its place.
  auto* glass = Find<QWidget>("PIC_Area");
  const auto at = [&](double part) {
    const int pixels = static_cast<int>(glass->width() * part);
    const QPoint point = glass->mapToGlobal(QPoint(pixels, pixels));
    return QStringList{QStringLiteral("mousemove"), QString::number(point.x()),
                       QString::number(point.y())};
  };
  const auto button = [](const char* action) {
    return QStringList{QString::fromLatin1(action), QStringLiteral("1")};
  };
  Xdo(at(0.75) + button("mousedown"));
  Xdo(at(0.5));
  Xdo(at(0.25));
  Xdo(button("mouseup"));
  Until([this] { return State().scan.Can.Now.Area.Left > 0; }, "the area is taken");
  const PageArea area = State().scan.Can.Now.Area;
  for (const double start : {area.Left, area.Top}) EXPECT_NEAR(start, 50, 2);
  for (const double length : {area.Width, area.Height}) EXPECT_NEAR(length, 100, 3);
  EXPECT_EQ(Find<QDoubleSpinBox>("TXT_Left")->value(), area.Left);
  EXPECT_EQ(Find<QDoubleSpinBox>("TXT_Height")->value(), area.Height);
  ClickControl(Find<QWidget>("CMD_WholePage"));
  EXPECT_EQ(State().scan.Can.Now.Area, (PageArea{0, 0, 200, 200}));
  Key("Escape");
}

TEST_F(ScannerWindow, AFailureIsToldOverTheForm) {
  scanner_.Configure({"read-status-code \"SANE_STATUS_JAMMED\""});
  StartWithScanner();
  ChooseForm("MNU_FILE_Aquire", "FRM_Scan");
  OnMessage("Error while scanning: The paper is jammed", QMessageBox::Ok);
  ClickControl(Find<QWidget>("CMD_Scan"));
  Until([this] { return !FormIsOpen() && !State().commandRuns; }, "the message is answered");
  EXPECT_FALSE(State().plot.IsPresent());
}

TEST_F(ScannerWindow, WithoutAScannerOneInTheNetworkCanBeLookedFor) {
  scanner_.Unplug();
  Start();
  Until([this] { return IsEnabled("MNU_FILE_SelectSource"); }, "the library is there");
  // The second answer comes on its own time.
  for (int i = 0; i < 10; ++i) Settle();
  EXPECT_FALSE(IsEnabled("aquire") || IsEnabled("MNU_FILE_Aquire"));
}

TEST_F(ScannerWindow, ASourceChosenBeforeEnablesThemWithoutASearch) {
  scanner_.Unplug();
  std::ofstream(SettingsFile()) << "[Scanner]\nSource=test:0\n";
  StartWithScanner();
  EXPECT_TRUE(IsEnabled("MNU_FILE_Aquire") && IsEnabled("MNU_FILE_SelectSource"));
}

}  // namespace
}  // namespace graphize::test
