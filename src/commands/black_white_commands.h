#pragma once

#include "desktop/desktop.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Opens the window FRM_BlackWhite with the threshold of the settings, on the middle of the view.
void ShowBlackWhite(Workspace& ws);
/// Its controls; the preview follows.
void ChooseLocalThreshold(Workspace& ws, bool local);
void MoveThreshold(Workspace& ws, int level);
/// Another part of the picture is previewed, so many pixels further.
void MovePreview(Workspace& ws, int columns, int rows);
/// Reduces the picture as the window says and closes it; a fixed threshold becomes the settings'.
void ReduceAsPreviewed(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
