#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Opens the window FRM_ImageTools.
void ShowImageTools(Workspace& ws);
bool CanShowImageTools(const Workspace& ws);

/// Runs the chosen tool on the base picture; what it was before is the undo copy. Points, blockers,
/// calibration and mode stay. False after Escape, or when the result would be too large, which is
/// told: then nothing has changed.
bool ProcessImage(Workspace& ws, const Desktop& desktop);

/// The picture is the undo copy, which is gone then.
void UndoImageTool(Workspace& ws, const Desktop& desktop);
bool CanUndoImageTool(const Workspace& ws);

/// Makes the base picture black and white: black is what is darker than `threshold`
/// (raster/black_white.h). Points, blockers, calibration and mode stay.
void ReduceShownPicture(Workspace& ws, const Desktop& desktop, double threshold);

/// What closing the window does: drops the undo copy and warns when the axes no longer fit.
void LeaveImageTools(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
