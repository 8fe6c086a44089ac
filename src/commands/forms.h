#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// The modal window that is open is closed: by its last button, by Escape or by its frame.
void CloseForm(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
