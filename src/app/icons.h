#pragma once

#include <QIcon>
#include <string_view>

namespace graphize {

/// The icon of a toolbar key, or of a button of the curve box (newcurve, renamecurve, deletecurve),
/// drawn at any size in the palette's own colours.
QIcon ToolIcon(std::string_view key);
/// The program's icon.
QIcon ProgramIcon();

}  // namespace graphize
