#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// A new curve, and another curve, become the active one, on which all else works; earlier marks
/// leave the picture, on which all curves that are shown are marked.
Outcome Run(Workspace& ws, const Desktop& desktop, NewCurveStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const SelectCurveStep& step);
/// After another curve has become the active one: its commands, and the marks of all.
void ShowActiveCurve(Workspace& ws);
/// A name that cannot be is told and refused.
Outcome Run(Workspace& ws, const Desktop& desktop, RenameCurveStep& step);

/// The active curve and its points go. The only one stays.
Outcome Run(Workspace& ws, const Desktop& desktop, const DeleteCurveStep& step);
bool CanDeleteCurve(const Workspace& ws);

/// Of several curves, any can be hidden.
Outcome Run(Workspace& ws, const Desktop& desktop, const ShowCurveStep& step);
bool CanHideCurve(const Workspace& ws);

}  // namespace graphize
