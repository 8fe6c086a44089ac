#pragma once

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// The read-out shows errors with "±" marks, or pixels; errors in graph units or in percent.
void ChooseErrorDisplay(Workspace& ws, const Desktop& desktop);
void ChoosePixelDisplay(Workspace& ws, const Desktop& desktop);
void SwitchPercent(Workspace& ws, const Desktop& desktop, bool on);

/// Empties the store, with a question when Ask is set, and redraws the plot.
void ClearAllData(Workspace& ws, const Desktop& desktop, bool Ask);
/// Removes the selected rows of the data list.
void ClearSelectedPoints(Workspace& ws);

/// Looks at what the Edit menu may offer when it opens.
void OpenEditMenu(Workspace& ws, const Desktop& desktop);

/// The data list panel: its scroll bar was moved to `value`; a line was pressed.
void ScrollList(Workspace& ws, int value);
void PressListLine(Workspace& ws, int line, bool shift);

/// The two check marks of the Options menu.
/// Opens a row of the axis definition, 0 to 2, and the rows after it for definition again.
void ReDefine(Workspace& ws, int row);

void ToggleLastPoint(Workspace& ws);
void ToggleOverlay(Workspace& ws);
void ToggleSaveErrors(Workspace& ws);

}  // namespace graphize
