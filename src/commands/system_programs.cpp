#include "commands/system_programs.h"

#include "base/translation.h"

namespace graphize {

namespace {

// Of a desktop that is not running, those that refuse to start elsewhere come last.
const std::vector<OutsideProgram> kMouseSettings = {
    {"KDE", "kcmshell6", {"kcm_mouse"}},
    {"KDE", "kcmshell5", {"kcm_mouse"}},
    {"KDE", "systemsettings", {"kcm_mouse"}},
    {"XFCE", "xfce4-mouse-settings", {}},
    {"MATE", "mate-mouse-properties", {}},
    {"X-Cinnamon", "cinnamon-settings", {"mouse"}},
    {"LXQt", "lxqt-config-input", {}},
    {"LXDE", "lxinput", {}},
    {"Budgie", "budgie-control-center", {"mouse"}},
    {"Pantheon", "io.elementary.settings", {"settings://input/mouse"}},
    {"GNOME", "gnome-control-center", {"mouse"}},
    {"Unity", "unity-control-center", {"mouse"}},
};

const std::vector<OutsideProgram> kSystemInformation = {
    {"KDE", "kinfocenter", {}},
    {"X-Cinnamon", "cinnamon-settings", {"info"}},
    {"MATE", "mate-system-monitor", {"--show-system-tab"}},
    {"GNOME", "gnome-control-center", {"info-overview"}},
    {"Budgie", "budgie-control-center", {"info-overview"}},
    {"", "hardinfo2", {}},
    {"", "hardinfo", {}},
    {"", "lshw-gtk", {}},
    {"XFCE", "xfce4-about", {}},
    {"LXQt", "lxqt-about", {}},
    {"", "gnome-system-monitor", {}},
};

void Start(const Desktop& desktop, const std::vector<OutsideProgram>& programs,
           const char* ifNone) {
  if (!desktop.StartProgram(programs)) Tell(desktop, ifNone, MessageIcon::Exclamation);
}

}  // namespace

void MouseSettings(const Desktop& desktop) {
  Start(desktop, kMouseSettings,
        Marked(
            "No program for the mouse settings was found. Please open them from your desktop's own "
            "settings."));
}

void SystemInformation(const Desktop& desktop) {
  Start(desktop, kSystemInformation,
        Marked("No program for system information was found. Installing the package hardinfo adds "
               "one."));
}

}  // namespace graphize
