#include "workspace/data_commands.h"

#include "data/list_edit.h"

namespace graphize {

void OpenDataMenu(Workspace& ws) {
  UpdateDataMenu(ws.store, ws.commands);
}

void Sort(Workspace& ws, const Desktop& desktop, SortOrder order) {
  ws.window.Hourglass = true;
  desktop.Pump();
  SortList(ws.store, order);
  ws.window.Hourglass = false;
}

void Swap(Workspace& ws) {
  SwapXY(ws.store);
}

void UndoList(Workspace& ws) {
  XY2List(ws.store);
}

}  // namespace graphize
