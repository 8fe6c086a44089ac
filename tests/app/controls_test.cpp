// What holds for every control of every window: it can be named, hit and reached.

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QTranslator>
#include <fstream>

#include "app/language.h"
#include "app/program_style.h"
#include "app/status_panels.h"
#include "app/window_driver.h"
#include "base/translation.h"
#include "codecs/picbuf.h"
#include "raster/plot_view.h"
#include "session/project_file.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/virtual_scanner.h"
#include "widgets/elided_label.h"
#include "widgets/tool_tip.h"

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

  /// The letters of the bar and of each menu.
  void ExpectNoClashInMenus() {
    QStringList bar;
    for (QAction* menu : Window().menuBar()->actions()) {
      bar << menu->text();
      QStringList entries;
      for (QAction* entry : menu->menu()->actions()) entries << entry->text();
      ExpectNoClash(entries, menu->text());
    }
    ExpectNoClash(bar, QStringLiteral("menu bar"));
  }

  static std::string NamesIn(const QWidget* control) {
    std::string names;
    for (const QWidget* child : control->findChildren<QWidget*>())
      if (!child->objectName().isEmpty()) names += child->objectName().toStdString() + ' ';
    return names;
  }

  /// It lies in its parent and has the room that its text takes.
  void ExpectShownWhole(const QWidget* control, const std::string& what) {
    const QWidget* parent = control->parentWidget();
    const bool scrolls = parent->objectName() == QLatin1String("qt_scrollarea_viewport");
    const QRect room(0, 0, parent->width(),
                     scrolls ? control->geometry().bottom() + 1 : parent->height());
    EXPECT_TRUE(scrolls ? control->width() <= room.width() : room.contains(control->geometry()))
        << what << " with " << NamesIn(control) << " reaches beyond "
        << parent->metaObject()->className() << ' ' << parent->objectName().toStdString() << ": "
        << control->geometry().right() << ',' << control->geometry().bottom() << " of "
        << room.width() << ',' << room.height();
    QSize needed;
    if (const auto* label = qobject_cast<const QLabel*>(control)) {
      if (label->text().isEmpty() || label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored)
        return;
      needed = label->sizeHint();
      if (label->wordWrap()) needed = {0, label->heightForWidth(label->width())};
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(control)) {
      if (!button->text().isEmpty()) needed = button->sizeHint();
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(control)) {
      needed = {tabs->tabRect(tabs->count() - 1).right(), 0};
    } else {
      needed = control->minimumSizeHint();
    }
    EXPECT_GE(control->width(), needed.width()) << what << " is cut off";
    EXPECT_GE(control->height(), needed.height()) << what << " is cut off";
  }

  void ExpectWellMade(QWidget* window) {
    const std::string where = window->objectName().toStdString();
    QStringList captions;
    for (auto* control : window->findChildren<QWidget*>()) {
      if (control->window() != window || !control->isVisible()) continue;
      // The parts of Qt's own controls are theirs.
      if (control->objectName().startsWith(QLatin1String("qt_")) ||
          qobject_cast<QComboBox*>(control->parent()) ||
          qobject_cast<QAbstractItemView*>(control->parent()))
        continue;
      const auto* button = qobject_cast<QAbstractButton*>(control);
      const auto* label = qobject_cast<QLabel*>(control);
      const QString caption = button != nullptr  ? button->text()
                              : label != nullptr ? label->text()
                                                 : QString();
      const std::string what = where + ", " + control->metaObject()->className() + " " +
                               control->objectName().toStdString() + " \"" + caption.toStdString() +
                               "\"";
      ExpectShownWhole(control, what);
      if (button != nullptr) captions << button->text();
      if (button != nullptr || qobject_cast<QComboBox*>(control) ||
          qobject_cast<QAbstractSpinBox*>(control) || qobject_cast<QLineEdit*>(control)) {
        EXPECT_FALSE(control->toolTip().isEmpty() && control->accessibleName().isEmpty())
            << what << " does not say what it is for";
      }
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
    if (window == &Window())
      for (QAction* menu : Window().menuBar()->actions()) captions << menu->text();
    // Its two letters C are given.
    if (window->objectName() != QLatin1String("Sample"))
      ExpectNoClash(captions, window->objectName());
  }
};

/// The whole program in a language and with a font of this many points, or the desktop's.
class Speaking : public Controls {
 protected:
  ~Speaking() override {
    SetTranslator(nullptr);
    qDeleteAll(qApp->findChildren<QTranslator*>());
    QApplication::setFont(font_);
  }

  void StartIn(const char* language, int points = 0) {
    std::ofstream(SettingsFile()) << "[Options]\nLanguage=" << language << "\n";
    SpeakLanguage(SettingsFile(), TRANSLATIONS);
    QFont font = font_;
    if (points > 0) font.setPointSize(points);
    QApplication::setFont(font);
    Start();
  }

  /// A picture with axes and a traced curve.
  std::filesystem::path Project() {
    SavePicture(Folder() / "plot.bmp", 3, 0, PictureForRandomUser());
    RandomUser user(1, Folder() / "plot.bmp", Folder() / "saved.dat");
    user.Do(ReloadStep{});  // with its greys
    for (int i = 0; i < 9; ++i)
      user.Do(PointStep{static_cast<float>(40 + 12 * i), static_cast<float>(60 + i)});
    user.Do(ReferenceStep{100, 70, "5", "50"});
    std::ofstream file(Folder() / "plot.graphize", std::ios::binary);
    file << ProjectBytes(user.ws, QuietDesktop()).value();
    return Folder() / "plot.graphize";
  }

  /// Opens every window, each mode's panels and each tab, and shows them to `look`.
  void WalkAllWindows(const std::function<void(QWidget*)>& look) {
    Window().OpenWhenShown({Project()});
    Until([this] { return State().store.ListCount == 9 && IsEnabled("aquire"); }, "all is there");
    Find<QAction>("MNU_DATA_CheckInk")->trigger();
    for (const char* mode : {"axisdef", "graphize", "blocktest", "drawerase", "gridbuster",
                             "MNU_MODE_readcurve", "MNU_MODE_findsymbols"}) {
      Find<QAction>(mode)->trigger();
      Settle();
      look(&Window());
      if (mode != std::string_view("axisdef")) continue;
      Find<QAbstractButton>("CMD_AddReference")->click();
      Settle();
      look(&Window());
    }
    Find<QAction>("MNU_IMAGE_ProposeAxes")->trigger();
    Settle();
    look(&Window());
    Find<QAction>("graphize")->trigger();
    constexpr std::pair<const char*, const char*> kForms[] = {
        {"MNU_OPT_Settings", "frmOptions"},
        {"MNU_FILE_Export", "FRM_Export"},
        {"MNU_FILE_OtherPictures", "FRM_OtherPictures"},
        {"MNU_DATA_integrate", "FRM_Integrate"},
        {"MNU_Data_Sample", "Sample"},
        {"MNU_IMAGE_ImageTools", "FRM_ImageTools"},
        {"MNU_IMAGE_BlackWhite", "FRM_BlackWhite"},
        {"MNU_IMAGE_InkFromColour", "FRM_Ink"},
        {"MNU_DATA_ReadAll", "FRM_ReadAll"},
        {"MNU_FILE_SelectSource", "FRM_SelectSource"},
        {"MNU_FILE_Aquire", "FRM_Scan"},
        {"MNU_Help_About", "frmAbout"}};
    for (const auto& [action, name] : kForms) {
      // The new page would need its axes defined again.
      if (name == std::string_view("FRM_Scan")) OnMessage({}, QMessageBox::No);
      QWidget* form = FormOf(action, name);
      ASSERT_NE(form, nullptr) << name;
      auto* tabs = form->findChild<QTabWidget*>();
      for (int tab = 0; tab < (tabs != nullptr ? tabs->count() : 1); ++tab) {
        if (tabs != nullptr) tabs->setCurrentIndex(tab);
        Settle();
        look(form);
      }
      form->close();
      UntilFormIsClosed();
    }
    Find<QAction>("MNU_Help_UsingGraphize")->trigger();
    Settle();
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->isVisible() && window != &Window() && window->isWindow() &&
          window->findChild<QWidget*>() != nullptr)
        look(window);
  }

  QWidget* FormOf(const char* action, const char* name) {
    ChooseForm(action, name);
    Until([this] { return !State().commandRuns; }, "the command is done");
    return OpenForm();
  }

 private:
  const QFont font_ = QApplication::font();
};

TEST_F(Speaking, NoTextOfAWindowIsLeftOut) {
  const VirtualScanner scanner({"number_of_devices 2"});
  SetTranslator([](const char* english, long long) { return "\u00bf" + std::string(english); });
  class Signs : public QTranslator {
   public:
    using QTranslator::QTranslator;
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* text, const char*, int) const override {
      return *text == '\0' ? QString() : QChar(0xbf) + QString::fromUtf8(text);
    }
  };
  QCoreApplication::installTranslator(new Signs(qApp));
  Start();
  const auto expectSign = [](const QString& text, const QObject* where) {
    static const QRegularExpression word(QStringLiteral("[A-Za-z]{3}"));
    EXPECT_TRUE(text.contains(QChar(0xbf)) || !text.contains(word))
        << where->objectName().toStdString() << ": " << text.toStdString();
  };
  for (const auto* action : Window().findChildren<QAction*>()) {
    if (action->objectName().startsWith(QLatin1String("MNU_OPT_Language_"))) continue;
    expectSign(action->text(), action);
    expectSign(action->toolTip(), action);
  }
  WalkAllWindows([&](QWidget* window) {
    if (window != &Window()) expectSign(window->windowTitle(), window);
    for (const auto* control : window->findChildren<QWidget*>()) {
      if (control->window() != window || control->objectName().startsWith(QLatin1String("qt_")))
        continue;
      expectSign(control->toolTip(), control);
      expectSign(control->accessibleName(), control);
      if (const auto* button = qobject_cast<const QAbstractButton*>(control))
        expectSign(button->text(), control);
      if (const auto* group = qobject_cast<const QGroupBox*>(control))
        expectSign(group->title(), control);
      if (const auto* tabs = qobject_cast<const QTabWidget*>(control))
        for (int tab = 0; tab < tabs->count(); ++tab) expectSign(tabs->tabText(tab), control);
      // What has a name shows data, too.
      const auto* label = qobject_cast<const QLabel*>(control);
      if (label != nullptr && label->objectName().isEmpty()) expectSign(label->text(), control);
    }
  });
}

TEST_F(Controls, AToolTipSaysATextAsItStandsAndOnlyWhatIsCutOff) {
  for (const QString text : {"a plain name.bmp", "a<b>c.bmp", "<img src='/etc/x.png'>\n  &amp;"}) {
    QTextDocument shown;
    const QString tip = ToolTipOf(text);
    Qt::mightBeRichText(tip) ? shown.setHtml(tip) : shown.setPlainText(tip);
    EXPECT_EQ(shown.toPlainText(), text);
    EXPECT_FALSE(shown.toHtml().contains("<img"));

    ElidedLabel label;
    label.ShowText(text.toStdString());
    EXPECT_EQ(label.toolTip(), tip);
    for (const int width : {1000, 30}) {
      label.resize(width, 20);
      QHelpEvent asked(QEvent::ToolTip, {}, {});
      QApplication::sendEvent(&label, &asked);
      EXPECT_EQ(asked.isAccepted(), width == 30);
    }
  }
  QToolTip::hideText();
}

struct Look {
  const char* Language;
  int Points;
};
class EveryLook : public Speaking, public ::testing::WithParamInterface<Look> {};

TEST_P(EveryLook, ShowsEveryControlOfEveryWindowWholeAndNamed) {
  const VirtualScanner scanner({"number_of_devices 2"});
  const QSize screen(1280, 768);
  StartIn(GetParam().Language, GetParam().Points);
  Window().showNormal();
  Window().resize(screen - QSize(8, 40));
  ExpectNoClashInMenus();
  WalkAllWindows([&](QWidget* window) {
    ExpectWellMade(window);
    for (const char* station : {"LBL_Station_0", "LBL_Station_3"})
      EXPECT_TRUE(Find<QLabel>(station)->isVisible()) << "the way, from its first step to its last";
    const QSize size = window->frameGeometry().size();
    // The help takes what the screen has.
    const bool isHelp = window->objectName() == QLatin1String("Help");
    EXPECT_TRUE(isHelp || (size.width() <= screen.width() && size.height() <= screen.height()))
        << window->objectName().toStdString() << " takes " << size.width() << " x "
        << size.height();
  });
}

INSTANTIATE_TEST_SUITE_P(
    , EveryLook, ::testing::Values(Look{"en", 0}, Look{"en", 18}, Look{"de", 0}, Look{"de", 18}),
    [](const auto& look) {
      return look.param.Language + std::string(look.param.Points > 0 ? "_large" : "");
    });

TEST_F(Speaking, GermanInMenusMessagesFormsAndStatus) {
  StartIn("de");
  EXPECT_EQ(Window().menuBar()->actions().constFirst()->text(), "&Datei");
  EXPECT_EQ(Find<QAction>("axisdef")->toolTip(), "Achsen festlegen");
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->shortcut().toString(QKeySequence::NativeText),
            "Strg+Z");
  EXPECT_TRUE(Find<QAction>("MNU_OPT_Language_de")->isChecked());
  std::ofstream(Folder() / "no picture.txt") << "words";
  // The reason comes out of the picture module.
  OnMessage(QStringLiteral("Das Bild \"no picture.txt\" kann nicht geöffnet werden.\r\nEs ist eine "
                           "Textdatei, kein Bild"),
            QMessageBox::Ok);
  Window().OpenWhenShown({Folder() / "no picture.txt"});
  Settle();
  Until([this] { return !FormIsOpen() && !State().commandRuns; }, "the message is gone");
  Window().OpenWhenShown({Project()});
  Until([this] { return State().store.ListCount == 9; }, "the project is open");
  ChooseMenu("MNU_DATA_SwapXY");
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text(), "Rückgängig: X-Y tauschen");
  Find<QAction>("MNU_EDIT_Undo")->trigger();
  EXPECT_EQ(State().status.Status, "Rückgängig gemacht: X-Y tauschen");
  QWidget* form = FormOf("MNU_OPT_Settings", "frmOptions");
  EXPECT_EQ(form->windowTitle(), "Graphize: Einstellungen");
  form->close();
  UntilFormIsClosed();
  Find<QAction>("MNU_OPT_Language_en")->trigger();
  std::string settings;
  std::getline(std::ifstream(SettingsFile()), settings, '\0');
  EXPECT_EQ(settings, "[Options]\nLanguage=en\n");
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

TEST_F(Controls, EmptyBoxesStandOutFromADarkWindow) {
  ProgramStyle style;
  for (const QRgb window : {0xff2d2d30u, 0xff000000u, 0xffefefefu}) {
    const QPalette palette{QColor::fromRgb(window), QColor::fromRgb(window)};
    QCheckBox box;
    QRadioButton circle;
    for (QWidget* control : {static_cast<QWidget*>(&box), static_cast<QWidget*>(&circle)}) {
      control->setStyle(&style);
      control->setPalette(palette);
      const QImage drawn = control->grab().toImage();
      int farthest = 0;
      for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
          farthest = std::max(farthest, std::abs(qGray(drawn.pixel(x, y)) - qGray(window)));
      EXPECT_GE(farthest, 50) << window << control->metaObject()->className();
    }
  }
}

TEST_F(Controls, ScrollBarsShowTheirSliderInLightAndDarkWindows) {
  ProgramStyle style;
  for (const QRgb window : {0xff2d2d30u, 0xff000000u, 0xffefefefu})
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical})
      for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QScrollBar bar(orientation);
        bar.setStyle(&style);
        bar.setLayoutDirection(direction);
        bar.setPalette({QColor::fromRgb(window), QColor::fromRgb(window)});
        bar.resize(orientation == Qt::Horizontal ? QSize(300, 16) : QSize(16, 300));
        // How far the lines across the bar, between its arrows, are from one another.
        const auto contrast = [&] {
          const QImage drawn = bar.grab().toImage();
          int low = 255, high = 0;
          for (int along = 20; along < 280; ++along) {
            const int grey = qGray(orientation == Qt::Horizontal ? drawn.pixel(along, 8)
                                                                 : drawn.pixel(8, along));
            low = std::min(low, grey);
            high = std::max(high, grey);
          }
          return high - low;
        };
        bar.setRange(0, 0);
        EXPECT_EQ(contrast(), 0) << "nothing to scroll: no slider";
        bar.setRange(0, 400);
        bar.setPageStep(100);
        EXPECT_GE(contrast(), 40) << window;
        const QImage atStart = bar.grab().toImage();
        bar.setValue(400);
        EXPECT_FALSE(bar.grab().toImage() == atStart) << window;
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
