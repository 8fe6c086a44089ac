// What holds for every control of every window: it can be named, hit and reached.

#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

#include "app/status_panels.h"
#include "app/window_driver.h"
#include "raster/plot_image.h"
#include "raster/plot_view.h"

namespace graphize::test {
namespace {

class Controls : public WindowTest {
 protected:
  /// The letters that Alt reaches in `captions` must differ.
  void ExpectNoClash(const QStringList& captions, const QString& where) {
    QMap<QString, QString> taken;
    for (const QString& caption : captions) {
      const QString key = QKeySequence::mnemonic(caption).toString();
      if (key.isEmpty()) continue;
      EXPECT_FALSE(taken.contains(key))
          << where.toStdString() << ": " << key.toStdString() << " of " << caption.toStdString()
          << " and " << taken[key].toStdString();
      taken[key] = caption;
    }
  }

  void ExpectWellMade(QWidget* window) {
    const std::string where = window->objectName().toStdString();
    QStringList captions;
    for (auto* control : window->findChildren<QWidget*>()) {
      if (control->window() != window || !control->isVisible()) continue;
      const std::string what = where + ", " + control->objectName().toStdString();
      const auto* button = qobject_cast<QAbstractButton*>(control);
      if (button != nullptr) captions << button->text();
      if (qobject_cast<QCheckBox*>(control) || qobject_cast<QRadioButton*>(control)) {
        EXPECT_LE(control->width(), control->sizeHint().width() + 2)
            << what << ": a click in its middle misses it";
      }
      if (control->focusPolicy() == Qt::NoFocus || qobject_cast<QTabWidget*>(control)) continue;
      const bool named =
          !control->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty());
      EXPECT_TRUE(named) << what << " has no name for those who cannot see it";
      EXPECT_FALSE(control->objectName().isEmpty())
          << what << " " << control->metaObject()->className();
    }
    ExpectNoClash(captions, window->objectName());
  }
};

TEST_F(Controls, MenusHaveOneLetterForEachEntry) {
  Start();
  QStringList bar;
  for (QAction* menu : Window().menuBar()->actions()) {
    bar << menu->text();
    QStringList entries;
    for (QAction* entry : menu->menu()->actions()) entries << entry->text();
    ExpectNoClash(entries, menu->text());
  }
  ExpectNoClash(bar, QStringLiteral("menu bar"));
}

TEST_F(Controls, AreNamedHitAndReached) {
  Start();
  OpenSample("pendulum.bmp");
  ExpectWellMade(&Window());
  ClickTool("axisdef");
  ExpectWellMade(&Window());
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  auto* tabs = Find<QTabWidget>("Tabs");
  for (int tab = 0; tab < tabs->count(); ++tab) {
    tabs->setCurrentIndex(tab);
    Settle();
    ExpectWellMade(QApplication::activeModalWidget());
  }
  ClickControl(Find<QWidget>("cmdCancel"));
  UntilFormIsClosed();
}

TEST_F(Controls, TheJobNeedsNoMouse) {
  Start();
  const auto key = [this](const char* name) {
    Xdo({QStringLiteral("key"), QString::fromLatin1(name)});
  };
  OnFileDialog(kSamples / "pendulum.bmp");
  key("ctrl+o");
  Until([this] { return State().plot.IsPresent(); }, "the picture is open");
  // Tab comes by the toolbar's buttons, and the space bar presses them.
  const QWidget* button = Find<QToolBar>("Toolbar1")->widgetForAction(Find<QAction>("axisdef"));
  const QWidget* first = QApplication::focusWidget();
  do key("Tab");
  while (!button->hasFocus() && QApplication::focusWidget() != first);
  ASSERT_TRUE(button->hasFocus());
  key("space");
  EXPECT_EQ(State().mode, Mode::AxisDef);
  EXPECT_TRUE(Find<QAction>("MNU_MODE_axisdef")->isChecked());
  key("F6");
  EXPECT_TRUE(Find<QWidget>("Plot")->underMouse());
  EXPECT_FALSE(State().axisPanel.LiveXPixel.empty());
  CalibratePendulum();
  key("ctrl+3");
  EXPECT_EQ(State().mode, Mode::BlockTest);
  key("ctrl+2");
  EXPECT_EQ(State().mode, Mode::Graphize);

  for (int i = 0; i < 8; ++i) ClickPlot(200 + 20 * i, 200);
  auto* line = Find<QLineEdit>("TXT_Line_2");
  ClickControl(line);
  Xdo({"click", "4"});
  EXPECT_LT(State().store.Page.ScrollValue, 4) << "the wheel scrolls";
  ClickControl(line);
  const int selected = State().store.Page.SelectionEnd;
  for (const char* name : {"Down", "Down", "shift+Down"}) key(name);
  EXPECT_EQ(State().store.Page.SelectionStart, selected + 2);
  EXPECT_EQ(State().store.Page.SelectionEnd, selected + 3);
  for (const char* other : {"TXT_Line_0", "TXT_Line_2", "TXT_Line_4"})
    EXPECT_FALSE(Find<QLineEdit>(other)->hasSelectedText());
  key("Delete");
  EXPECT_EQ(State().store.ListCount, 6);
}

TEST_F(Controls, WhatALongOperationSaysIsReadableOnItsProgressBar) {
  QStatusBar bar;
  bar.resize(700, 24);
  StatusPanels panels(&bar);
  bar.show();
  Settle();
  const auto* progress = bar.findChild<QProgressBar*>(QStringLiteral("ProgressBar1"));
  StatusBar status{
      .Status = "Removing grid lines please wait...", .ProgressVisible = true, .ProgressValue = 42};
  panels.Render(status, 0, false);
  EXPECT_TRUE(progress->isVisible());
  EXPECT_TRUE(progress->isTextVisible());
  EXPECT_EQ(progress->text(), "Removing grid lines please wait...  42%");
  EXPECT_GT(progress->width(), progress->fontMetrics().horizontalAdvance(progress->text()));

  const struct {
    std::string Status;
    QString Start;
  } cases[] = {{" ", "42%"}, {"100%p of %v", "100%p of %v"}, {std::string(300, 'x'), "xxx"}};
  for (const auto& c : cases) {
    status.Status = c.Status;
    panels.Render(status, 0, false);
    EXPECT_TRUE(progress->text().startsWith(c.Start)) << c.Status;
    EXPECT_TRUE(progress->text().endsWith("42%")) << c.Status;
    EXPECT_LE(progress->fontMetrics().horizontalAdvance(progress->text()), progress->width());
  }
}

TEST_F(Controls, MarksStandOutFromEveryGround) {
  constexpr int kClear = 60;  // of 256 greys
  for (const std::uint32_t ground : {kWhitePixel, kBlackPixel, 0xffffa500u, 0xff808080u})
    for (int colour = 0; colour < 16; ++colour)
      for (const bool last : {false, true}) {
        PlotImage image;
        SetPicture(image, Raster::Filled(40, 40, ground));
        const Viewport at;
        PlotView view(
            image, at,
            [&](const PlotOverlay::Rectangle&) {
              PlotOverlay overlay{.DataColour = PaletteColour(colour),
                                  .LastColour = PaletteColour(colour)};
              if (last)
                overlay.LastPoint = {20, 20};
              else
                overlay.DataPoints = {{20, 20}};
              return overlay;
            },
            nullptr);
        view.Render({}, {}, {});
        const QImage shown = view.grab().toImage();
        int seen = 0;
        for (int y = 0; y < shown.height(); ++y)
          for (int x = 0; x < shown.width(); ++x)
            if (std::abs(qGray(shown.pixel(x, y)) - qGray(ground)) > kClear) ++seen;
        EXPECT_GE(seen, 9) << std::hex << ground << std::dec << ", colour " << colour;
        EXPECT_TRUE(!last || shown.pixel(20, 20) == ground) << "its point itself stays free";
      }
}

}  // namespace
}  // namespace graphize::test
