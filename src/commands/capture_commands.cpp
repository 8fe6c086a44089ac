#include "commands/capture_commands.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/toolbar.h"
#include "data/list_edit.h"

namespace graphize {

namespace {

/// Reads the position again where the cursor is, once it has been somewhere.
void ReadAgain(Workspace& ws, const Desktop& desktop) {
  if (ws.axisPanel.LiveXPixel.empty() || !ws.plot.IsPresent()) return;
  ReadPlot(ws, desktop, static_cast<float>(ws.readOut.PlotX), static_cast<float>(ws.readOut.PlotY));
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

namespace {

/// Axes that have become impossible are told at once, and not again at the next move.
void TellLogFault(Workspace& ws, const Desktop& desktop) {
  if (!ws.calibration.IsComplete()) return;
  const char* fault = LogOriginFault(ws.calibration);
  if (fault == nullptr) fault = LogPointFault(ws.calibration);
  ws.mouse.FaultTold = fault != nullptr ? fault : "";
  if (fault != nullptr) Tell(desktop, fault, MessageIcon::Critical);
}

}  // namespace

void SwitchXLog(Workspace& ws, const Desktop& desktop, bool on) {
  SetXLog(ws.calibration, on);
  NoteOptions(ws);
  GiveWaitingValues(ws);
  if (on) TellLogFault(ws, desktop);
}

void SwitchYLog(Workspace& ws, const Desktop& desktop, bool on) {
  SetYLog(ws.calibration, on);
  NoteOptions(ws);
  GiveWaitingValues(ws);
  if (on) TellLogFault(ws, desktop);
}

Outcome Run(Workspace& ws, const Desktop& desktop, ClearDataStep& step) {
  std::string note;
  if (ws.curves.Curves.size() > 1)
    note = "\r\n\r\n" + Tr("Of \"%1\"; the other curves stay.", ActiveCurve(ws.curves).Name);
  if (!DeleteAllData(ws.store, ws.commands, desktop, std::exchange(step.Ask, false), note))
    return Nothing();
  RefreshPlot(ws);
  return {};
}

ClearRowsStep SelectedRows(const PointStore& store) {
  return {store.Page.SelectionStart, store.Page.SelectionEnd};
}

Outcome Run(Workspace& ws, const Desktop&, const ClearRowsStep& step) {
  PointStore& store = ws.store;
  store.Page.SelectionActive = true;
  store.Page.SelectionStart = ToInt16(step.First);
  store.Page.SelectionEnd = ToInt16(step.Last);
  if (!CanClearSelected(store) || step.Last < step.First || step.Last > store.ListCount)
    return Refused("the list has no such rows to clear");
  ClearSelected(store);
  return {};
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
  FollowListSelection(ws);
}

void StepListSelection(Workspace& ws, int line, int by, bool extend) {
  StepSelection(ws.store.Page, ws.store.ListCount, line, by, extend);
  FollowListSelection(ws);
}

Outcome Run(Workspace& ws, const Desktop&, const RedefineStep& step) {
  ReDefineAxis(ws.calibration, ws.axisPanel, ws.commands, step.Row);
  return {};
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
