#pragma once

#include "data/row_errors.h"
#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Which errors are written beside the points.
ErrorKind ErrorKindOf(const Workspace& ws);

/// Asks for a title line and a file, and writes the data list there. False when nothing was
/// written: cancelled, or failed with a message.
bool SavePoints(Workspace& ws, const Desktop& desktop);
bool CanSavePoints(const Workspace& ws);
/// The title is noted, and the file written where there is one.
Outcome Run(Workspace& ws, const Desktop& desktop, const SaveStep& step);

/// Puts the data list's lines on the clipboard.
void CopyPoints(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
