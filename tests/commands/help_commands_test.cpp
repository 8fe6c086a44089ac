// Help, about and the desktop's own programs.

#include "commands/help_commands.h"

#include <gtest/gtest.h>

#include "commands/forms.h"
#include "commands/system_programs.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

TEST(ShowHelp, AsksForTheTextAtTheChapter) {
  const test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  Workspace ws;
  ws.help.File = folder / "Graphize.hlp";
  test::WriteBytes(ws.help.File, "<h1>Axes</h1>");
  ShowHelp(ws, desktop, "Sample");
  EXPECT_TRUE(ws.help.Asked);
  EXPECT_EQ(ws.help.Text, "<h1>Axes</h1>");
  EXPECT_EQ(ws.help.Chapter, "Sample");
  ws.help.Asked = false;
  ShowHelp(ws, desktop);
  EXPECT_TRUE(ws.help.Asked);
  EXPECT_EQ(ws.help.Chapter, "") << "where it was left";
}

TEST(ShowHelp, TellsWhichFileCannotBeRead) {
  const test::TemporaryFolder folder;
  for (const std::filesystem::path& file : {folder / "absent.hlp", folder.Path(), {}}) {
    test::ScriptedDesktop desktop;
    Workspace ws;
    ws.help.File = file;
    desktop.ExpectMessage("The help file " + file.string() + " cannot be read");
    ShowHelp(ws, desktop);
    EXPECT_FALSE(ws.help.Asked);
  }
}

TEST(ShowAbout, TellsTheVersionsAndCloses) {
  test::ScriptedDesktop desktop;
  Workspace ws;
  ShowAbout(ws);
  EXPECT_EQ(ws.form, Form::About);
  EXPECT_EQ(ws.about.Title, "Graphize");
  for (const std::string& text : {ws.about.Version, ws.about.Libraries})
    EXPECT_TRUE(text.find_last_of(' ') + 1 < text.size() && std::isdigit(text.back())) << text;
  CloseForm(ws, desktop);
  EXPECT_EQ(ws.form, Form::None);
}

TEST(SystemPrograms, TheRunningDesktopsOwnIsStarted) {
  const struct {
    const char* Desktop;
    const char* Mouse;
    const char* Information;
  } cases[] = {{"KDE", "kcmshell5", "kinfocenter"},
               {"ubuntu:GNOME", "gnome-control-center", "gnome-control-center"},
               {"XFCE", "xfce4-mouse-settings", "xfce4-about"},
               {"MATE", "mate-mouse-properties", "mate-system-monitor"},
               {"", "kcmshell5", "kinfocenter"}};
  for (const auto& [name, mouse, information] : cases) {
    test::ScriptedDesktop desktop;
    desktop.CurrentDesktop = name;
    for (const auto& other : cases) desktop.Installed.insert({other.Mouse, other.Information});
    MouseSettings(desktop);
    SystemInformation(desktop);
    ASSERT_EQ(desktop.Started.size(), 2u);
    EXPECT_EQ(desktop.Started[0].Name, mouse) << name;
    EXPECT_EQ(desktop.Started[1].Name, information) << name;
  }
}

TEST(SystemPrograms, AnotherDesktopsIsBetterThanNone) {
  test::ScriptedDesktop desktop;
  desktop.CurrentDesktop = "KDE";
  desktop.Installed = {"lxinput"};
  MouseSettings(desktop);
  ASSERT_EQ(desktop.Started.size(), 1u);
  desktop.ExpectMessage("No program for system information was found");
  SystemInformation(desktop);
  desktop.Installed.clear();
  desktop.ExpectMessage("No program for the mouse settings was found");
  MouseSettings(desktop);
}

}  // namespace
}  // namespace graphize
