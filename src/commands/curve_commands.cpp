#include "commands/curve_commands.h"

#include "base/translation.h"
#include "commands/toolbar.h"
#include "data/list_edit.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

Outcome RefusedAndTold(const Desktop& desktop, const std::string& reason) {
  Tell(desktop, reason, MessageIcon::Exclamation);
  return Refused(reason);
}

}  // namespace

void ShowActiveCurve(Workspace& ws) {
  EnableDataCommands(ws.commands, ws.store.CaptureCount > 0);
  UpdateEditMenu(ws.store, ws.commands);
  UpdateDataMenu(ws.store, ws.commands);
  RefreshPlot(ws);
}

Outcome Run(Workspace& ws, const Desktop& desktop, NewCurveStep& step) {
  step.Curve = CurveNameOf(step.Curve);
  if (step.Curve.empty()) step.Curve = FreeCurveName(ws.curves);
  if (const std::string fault = CurveNameFault(ws.curves, step.Curve); !fault.empty())
    return RefusedAndTold(desktop, fault);
  if (ws.curves.Curves.size() >= kMostCurves)
    return RefusedAndTold(desktop, Tr("There are %1 curves, more cannot be.", kMostCurves));
  AddCurve(ws.curves, ws.store, step.Curve);
  ShowActiveCurve(ws);
  ws.status.Status = Tr("New curve: %1", step.Curve);
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const SelectCurveStep& step) {
  const int curve = FindCurve(ws.curves, step.Curve);
  if (curve < 0) return Refused(Tr("there is no curve \"%1\"", step.Curve));
  if (curve == ws.curves.Active) return Nothing();
  SelectCurve(ws.curves, ws.store, curve);
  ShowActiveCurve(ws);
  return {};
}

Outcome Run(Workspace& ws, const Desktop& desktop, RenameCurveStep& step) {
  step.Curve = CurveNameOf(step.Curve);
  if (step.Curve == ActiveCurve(ws.curves).Name) return Nothing();
  if (const std::string fault = CurveNameFault(ws.curves, step.Curve, ws.curves.Active);
      !fault.empty())
    return RefusedAndTold(desktop, fault);
  ActiveCurve(ws.curves).Name = step.Curve;
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const DeleteCurveStep&) {
  if (!CanDeleteCurve(ws)) return Refused("the only curve stays");
  ws.status.Status =
      Tr("Deleted: %1 (%2)", ActiveCurve(ws.curves).Name, PointCount(ws.store.CaptureCount));
  DeleteCurve(ws.curves, ws.store);
  if (!CanHideCurve(ws)) ActiveCurve(ws.curves).Shown = true;
  ShowActiveCurve(ws);
  return {};
}

bool CanDeleteCurve(const Workspace& ws) {
  return ws.curves.Curves.size() > 1;
}

Outcome Run(Workspace& ws, const Desktop&, const ShowCurveStep& step) {
  if (!CanHideCurve(ws)) return Refused("the only curve is always shown");
  if (ActiveCurve(ws.curves).Shown == step.Shown) return Nothing();
  ActiveCurve(ws.curves).Shown = step.Shown;
  RefreshPlot(ws);
  return {};
}

bool CanHideCurve(const Workspace& ws) {
  return ws.curves.Curves.size() > 1;
}

}  // namespace graphize
