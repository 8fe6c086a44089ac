#include "workspace/capture_commands.h"

#include <algorithm>

#include "data/list_edit.h"
#include "workspace/toolbar.h"

namespace graphize {

void ChooseErrorDisplay(Workspace& ws) {
  ws.readOut.ShowError = true;
}

void ChoosePixelDisplay(Workspace& ws) {
  ws.readOut.ShowError = false;
}

void ClearAllData(Workspace& ws, const Desktop& desktop, bool Ask) {
  if (DeleteAllData(ws.store, ws.commands, desktop, Ask)) RefreshPlot(ws);
}

void ClearSelectedPoints(Workspace& ws) {
  ClearSelected(ws.store);
}

void OpenEditMenu(Workspace& ws, const Desktop& desktop) {
  ws.commands.Paste = desktop.ClipboardHasPicture();
  UpdateEditMenu(ws.store, ws.commands);
}

void ScrollList(Workspace& ws, int value) {
  ws.store.Page.ScrollValue = std::clamp(value, 1, ws.store.Page.ScrollMaximum);
  ShowPage(ws.store);
}

void PressListLine(Workspace& ws, int line, bool shift) {
  SelectLine(ws.store.Page, ws.store.ListCount, line, shift);
}

void ToggleLastPoint(Workspace& ws) {
  ws.commands.ShowLastPoint = !ws.commands.ShowLastPoint;
}

void ToggleOverlay(Workspace& ws) {
  ws.commands.Overlay = !ws.commands.Overlay;
}

}  // namespace graphize
