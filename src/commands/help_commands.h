#pragma once

#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Asks the window for the help, at a chapter or where it was left. A help file that cannot be read
/// is told.
void ShowHelp(Workspace& ws, const Desktop& desktop, const std::string& chapter = {});

/// Opens the window frmAbout.
void ShowAbout(Workspace& ws);

}  // namespace graphize
