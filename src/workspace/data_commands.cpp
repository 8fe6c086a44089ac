#include "workspace/data_commands.h"

#include "base/numbers.h"
#include "base/tokens.h"
#include "data/curve_length.h"
#include "data/list_edit.h"
#include "workspace/plot_mouse.h"
#include "workspace/toolbar.h"

namespace graphize {

void OpenDataMenu(Workspace& ws) {
  UpdateDataMenu(ws.store, ws.commands);
}

void Sort(Workspace& ws, const Desktop& desktop, SortOrder order) {
  ws.window.Hourglass = true;
  desktop.ShowNow();
  SortList(ws.store, order);
  NoteStep(ws, order == SortOrder::Ascending ? "sort ascending" : "sort descending");
  ws.window.Hourglass = false;
}

void Swap(Workspace& ws) {
  SwapXY(ws.store);
  NoteStep(ws, "swap");
}

void UndoList(Workspace& ws) {
  XY2List(ws.store);
  NoteStep(ws, "undo-list");
}

void CurveLength(Workspace& ws, const Desktop& desktop) {
  CurveLength(ws.store, ws.status, desktop);
  NoteStep(ws, "curve-length");
}

void ShowIntegrate(Workspace& ws) {
  ws.integrate = OpenIntegrate(ws.store);
  ws.form = Form::Integrate;
}

void Integrate(Workspace& ws, const Desktop& desktop) {
  EndDrag(ws);
  RefreshPlot(ws);
  // Its shading may lie on curves that are traced later.
  const StepWatch watch(desktop);
  Integrate(ws.integrate, ws.store, ws.calibration, ws.plot, watch.Callbacks());
  NoteStep(ws, "integrate " + std::to_string(ws.integrate.LowLimit) + " " +
                   std::to_string(ws.integrate.HighLimit) + watch.StepText());
}

void ShowSample(Workspace& ws, const Desktop& desktop) {
  const auto form = OpenSample(ws.store, desktop);
  if (!form) return;
  ws.sample = *form;
  ws.form = Form::Sample;
}

void ReSample(Workspace& ws, const Desktop& desktop) {
  const StepWatch watch(desktop);
  const std::optional<SampleEnd> end =
      ReSample(ws.sample, ws.store, ws.settings.RefreshList != 0, watch.Callbacks());
  if (!end) return;
  const SampleForm& form = ws.sample;
  if (end == SampleEnd::Done && !form.Hint.empty()) ws.status.Status = "Resampled: " + form.Hint;
  NoteStep(ws, "resample " + Quote(TrimRight(form.Steps)) + " " + Quote(form.MinXBox) + " " +
                   Quote(form.MaxXBox) + (form.SampleXLog ? " x-log" : "") +
                   (form.SampleYLog ? " y-log" : "") + watch.StepText());
}

}  // namespace graphize
