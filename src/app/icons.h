#pragma once

#include <QIcon>
#include <string_view>

namespace graphize {

/// The icon of a toolbar key, of a button of the curve box (newcurve, renamecurve, deletecurve), or
/// of the button for what a bar has no room for (more), drawn at any size in the palette's own
/// colours.
QIcon ToolIcon(std::string_view key);
/// The program's icon.
QIcon ProgramIcon();

}  // namespace graphize
