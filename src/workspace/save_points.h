#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Asks for a title line and a file, and writes the data list there. False when nothing was
/// written: cancelled, or failed with a message.
bool SavePoints(Workspace& ws, const Desktop& desktop);
bool CanSavePoints(const Workspace& ws);

/// Puts the data list's lines on the clipboard.
void CopyPoints(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
