// The help and the about box, with real events; and whether the help tells of everything there is.

#include <QGroupBox>
#include <QScrollBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>

#include "app/commands.h"
#include "app/window_driver.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

class HelpTest : public WindowTest {
 protected:
  static QWidget* Help() {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == QLatin1String("Help")) return window;
    return nullptr;
  }
  static bool HelpIsUp() { return Help() != nullptr && Help()->isVisible(); }
  void OpenHelp() {
    Xdo({"key", "F1"});
    Until([] { return HelpIsUp() && Help()->isActiveWindow(); }, "the help is up");
    Settle();
  }
  template <typename Control>
  static Control* In(const char* name) {
    return Help()->findChild<Control*>(QLatin1String(name));
  }
  static QString Chapter() { return In<QTreeWidget>("Contents")->currentItem()->text(0); }
  static int Scrolled() { return In<QTextBrowser>("HelpText")->verticalScrollBar()->value(); }
  /// What stands at the upper edge.
  static QString TopLine() {
    return In<QTextBrowser>("HelpText")->cursorForPosition(QPoint(30, 8)).block().text();
  }
};

TEST_F(HelpTest, ContentsSearchAndLinksLead) {
  Start();
  OpenHelp();
  auto* contents = In<QTreeWidget>("Contents");
  EXPECT_EQ(Chapter(), "Welcome");
  ASSERT_GT(contents->topLevelItemCount(), 5);

  QTreeWidgetItem* list = contents->findItems("Working with the list", Qt::MatchExactly).at(0);
  ClickControl(contents);
  const QPoint item = contents->viewport()->mapToGlobal(contents->visualItemRect(list).center());
  Xdo({"mousemove", QString::number(item.x()), QString::number(item.y()), "click", "1"});
  EXPECT_EQ(TopLine().toStdString(), "Working with the list");
  const int there = Scrolled();

  In<QTextBrowser>("HelpText")->setFocus();
  Xdo({"key", "Page_Down"});
  EXPECT_NE(Chapter(), "Working with the list") << "the contents follow";
  Xdo({"key", "alt+Left"});
  EXPECT_LT(Scrolled(), there);
  Xdo({"key", "alt+Right"});
  EXPECT_GE(Scrolled(), there);

  Xdo({"key", "ctrl+f"});
  Xdo({"type", "Defualt Colors"});
  EXPECT_EQ(In<QLabel>("SearchCount")->text(), "1 of 1");
  EXPECT_EQ(Chapter(), "Colors");
  Xdo({"key", "ctrl+a"});
  Xdo({"type", "snap center"});
  const QString count = In<QLabel>("SearchCount")->text();
  ASSERT_TRUE(count.contains(QLatin1String(" of "))) << count.toStdString();
  const int hits = count.section(u' ', -1).toInt();
  ASSERT_GT(hits, 1);
  EXPECT_EQ(In<QTextBrowser>("HelpText")->extraSelections().size(), hits);
  Xdo({"key", "Return"});
  EXPECT_NE(In<QLabel>("SearchCount")->text(), count);
  ClickControl(In<QToolButton>("SearchPrevious"));
  EXPECT_EQ(In<QLabel>("SearchCount")->text(), count);
  Xdo({"key", "ctrl+f", "ctrl+a"});
  Xdo({"type", "no such words"});
  EXPECT_EQ(In<QLabel>("SearchCount")->text(), "not found");
  EXPECT_FALSE(In<QToolButton>("SearchNext")->isEnabled());
}

TEST_F(HelpTest, IsOneWindowThatStaysBesideTheOthersAndClosesWithTheProgram) {
  Start();
  OpenSample("pendulum.bmp");
  OpenHelp();
  QWidget* first = Help();
  Xdo({"key", "ctrl+w"});
  Until([] { return !HelpIsUp(); }, "the help is closed");

  // From a form: its chapter, and the form stays open.
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  OpenHelp();
  EXPECT_EQ(Help(), first);
  EXPECT_EQ(Chapter(), "Settings");
  EXPECT_TRUE(FormIsOpen());
  ClickControl(In<QTextBrowser>("HelpText")->viewport());
  Xdo({"key", "Page_Down"});
  EXPECT_NE(Chapter(), "Settings") << "it can be read while the form waits";
  ClickControl(Find<QWidget>("cmdCancel"));
  UntilFormIsClosed();

  EXPECT_TRUE(HelpIsUp());
  Window().close();
  Until([] { return !HelpIsUp(); }, "the help goes with the program");
}

TEST_F(HelpTest, AMissingFileIsTold) {
  UseHelp(Folder() / "Graphize.hlp");
  Start();
  OnMessage("Graphize.hlp cannot be read", QMessageBox::Ok);
  ChooseMenu("MNU_Help_UsingGraphize");
  EXPECT_EQ(Help(), nullptr);
}

TEST_F(HelpTest, AboutTellsTheVersionsAndStartsTheInformation) {
  // The only program there is notes that it was started.
  const std::filesystem::path tool = Folder() / "bin/kinfocenter", note = Folder() / "started";
  std::filesystem::create_directories(tool.parent_path());
  WriteBytes(tool, "#!/bin/sh\n: > '" + note.string() + "'\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  const QByteArray path = qgetenv("PATH");
  Start();
  ChooseForm("MNU_Help_About", "frmAbout");
  EXPECT_TRUE(TextOf("lblVersion").startsWith(QLatin1String("Version ")));
  EXPECT_TRUE(TextOf("lblLibraries").contains(QLatin1String(qVersion())));
  qputenv("PATH", (tool.parent_path().string() + ":" + path.toStdString()).c_str());
  ClickControl(Find<QWidget>("cmdSysInfo"));
  qputenv("PATH", path);
  Until([&] { return std::filesystem::exists(note); }, "the program is started");
  ClickControl(Find<QWidget>("cmdOK"));
  UntilFormIsClosed();
}

// --- Nothing is left out of the help. ---

/// The help file as a document.
struct HelpFile {
  QTextDocument Document;
  QList<QTextCharFormat> Formats;  // of every piece of text
  QSet<QString> Anchors;

  HelpFile() {
    Document.setHtml(QString::fromStdString(BytesOf(HELP_FILE)));
    for (QTextBlock block = Document.begin(); block.isValid(); block = block.next())
      for (auto it = block.begin(); !it.atEnd(); ++it) Formats << it.fragment().charFormat();
    for (const QTextCharFormat& format : Formats)
      for (const QString& name : format.anchorNames()) Anchors << name;
  }
};

bool IsToolKey(const QString& key) {
  return std::ranges::any_of(
      ToolButtons(), [&key](const ToolButton& button) { return key == QLatin1String(button.Key); });
}

TEST(HelpFileTest, EveryLinkAndPictureIsThere) {
  const HelpFile help;
  int links = 0, pictures = 0;
  for (const QTextCharFormat& format : help.Formats) {
    const QString link = format.anchorHref();
    if (!link.isEmpty()) {
      ++links;
      EXPECT_TRUE(link.startsWith(u'#') && help.Anchors.contains(link.mid(1)))
          << link.toStdString();
    }
    if (!format.isImageFormat()) continue;
    ++pictures;
    const QUrl picture(format.toImageFormat().name());
    const bool isThere =
        picture.scheme() == QLatin1String("icon")
            ? IsToolKey(picture.path())
            : !help.Document.resource(QTextDocument::ImageResource, picture).isNull();
    EXPECT_TRUE(isThere) << picture.toString().left(60).toStdString();
  }
  EXPECT_GT(links, 20);
  EXPECT_GT(pictures, 20);
}

TEST_F(HelpTest, TellsOfEveryCommandAndControl) {
  const HelpFile help;
  const QString text = help.Document.toPlainText();
  const auto expect = [&text](QString caption) {
    const QChar ampersand(u'\1');
    caption.replace(QLatin1String("&&"), ampersand).remove(u'&').replace(ampersand, u'&');
    EXPECT_TRUE(text.contains(caption)) << caption.toStdString();
  };
  const auto expectControls = [&expect](const QWidget* window) {
    for (const auto* button : window->findChildren<QAbstractButton*>()) expect(button->text());
    for (const auto* frame : window->findChildren<QGroupBox*>()) expect(frame->title());
    for (const auto* tabs : window->findChildren<QTabWidget*>())
      for (int i = 0; i < tabs->count(); ++i) expect(tabs->tabText(i));
  };
  for (const MenuEntry& entry : MenuEntries()) {
    expect(QLatin1String(entry.Caption));
    expect(QString(QLatin1String(entry.Key)).section(QLatin1String("; "), 0, 0));
  }
  for (const ToolButton& button : ToolButtons()) expect(QLatin1String(button.Tip));
  Start();
  expectControls(&Window());

  OpenSample("pendulum.bmp");
  CalibratePendulum();
  for (const int column : {100, 200, 300}) ClickPlot(column, 200);
  for (const auto& [command, form] :
       {std::pair("MNU_OPT_Settings", "frmOptions"),
        std::pair("MNU_DATA_integrate", "FRM_Integrate"), std::pair("MNU_Data_Sample", "Sample")}) {
    ChooseForm(command, form);
    expectControls(QApplication::activeModalWidget());
    EXPECT_TRUE(help.Anchors.contains(QLatin1String(form))) << form;
    Xdo({"key", "Escape"});
    UntilFormIsClosed();
  }
  OnMessage("save graphized points", QMessageBox::No);
  Window().close();
}

}  // namespace
}  // namespace graphize::test
