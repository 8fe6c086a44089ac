#include "commands/ink_check_commands.h"

#include <algorithm>
#include <utility>

#include "base/translation.h"
#include "commands/do.h"
#include "data/list_edit.h"
#include "data/point_edit.h"
#include "tracing/extraction_context.h"
#include "workspace/picture_map.h"

namespace graphize {

namespace {

/// The points that are checked, in the order of their capture, and where they lie.
void FindPoints(const PointStore& store, std::vector<PointId>& ids,
                std::vector<PlotPosition>& places) {
  std::vector<bool> listed(store.Places.size());
  for (int i = 1; i <= store.ListCount; ++i) listed[store.ListId[i]] = true;
  for (int i = 1, count = CountWithoutRepeats(store); i <= count; ++i) {
    const PointId id = store.CaptureId[i];
    if (!HasPlace(store, id) || !listed[id]) continue;
    ids.push_back(id);
    places.push_back({store.Places[id].Column, store.Places[id].Row});
  }
}

bool SamePlace(PlotPosition a, PlotPosition b) {
  return a.Column == b.Column && a.Row == b.Row;
}

/// The points, or the pixels under them, are no longer those of the check.
bool IsOld(const Workspace& ws) {
  const InkCheck& check = ws.inkCheck;
  std::vector<PointId> ids;
  std::vector<PlotPosition> places;
  FindPoints(ws.store, ids, places);
  return check.Pixels != ws.plot.Pixels.Pixels() || check.Edited != ws.plot.LastEdit.size() ||
         check.Ids != ids ||
         !std::equal(places.begin(), places.end(), check.Places.begin(), check.Places.end(),
                     SamePlace);
}

/// Undo has taken points away with their check, and they are there again.
bool AreBack(const Workspace& ws) {
  if (ws.inkCheck.Gone.empty() || ws.store.ListCount == 0 || !AxesFitPicture(ws)) return false;
  std::vector<PointId> ids;
  std::vector<PlotPosition> places;
  FindPoints(ws.store, ids, places);
  return ids == ws.inkCheck.Gone;
}

}  // namespace

InkCheck InkCheckOf(Workspace& ws, const PointStore& store) {
  InkCheck check{.Pixels = ws.plot.Pixels.Pixels(), .Edited = ws.plot.LastEdit.size()};
  FindPoints(store, check.Ids, check.Places);
  if (check.Ids.empty() || !ws.plot.IsPresent()) return {};
  const BasePictureShown base(ws.plot);
  check.Verdicts = CheckInk(ws.plot.Pixels, ws.calibration, check.Places);
  check.Text = InkCheckText(check.Verdicts);
  return check;
}

void CheckPoints(Workspace& ws) {
  ws.inkCheck = InkCheckOf(ws, ws.store);
}

void CheckAllCurves(Workspace& ws) {
  CheckPoints(ws);
  ws.inkCheck.AllCurves = true;
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i) {
    if (i == ws.curves.Active) continue;
    const InkCheck check = InkCheckOf(ws, PointsOf(ws.curves, ws.store, i));
    if (check.AnyDoubtful())
      ws.inkCheck.Text += "\n" + Tr("%1: %2", ws.curves.Curves[i].Name, check.Text);
  }
}

void CheckOpened(Workspace& ws) {
  if (!AxesFitPicture(ws)) return;
  CheckAllCurves(ws);
  const bool ofOthers = ws.inkCheck.Text.find('\n') != std::string::npos;
  if (!ws.inkCheck.AnyDoubtful() && !ofOthers) ws.inkCheck = {};
}

std::string InkCheckLine(const Workspace& ws) {
  if (ws.inkCheck.Text.empty() || ws.curves.Curves.size() < 2) return ws.inkCheck.Text;
  return Tr("%1: %2", ActiveCurve(ws.curves).Name, ws.inkCheck.Text);
}

bool CanCheckPoints(const Workspace& ws) {
  return ws.plot.IsPresent() && ws.store.ListCount > 0 && ws.store.CaptureCount > 0;
}

void AskForCheck(Workspace& ws) {
  CheckPoints(ws);
  if (ws.inkCheck.Text.empty())
    ws.status.Status = Tr("The list's values have no places on the picture");
}

void RenewInkCheck(Workspace& ws) {
  if (AreBack(ws)) return CheckPoints(ws);
  // The pen's way is one change.
  if (ws.inkCheck.Text.empty() || (ws.pen.Down && ws.pen.Begun) || !IsOld(ws)) return;
  if (!AxesFitPicture(ws)) {
    ws.inkCheck = {};  // the frame is not where the axes say
    return;
  }
  PointSet removed = ws.inkCheck.Removed;
  std::vector<PointId> checked = std::move(ws.inkCheck.Ids);
  ws.inkCheck.AllCurves ? CheckAllCurves(ws) : CheckPoints(ws);
  ws.inkCheck.Removed = std::move(removed);
  // What was removed can be brought back.
  if (ws.inkCheck.Text.empty() && IsRemovedLast(ws)) ws.inkCheck.Text = PointCount(0);
  if (ws.inkCheck.Text.empty()) ws.inkCheck.Gone = std::move(checked);
}

bool IsDoubtfulShown(const Workspace& ws) {
  return CanRemoveDoubtful(ws) && ws.store.Page.Points == ws.inkCheck.Doubtful();
}

void ShowDoubtful(Workspace& ws) {
  SelectPoints(ws.store, IsDoubtfulShown(ws) ? PointSet() : ws.inkCheck.Doubtful());
}

void RemoveDoubtful(Workspace& ws, const Desktop& desktop) {
  if (!CanRemoveDoubtful(ws)) return;
  PointSet doubtful = ws.inkCheck.Doubtful();
  if (!Do(ws, desktop, DeletePointsStep{doubtful}).IsDone()) return;
  ws.inkCheck.Removed = std::move(doubtful);
  RenewInkCheck(ws);
}

bool CanRemoveDoubtful(const Workspace& ws) {
  return ws.inkCheck.AnyDoubtful();
}

bool IsRemovedLast(const Workspace& ws) {
  if (ws.inkCheck.Removed.IsEmpty() || ws.recipe.Steps.empty()) return false;
  const auto* step = std::get_if<DeletePointsStep>(&ws.recipe.Steps.back());
  return step != nullptr && step->Points == ws.inkCheck.Removed;
}

}  // namespace graphize
