#include "commands/data_commands.h"

#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/plot_mouse.h"
#include "commands/toolbar.h"
#include "data/curve_length.h"
#include "data/list_edit.h"
#include "data/waiting_points.h"

namespace graphize {

void OpenDataMenu(Workspace& ws) {
  UpdateDataMenu(ws.store, ws.commands);
}

namespace {

std::optional<Outcome> WithFewer(const Workspace& ws, int points) {
  if (const int waiting = CountWaiting(ws.store); waiting > 0) return Refused(WaitingText(waiting));
  if (ws.store.CaptureCount >= points) return std::nullopt;
  return Refused("there are not enough captured points");
}

}  // namespace

Outcome Run(Workspace& ws, const Desktop& desktop, const SortStep& step) {
  if (auto refused = WithFewer(ws, 1)) return *refused;
  ws.window.Hourglass = true;
  desktop.ShowNow();
  SortList(ws.store, step.Order);
  ws.window.Hourglass = false;
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const SwapStep&) {
  if (auto refused = WithFewer(ws, 1)) return *refused;
  SwapXY(ws.store);
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const UndoListStep&) {
  if (auto refused = WithFewer(ws, 1)) return *refused;
  XY2List(ws.store);
  return {};
}

Outcome Run(Workspace& ws, const Desktop& desktop, const CurveLengthStep&) {
  if (auto refused = WithFewer(ws, 1)) return *refused;
  CurveLength(ws.store, ws.status, desktop);
  return {};
}

void ShowIntegrate(Workspace& ws) {
  ws.integrate = OpenIntegrate(ws.store);
  ws.form = Form::Integrate;
}

Outcome Run(Workspace& ws, const Desktop& desktop, IntegrateStep& step) {
  if (auto refused = WithFewer(ws, 3)) return *refused;
  const IntegrateStep::Limits limits =
      step.Between.value_or(IntegrateStep::Limits{1, ws.store.CaptureCount});
  if (ws.integrate.LowLimit != limits.Low || ws.integrate.HighLimit != limits.High ||
      ws.integrate.Points != ws.store.CaptureCount) {
    ws.integrate = OpenIntegrate(ws.store);
    // In this order the limits never come too near on their way.
    MoveLowLimit(ws.integrate, ws.store, limits.Low);
    MoveHighLimit(ws.integrate, ws.store, limits.High);
    if (ws.integrate.LowLimit != limits.Low || ws.integrate.HighLimit != limits.High)
      return Refused("the limits are not three points apart, or not among the points");
  }
  RefreshPlot(ws);
  Integrate(ws.integrate, ws.store, ws.calibration, ws.plot, desktop);
  return {.Area = ws.integrate.Area};
}

void ShowSample(Workspace& ws, const Desktop& desktop) {
  const auto form = OpenSample(ws.store, desktop);
  if (!form) return;
  ws.sample = *form;
  ws.form = Form::Sample;
}

ResampleStep StepOfForm(const SampleForm& form) {
  return {.Count = TrimRight(form.Steps),
          .Min = form.MinXBox,
          .Max = form.MaxXBox,
          .XLog = form.SampleXLog,
          .YLog = form.SampleYLog};
}

Outcome Run(Workspace& ws, const Desktop& desktop, ResampleStep& step) {
  if (auto refused = WithFewer(ws, 2)) return *refused;
  SampleForm& form = ws.sample;
  if (ws.form != Form::Sample) {
    // Not asked for in the window: the boxes that are not given are as it opens.
    const auto opened = OpenSample(ws.store, desktop);
    if (!opened) return Refused("there are not enough captured points");
    form = *opened;
    form.SampleXLog = step.XLog;
    form.SampleYLog = step.YLog;
    if (step.Min != "auto") form.MinXBox = step.Min;
    if (step.Max != "auto") form.MaxXBox = step.Max;
    form.Steps = step.Count;
    form.dXBox = form.StepShown = "";
  }
  const std::optional<SampleEnd> end =
      ReSample(form, ws.store, ws.settings.RefreshList != 0, desktop);
  if (!end) return Refused("the list cannot be sampled so");
  if (end == SampleEnd::Done && !form.Hint.empty())
    ws.status.Status = Tr("Resampled: %1", form.Hint);
  Interruptions went = std::move(step.Went);
  step = StepOfForm(form);
  step.Went = std::move(went);
  return {.Points = ws.store.ListCount};
}

}  // namespace graphize
