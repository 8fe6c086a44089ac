#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Does the calibrated picture's steps on all pictures of the list that wait, several at a time,
/// and writes a project for each beside it. Escape stops it; what was begun is finished. What goes
/// wrong with a picture is told in its row; RunTimeError when the calibrated one cannot be used.
void DoWaitingPictures(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
