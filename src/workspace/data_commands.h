#pragma once

#include "data/sort.h"
#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// The data list's bulk edits. What is enabled is looked at when the Data menu opens, and after
/// every change of the number of captured points.
void OpenDataMenu(Workspace& ws);

void Sort(Workspace& ws, const Desktop& desktop, SortOrder order);
void Swap(Workspace& ws);
/// The list is the captured points again.
void UndoList(Workspace& ws);

}  // namespace graphize
