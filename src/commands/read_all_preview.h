#pragma once

#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Reads all curves of the plot and opens the window FRM_ReadAll, which asks for each whether it is
/// taken. Where nothing can be read, it says so instead.
void ShowReadAll(Workspace& ws, const Desktop& desktop);
bool CanReadAll(const Workspace& ws);

/// The window's events, of a row counted from 0.
void TickCurve(ReadAllForm& form, int row, bool taken);
void NameCurve(ReadAllForm& form, int row, const std::string& name);
bool CanTakeAll(const ReadAllForm& form);
/// The ticked curves are captured, as one step, and the window closes; it stays, and says why,
/// where that was refused.
void TakeAll(Workspace& ws, const Desktop& desktop);

}  // namespace graphize
