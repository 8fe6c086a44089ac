#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Opens the window FRM_ImageTools.
void ShowImageTools(Workspace& ws);
bool CanShowImageTools(const Workspace& ws);

/// Runs a tool on the base picture; what it was before is the undo copy. The values of
/// points, calibration and mode stay; their places and the blockers go along. Refused when the
/// result would be too large, which is told; Nothing after Escape.
Outcome Run(Workspace& ws, const Desktop& desktop, const ImageToolStep& step);
/// What the window's button "Process" asks for.
ImageToolStep StepOfForm(const ImageToolsForm& form);

/// The picture is the undo copy, which is gone then.
Outcome Run(Workspace& ws, const Desktop& desktop, const UndoImageToolStep& step);
bool CanUndoImageTool(const Workspace& ws);

/// Makes the base picture black and white (reading/ink_threshold.h). Points, blockers, calibration
/// and mode stay.
Outcome Run(Workspace& ws, const Desktop& desktop, const BlackWhiteStep& step);

/// What closing the window does: drops the undo copy and warns when the axes no longer fit.
void LeaveImageTools(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
