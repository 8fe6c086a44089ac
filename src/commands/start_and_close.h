#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// The program starts: settings, an empty calibration, an empty list. `ws.settingsPath` and the
/// screen's size stand in the workspace already.
void StartUp(Workspace& ws, const Desktop& desktop);

/// Whether the window may close: asks about points that are not saved. Where the list is empty, Yes
/// saves the captured points.
bool MayClose(Workspace& ws, const Desktop& desktop);

/// Reads the settings file and applies it. What is wrong in the file is told, and its default used.
void Get_INI(Workspace& ws, const Desktop& desktop);
/// Writes the settings and the window's state. A failed write is told in the status panel: false.
bool Write_INI(Workspace& ws);
/// The built-in settings; snapping and the settings file stay as they are.
void DefaultSettings(Workspace& ws);

}  // namespace graphize
