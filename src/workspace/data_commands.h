#pragma once

#include "data/sort.h"
#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Looks at what the Data menu may offer when it opens. Nothing in it has a key of its own that
/// would act before.
void OpenDataMenu(Workspace& ws);

/// The data list's bulk edits.
void Sort(Workspace& ws, const Desktop& desktop, SortOrder order);
void Swap(Workspace& ws);
/// The list is the captured points again.
void UndoList(Workspace& ws);
/// The list is the lengths of the curve's segments; a message has the sums.
void CurveLength(Workspace& ws, const Desktop& desktop);

/// Opens the window FRM_Integrate, and its button: the area between the limits, shaded on the
/// picture in place of earlier marks.
void ShowIntegrate(Workspace& ws);
void Integrate(Workspace& ws, const Desktop& desktop);

/// Opens the window Sample, and its button: the list is points at even steps.
void ShowSample(Workspace& ws, const Desktop& desktop);
void ReSample(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
