#include "workspace/data_commands.h"

#include "data/curve_length.h"
#include "data/list_edit.h"
#include "workspace/toolbar.h"

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

void CurveLength(Workspace& ws, const Desktop& desktop) {
  CurveLength(ws.store, ws.status, desktop);
}

void ShowIntegrate(Workspace& ws) {
  ws.integrate = OpenIntegrate(ws.store);
  ws.form = Form::Integrate;
}

void Integrate(Workspace& ws, const Desktop& desktop) {
  RefreshPlot(ws);
  Integrate(ws.integrate, ws.store, ws.calibration, ws.plot, desktop);
}

void ShowSample(Workspace& ws, const Desktop& desktop) {
  const auto form = OpenSample(ws.store, desktop);
  if (!form) return;
  ws.sample = *form;
  ws.form = Form::Sample;
}

void ReSample(Workspace& ws, const Desktop& desktop) {
  ReSample(ws.sample, ws.store, ws.settings.RefreshList != 0, desktop);
}

}  // namespace graphize
