#pragma once

#include <span>

#include "commands/do.h"
#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// One entry of the menus: its control name, caption and key, whether it can be chosen now, and
/// what it does. An entry without `Run` opens a submenu, or calls what the window connects to it.
struct MenuEntry {
  enum class Kind { Menu, SubMenu, Item, Check, Separator };
  Kind Is = Kind::Item;
  const char* Name = "";
  const char* Caption = "";
  const char* Key = "";  // the first of several, with "; " between them, is shown
  const char* Tip = "";
  bool (*Can)(const Workspace&) = nullptr;  // absent: always
  void (*Run)(Workspace&, const Desktop&) = nullptr;
  bool (*Checked)(const Workspace&) = nullptr;
  std::string (*Text)(const Workspace&) = nullptr;  // a caption that changes
};

inline constexpr MenuEntry kSeparator{.Is = MenuEntry::Kind::Separator};

/// What an entry runs that asks for one step.
template <class Asked>
void Does(Workspace& ws, const Desktop& desktop) {
  Do(ws, desktop, Asked{});
}

/// All menus in reading order: Menu starts a menu of the bar, SubMenu takes the items up to the
/// next separator or menu into a submenu.
std::span<const MenuEntry> MenuEntries();
/// The last of them, which stand in files of their own: "Data"; "Image"; "Options", "System" and
/// "Help".
std::span<const MenuEntry> DataMenu();
std::span<const MenuEntry> ImageMenu();
std::span<const MenuEntry> OptionMenus();

/// One button of the toolbar, in order; a mode button stays pressed.
struct ToolButton {
  const char* Key;
  const char* Tip;
  bool IsMode = false;
  bool SeparatorBefore = false;
};
std::span<const ToolButton> ToolButtons();

}  // namespace graphize
