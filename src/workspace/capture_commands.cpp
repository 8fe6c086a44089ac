#include "workspace/capture_commands.h"

#include <algorithm>

#include "data/list_edit.h"
#include "workspace/plot_mouse.h"
#include "workspace/toolbar.h"

namespace graphize {

namespace {

/// Reads the position again where the cursor is, once it has been somewhere.
void ReadAgain(Workspace& ws, const Desktop& desktop) {
  if (ws.axisPanel.LiveXPixel.empty() || !ws.plot.IsPresent()) return;
  ReadCursor(ws.readOut, ws.axisPanel, ws.store, ws.calibration, desktop, ws.plot.Height(),
             static_cast<float>(ws.readOut.PlotX), static_cast<float>(ws.readOut.PlotY));
}

}  // namespace

void ChooseErrorDisplay(Workspace& ws, const Desktop& desktop) {
  ws.readOut.ShowError = true;
  ReadAgain(ws, desktop);
}

void ChoosePixelDisplay(Workspace& ws, const Desktop& desktop) {
  ws.readOut.ShowError = false;
  ReadAgain(ws, desktop);
}

void SwitchPercent(Workspace& ws, const Desktop& desktop, bool on) {
  ws.readOut.Percent = on;
  ReadAgain(ws, desktop);
}

void ClearAllData(Workspace& ws, const Desktop& desktop, bool Ask) {
  EndDrag(ws);
  if (!DeleteAllData(ws.store, ws.commands, desktop, Ask)) return;
  RefreshPlot(ws);
  NoteStep(ws, "clear-data");
}

void ClearSelectedPoints(Workspace& ws) {
  const int before = ws.store.ListCount;
  const std::string rows = std::to_string(ws.store.Page.SelectionStart) + " " +
                           std::to_string(ws.store.Page.SelectionEnd);
  ClearSelected(ws.store);
  if (ws.store.ListCount != before) NoteStep(ws, "clear-selected " + rows);
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

void ReDefine(Workspace& ws, int row) {
  ReDefineAxis(ws.calibration, ws.axisPanel, ws.commands, row);
  NoteStep(ws, "redefine " + std::to_string(row));
}

void ToggleLastPoint(Workspace& ws) {
  ws.commands.ShowLastPoint = !ws.commands.ShowLastPoint;
}

void ToggleSaveErrors(Workspace& ws) {
  ws.commands.SaveErrors = !ws.commands.SaveErrors;
}

void ToggleOverlay(Workspace& ws) {
  ws.commands.Overlay = !ws.commands.Overlay;
}

}  // namespace graphize
