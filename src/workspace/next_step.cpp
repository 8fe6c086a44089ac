#include "workspace/next_step.h"

#include "base/translation.h"

namespace graphize {

namespace {

enum Station { kOpen, kDefineAxis, kGraphize, kSave };

bool IsCapturing(Mode mode) {
  return mode == Mode::Graphize || IsReading(mode);
}

Station StationOf(const Workspace& ws) {
  if (!ws.plot.IsPresent()) return kOpen;
  if (ws.mode == Mode::AxisDef || !ws.calibration.IsComplete()) return kDefineAxis;
  if (ws.mode == Mode::None && AnyPoints(ws.curves, ws.store)) return kSave;
  if (IsCapturing(ws.mode) && !UnsavedCurves(ws.curves, ws.store).empty()) return kSave;
  return kGraphize;
}

const char* HintAt(Station station, const Workspace& ws) {
  switch (station) {
    case kOpen:
      return Marked("Open, paste or scan a picture of a graph, or drop its file here");
    case kDefineAxis:
      return ws.calibration.AnyDefined()
                 ? Marked("Press \"Define Axis\" and click the points that are still missing")
                 : Marked(
                       "Press \"Define Axis\" and click three points of the axes, or use Image, "
                       "Propose Axes");
    case kGraphize:
      return Marked("Press \"Graphize\", then click points, or right-click a curve to trace it");
    case kSave:
      break;
  }
  return UnsavedCurves(ws.curves, ws.store).empty() ? Marked("All points are saved")
                                                    : Marked("Save the points to a data file");
}

/// The curve that must be chosen before its points can be saved: the one that is chosen has none.
const Curve* CurveToChoose(const Workspace& ws) {
  const std::vector<int> unsaved = UnsavedCurves(ws.curves, ws.store);
  return unsaved.empty() || ws.commands.Data ? nullptr : &ws.curves.Curves[unsaved.front()];
}

}  // namespace

NextStep NextStepOf(const Workspace& ws) {
  const Station station = StationOf(ws);
  const std::string& told = ws.status.Hint;
  if (told.empty() && ws.proposedAxes.Shown)
    return {station, Tr("Accept the proposed axes, or correct their values first; Cancel leaves "
                        "them")};
  const Curve* other = station == kSave ? CurveToChoose(ws) : nullptr;
  if (told.empty() && other != nullptr)
    return {station, Tr("Choose the curve \"%1\" to save its points", other->Name)};
  if (told.empty()) return {station, Tr(HintAt(station, ws))};
  if (station == kSave && told == Tr(ModeHint(ws.mode)))
    return {station, other != nullptr ? Tr("%1; to save \"%2\": choose it", told, other->Name)
                                      : Tr("%1; when all is captured: Save", told)};
  return {station, told};
}

bool IsNextShown(const Workspace& ws) {
  return ws.settings.NextLine == 1;
}

void SwitchNext(Workspace& ws) {
  ws.settings.NextLine = IsNextShown(ws) ? 0 : 1;
}

}  // namespace graphize
