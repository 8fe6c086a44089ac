// Not tests: what draws the pictures of the help page and the README, from the real window.
// tools/make_pictures runs it.

#include <QDir>
#include <QSlider>
#include <QTabWidget>

#include "app/window_driver.h"

namespace graphize::test {
namespace {

class DISABLED_Pictures : public WindowTest {
 protected:
  void SetUp() override { ASSERT_TRUE(qEnvironmentVariableIsSet("PICTURES")); }

  /// Writes the picture of a part of a widget; few colours, so that the help stays small.
  void Save(QWidget* widget, const char* file, const QRect& part = {}) {
    Settle();
    const QImage seen = widget->grab(part.isNull() ? widget->rect() : part).toImage();
    const QString path = qEnvironmentVariable("PICTURES") + QLatin1Char('/') + QLatin1String(file);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    EXPECT_TRUE(seen.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither).save(path));
  }
  void Resize(int width, int height) {
    Window().resize(width, height);
    Settle();
  }
  void TracePendulum() {
    Start();
    OpenSample("pendulum.bmp");
    CalibratePendulum();
    ClickPlot(77, 58, 3);
    ASSERT_GT(State().store.CaptureCount, 500);
  }
};

TEST_F(DISABLED_Pictures, TheWindow) {
  TracePendulum();
  Resize(980, 760);
  MoveOverPlot(300, 220);
  Save(&Window(), "help/pictures/overview.png");
  Resize(1280, 1000);
  MoveOverPlot(300, 220);
  Save(&Window(), "docs/screenshot.png");
}

TEST_F(DISABLED_Pictures, CurvesOfOnePicture) {
  Start();
  OpenInColours(kSamples / "temperature_colour.jpg");
  Calibrate({{{70, 470, "0", "-6"}, {720, 470, "24", "-6"}, {70, 40, "0", "24"}}});
  Xdo({QStringLiteral("key"), QStringLiteral("F2")});
  for (const auto& [name, row] : {std::pair("coast", 224), {"inland", 248}, {"summit", 383}}) {
    if (row != 224) Xdo({QStringLiteral("key"), QStringLiteral("ctrl+n")});
    Xdo({QStringLiteral("type"), QLatin1String(name)});
    Xdo({QStringLiteral("key"), QStringLiteral("Return")});
    ClickControl(Find<QWidget>("CMD_ReadCurve"));
    ClickPlot(300, row);
    Xdo({QStringLiteral("key"), QStringLiteral("Return")});
    ASSERT_GT(State().store.CaptureCount, 600) << name;
  }
  ClickTool("graphize");
  Resize(1000, 780);
  Save(&Window(), "docs/curves.png");
  Save(&Window(), "help/pictures/curves.png", {0, 0, 735, 340});
}

TEST_F(DISABLED_Pictures, ZoomWindow) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  MoveOverPlot(203, 130);
  Save(Find<QWidget>("Zoom")->window() == &Window() ? Find<QWidget>("FRM_Zoom")
                                                    : Find<QWidget>("Zoom")->window(),
       "help/pictures/zoom.png");
}

TEST_F(DISABLED_Pictures, EnlargedWithTheOverview) {
  TracePendulum();
  Resize(760, 560);
  for (int i = 0; i < 3; ++i) Xdo({QStringLiteral("key"), QStringLiteral("ctrl+plus")});
  Save(&Window(), "help/pictures/enlarged.png");
}

TEST_F(DISABLED_Pictures, Settings) {
  Start();
  const char* tabs[] = {"trace", "general", "colors", "snap", "cursor", "format"};
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  QWidget* form = QApplication::activeModalWidget();
  auto* tab = form->findChild<QTabWidget*>();
  for (int i = 0; i < tab->count(); ++i) {
    tab->setCurrentIndex(i);
    const QString title = tab->tabText(i).remove(QLatin1Char('&')).toLower();
    for (const char* name : tabs)
      if (title.startsWith(QLatin1String(name)))
        Save(form, ("help/pictures/settings_" + std::string(name) + ".png").c_str());
  }
  form->close();
  UntilFormIsClosed();
}

TEST_F(DISABLED_Pictures, BlackAndWhite) {
  Start();
  OpenInColours(kSamples / "record_scanned.jpg");
  ChooseForm("MNU_IMAGE_BlackWhite", "FRM_BlackWhite");
  QWidget* form = QApplication::activeModalWidget();
  Save(form, "help/pictures/black_white.png");
  form->close();
  UntilFormIsClosed();
}

}  // namespace
}  // namespace graphize::test
