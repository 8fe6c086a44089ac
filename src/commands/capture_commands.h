#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// The read-out shows errors with "±" marks, or pixels; errors in graph units or in percent.
void ChooseErrorDisplay(Workspace& ws, const Desktop& desktop);
void ChoosePixelDisplay(Workspace& ws, const Desktop& desktop);
void SwitchPercent(Workspace& ws, const Desktop& desktop, bool on);

/// An axis becomes logarithmic or linear; values that can never work so are told.
void SwitchXLog(Workspace& ws, const Desktop& desktop, bool on);
void SwitchYLog(Workspace& ws, const Desktop& desktop, bool on);

/// Empties the store and redraws the plot.
Outcome Run(Workspace& ws, const Desktop& desktop, ClearDataStep& step);
/// The selected rows of the data list, and their removal.
ClearRowsStep SelectedRows(const PointStore& store);
Outcome Run(Workspace& ws, const Desktop& desktop, const ClearRowsStep& step);

/// Looks at what the Edit menu may offer when it opens.
void OpenEditMenu(Workspace& ws, const Desktop& desktop);

/// The data list panel: its scroll bar was moved to `value`; a line was pressed.
void ScrollList(Workspace& ws, int value);
void PressListLine(Workspace& ws, int line, bool shift);
/// A key on a line of the list: StepSelection.
void StepListSelection(Workspace& ws, int line, int by, bool extend);

/// Opens a row of the axis definition, 0 to 2, and the rows after it for definition again.
Outcome Run(Workspace& ws, const Desktop& desktop, const RedefineStep& step);

/// The check marks of the Options and File menus.

void ToggleLastPoint(Workspace& ws);
void ToggleOverlay(Workspace& ws);
void ToggleSaveErrors(Workspace& ws);

}  // namespace graphize
