// The menus "Options", "System" and "Help".

#include "app/commands.h"
#include "base/translation.h"
#include "commands/capture_commands.h"
#include "commands/help_commands.h"
#include "commands/options_commands.h"
#include "commands/system_programs.h"
#include "workspace/next_step.h"

namespace graphize {

namespace {

using Kind = MenuEntry::Kind;

const MenuEntry kMenus[] = {
    {.Is = Kind::Menu, .Name = "MNU_OPT", .Caption = Marked("&Options")},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_ShowLastPoint",
     .Caption = Marked("Show &Last Point"),
     .Tip = Marked("Mark the last captured point in blue"),
     .Run = [](Workspace& ws, const Desktop&) { ToggleLastPoint(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.ShowLastPoint; }},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_Overlay",
     .Caption = Marked("&Overlay Data"),
     .Tip = Marked("Draw the data list over the picture"),
     .Run = [](Workspace& ws, const Desktop&) { ToggleOverlay(ws); },
     .Checked = [](const Workspace& ws) { return ws.commands.Overlay; }},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_WhatComesNext",
     .Caption = Marked("&What Comes Next"),
     .Tip = Marked("A line above the picture says what is to be done next"),
     .Run = [](Workspace& ws, const Desktop&) { SwitchNext(ws); },
     .Checked = IsNextShown},
    kSeparator,
    {.Name = "MNU_OPT_Settings",
     .Caption = Marked("&Settings..."),
     .Tip = Marked("Tracer, snapping, colours, cursor and number format"),
     .Run = [](Workspace& ws, const Desktop&) { ShowOptions(ws); }},
    {.Is = Kind::SubMenu, .Name = "MNU_OPT_Language", .Caption = Marked("Lan&guage")},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_Language_en",
     .Caption = Marked("&English"),
     .Run = [](Workspace& ws, const Desktop& desktop) { ChooseLanguage(ws, desktop, "en"); },
     .Checked = [](const Workspace& ws) { return ws.language == "en"; }},
    {.Is = Kind::Check,
     .Name = "MNU_OPT_Language_de",
     .Caption = Marked("&Deutsch"),
     .Run = [](Workspace& ws, const Desktop& desktop) { ChooseLanguage(ws, desktop, "de"); },
     .Checked = [](const Workspace& ws) { return ws.language == "de"; }},

    {.Is = Kind::Menu, .Name = "MNU_SYS", .Caption = Marked("&System")},
    {.Name = "MNU_SYS_Mouse",
     .Caption = Marked("&Mouse..."),
     .Tip = Marked("The desktop's settings of mouse and touchpad"),
     .Run = [](Workspace&, const Desktop& desktop) { MouseSettings(desktop); }},

    {.Is = Kind::Menu, .Name = "MNU_Help", .Caption = Marked("&Help")},
    {.Name = "MNU_Help_UsingGraphize",
     .Caption = Marked("&Using Graphize"),
     .Key = "F1",
     .Tip = Marked("How it is done, step by step, and what everything is for"),
     .Run = [](Workspace& ws, const Desktop& desktop) { ShowHelp(ws, desktop); }},
    {.Name = "MNU_Help_About",
     .Caption = Marked("&About Graphize"),
     .Tip = Marked("Version and licence"),
     .Run = [](Workspace& ws, const Desktop&) { ShowAbout(ws); }},
};

}  // namespace

std::span<const MenuEntry> OptionMenus() {
  return kMenus;
}

}  // namespace graphize
