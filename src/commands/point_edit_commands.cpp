#include "commands/point_edit_commands.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/plot_mouse.h"
#include "commands/view_commands.h"
#include "data/list_edit.h"
#include "data/point_edit.h"
#include "data/waiting_points.h"
#include "raster/plot_overlay.h"
#include "tracing/extraction_context.h"
#include "workspace/picture_map.h"

namespace graphize {

namespace {

/// What the axes lack for values to be taken from places; nullptr when nothing is.
const char* AxesFault(const Workspace& ws) {
  if (!ws.calibration.IsComplete())
    return Marked(
        "The values of points come from the axes: please define all three axis points first");
  if (!AxesFitPicture(ws))
    return Marked(
        "An image tool has changed the picture since the axes were defined: please redefine all "
        "three axis points first");
  if (const char* fault = LogOriginFault(ws.calibration)) return fault;
  return LogPointFault(ws.calibration);
}

Outcome Refuse(const Desktop& desktop, const std::string& reason) {
  Tell(desktop, reason, MessageIcon::Exclamation);
  return Refused(reason);
}

Outcome Refuse(const Desktop& desktop, const char* english) {
  return Refuse(desktop, Tr(english));
}

/// What the axes give to the points of every curve.
struct CurveValues {
  std::vector<NewValues> Of;
  int Others = 0;          // points that would get other values
  int WithoutValue = 0;    // points to which the axes give none
  int RowsThatStay = 0;    // of the lists
  bool AnyPlaced = false;  // a point lies on the picture

  explicit CurveValues(const Workspace& ws) {
    for (std::size_t i = 0; i < ws.curves.Curves.size(); ++i) {
      const PointStore& points = PointsOf(ws.curves, ws.store, static_cast<int>(i));
      Of.push_back(ValuesOfPlaces(points, ws.calibration, ws.plot.Height()));
      Others += CountOthers(points, Of.back());
      WithoutValue += CountWithoutValue(Of.back());
      RowsThatStay += RowsWithoutPlace(points);
      AnyPlaced = AnyPlaced || std::ranges::any_of(
                                   Of.back(), [](const auto& value) { return value.has_value(); });
    }
  }
};

/// The view shows anew what lies there.
void Repaint(Workspace& ws, const PlaceArea& area) {
  ws.marksDirty.Add(ToInt32(area.Left), ToInt32(area.Top), ToInt32(area.Right),
                    ToInt32(area.Bottom));
}

void RepaintPoint(Workspace& ws, std::optional<PointId> id) {
  if (!id || !HasPlace(ws.store, *id)) return;
  const auto& [column, row] = ws.store.Places[*id];
  Repaint(ws, {column, row, column, row});
}

/// A length on the screen in picture pixels.
float OnPicture(const Workspace& ws, float length) {
  return static_cast<float>(length / ws.view.Zoom);
}

void Select(Workspace& ws, PointSet points) {
  SelectPoints(ws.store, std::move(points));
  UpdateEditMenu(ws.store, ws.commands);
}

/// The point's row and the point itself come into sight.
void ShowRow(Workspace& ws, PointId id) {
  if (const int row = RowOf(ws.store, id); row > 0) {
    ScrollToRow(ws.store.Page, ws.store.ListCount, row);
    ShowPage(ws.store);
  }
}

/// Columns and rows that all of these points can go.
Place Within(const Workspace& ws, const PlaceArea& area, const Place& way) {
  const auto most = [](int side) { return static_cast<float>(side - 1); };
  return {std::clamp(way.Column, std::min(-area.Left, 0.0f),
                     std::max(most(ws.plot.Width()) - area.Right, 0.0f)),
          std::clamp(way.Row, std::min(-area.Top, 0.0f),
                     std::max(most(ws.plot.Height()) - area.Bottom, 0.0f))};
}

/// This one lies under the pointer; its row is shown.
void MarkNear(Workspace& ws, std::optional<PointId> near) {
  PointEdit& edit = ws.pointEdit;
  ListPage& page = ws.store.Page;
  const int row = near ? RowOf(ws.store, *near) : 0;
  if (near == edit.Near && row == page.PointedRow) return;
  RepaintPoint(ws, std::exchange(edit.Near, near));
  RepaintPoint(ws, near);
  page.PointedRow = row;
  if (row > 0) ScrollToRow(page, ws.store.ListCount, row);
  ShowPage(ws.store);
}

PointSet JustCaptured(const Workspace& ws) {
  const auto& steps = ws.recipe.Steps;
  if (ws.store.CaptureCount == 0 || steps.empty() ||
      !(Is<CaptureStep>(steps.back()) || Is<PointStep>(steps.back())))
    return {};
  return {ws.store.CaptureId[ws.store.CaptureCount]};
}

std::string Position(const Place& place) {
  return Tr("column %1, row %2", ShortestText(place.Column), ShortestText(place.Row));
}

}  // namespace

Outcome Run(Workspace& ws, const Desktop& desktop, const MovePointsStep& step) {
  if (const char* fault = AxesFault(ws)) return Refuse(desktop, fault);
  if (step.Columns == 0 && step.Rows == 0) return Nothing();
  const std::string refusal = MovePoints(ws.store, ws.calibration, ws.plot.Width(),
                                         ws.plot.Height(), step.Points, step.Columns, step.Rows);
  if (!refusal.empty()) return Refuse(desktop, refusal);
  const std::size_t count = step.Points.Count();
  ws.status.Status =
      count == 1 ? Tr("Point moved to %1", Position(ws.store.Places[step.Points.Ids().front()]))
                 : TrCount("%1 point moved", "%1 points moved", static_cast<long long>(count));
  return {};
}

Outcome Run(Workspace& ws, const Desktop& desktop, const DeletePointsStep& step) {
  std::vector<MarkedPixel> traced;
  // Not the step's own ids: a recipe may name billions that there are not.
  for (PointId id = 1; id < ws.store.Places.size(); ++id)
    if (step.Points.Has(id) && HasPlace(ws.store, id))
      traced.push_back({ToInt32(ws.store.Places[id].Column), ToInt32(ws.store.Places[id].Row)});
  const std::string refusal = DeletePoints(ws.store, ws.commands, step.Points, ws.plot.Height());
  if (!refusal.empty()) return Refuse(desktop, refusal);
  TakeBackMarks(ws.plot, traced, PaletteColour(ws.settings.TraceColor));
  ws.status.Status =
      TrCount("%1 point deleted", "%1 points deleted", static_cast<long long>(step.Points.Count()));
  UpdateEditMenu(ws.store, ws.commands);
  return {};
}

bool CanRecalculate(const Workspace& ws) {
  return ws.plot.IsPresent() && AnyPoints(ws.curves, ws.store);
}

bool HasOldValues(const Workspace& ws) {
  if (!CanRecalculate(ws) || AxesFault(ws) != nullptr) return false;
  const CurveValues values(ws);
  return values.WithoutValue == 0 && values.Others > 0;
}

Outcome Run(Workspace& ws, const Desktop& desktop, const RecalculateStep&) {
  if (!CanRecalculate(ws)) return Refuse(desktop, Tr("There are no points to recalculate"));
  if (const char* fault = AxesFault(ws)) return Refuse(desktop, fault);
  const CurveValues values(ws);
  if (values.WithoutValue > 0)
    return Refuse(desktop,
                  TrCount("The axes give no number for %1 point: nothing was recalculated",
                          "The axes give no number for %1 points: nothing was recalculated",
                          values.WithoutValue));
  if (!values.AnyPlaced)
    return Refuse(desktop, Tr("No point has a place on this picture: nothing was recalculated"));
  const int staying = values.RowsThatStay;
  const std::string stay =
      staying == 0 ? ""
                   : "; " + TrCount("%1 row without a place on the picture stays",
                                    "%1 rows without a place on the picture stay", staying);
  if (values.Others == 0) {
    const std::string reason =
        (ws.curves.Curves.size() > 1
             ? Tr("All points of all curves have the values of these axes already")
             : Tr("All points have the values of these axes already")) +
        stay;
    Tell(desktop, reason);
    return Nothing(reason);
  }
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t curve) {
    TakeValues(points, values.Of[curve]);
  });
  ws.status.Status =
      TrCount("%1 point recalculated", "%1 points recalculated", values.Others) + stay;
  return {};
}

void GiveWaitingValues(Workspace& ws) {
  if (AxesFault(ws) != nullptr) return;
  const int waiting = CountWaiting(ws.curves, ws.store);
  if (waiting == 0) return;
  int given = 0;
  ChangePoints(ws.curves, ws.store, [&](PointStore& points, std::size_t) {
    given += GiveValues(points, ws.calibration, ws.plot.Height());
  });
  ws.status.Status =
      TrCount("%1 point has got its value", "%1 points have got their values", given);
  if (given < waiting)
    ws.status.Status += "; " + TrCount("the axes give no number for %1",
                                       "the axes give no numbers for %1", waiting - given);
}

void PointTo(Workspace& ws, float X, float Y) {
  const PointEdit& edit = ws.pointEdit;
  MarkNear(ws,
           edit.Pressed ? edit.Grabbed : NearestPoint(ws.store, {X, Y}, OnPicture(ws, kTakeReach)));
}

void PointNowhere(Workspace& ws) {
  MarkNear(ws, std::nullopt);
}

void PressPoint(Workspace& ws, int Shift, float X, float Y) {
  PointEdit& edit = ws.pointEdit;
  edit.Pressed = true;
  edit.Grabbed = NearestPoint(ws.store, {X, Y}, OnPicture(ws, kTakeReach));
  edit.Extends = (Shift & (kShiftKey | kCtrlKey)) != 0;
  edit.Dragged = false;
  edit.From = edit.To = {X, Y};
  if (!edit.Grabbed) return;
  const PointId id = *edit.Grabbed;
  const PointSet& selected = ws.store.Page.Points;
  if (edit.Extends)
    Select(ws, Toggled(selected, id));
  else if (!selected.Has(id))
    Select(ws, {id});
  // A point that the press has taken out of the selection is not dragged.
  edit.Pressed = ws.store.Page.Points.Has(id);
  ShowRow(ws, id);
}

void DragPoints(Workspace& ws, const Desktop& desktop, float X, float Y) {
  PointEdit& edit = ws.pointEdit;
  if (!edit.Pressed) return;
  Place way{X - edit.From.Column, Y - edit.From.Row};
  edit.Dragged = edit.Dragged ||
                 std::max(std::abs(way.Column), std::abs(way.Row)) >= OnPicture(ws, kDragBegins);
  if (!edit.Dragged) return;
  if (!edit.Grabbed) {
    edit.To = {X, Y};
    return;
  }
  const auto area = AreaOf(ws.store, ws.store.Page.Points);
  if (!area) return;
  way = Within(ws, *area, way);
  const auto repaint = [&](const Place& to) {
    const float dx = to.Column - edit.From.Column, dy = to.Row - edit.From.Row;
    Repaint(ws, {area->Left + dx, area->Top + dy, area->Right + dx, area->Bottom + dy});
  };
  repaint(edit.To);
  edit.To = {edit.From.Column + way.Column, edit.From.Row + way.Row};
  repaint(edit.To);
  const auto& [column, row] = ws.store.Places[*edit.Grabbed];
  ReadPlot(ws, desktop, column + way.Column, row + way.Row);
}

void ReleasePoints(Workspace& ws, const Desktop& desktop) {
  const PointEdit edit = ws.pointEdit;
  if (!edit.Pressed) return;
  EndPointDrag(ws);
  const auto& [left, top] = edit.From;
  const auto& [right, bottom] = edit.To;
  if (edit.Grabbed && edit.Dragged) {
    Do(ws, desktop, MovePointsStep{ws.store.Page.Points, right - left, bottom - top});
    ShowRow(ws, *edit.Grabbed);
  } else if (edit.Grabbed) {
    if (!edit.Extends) Select(ws, {*edit.Grabbed});
    ShowRow(ws, *edit.Grabbed);
  } else if (edit.Dragged || !edit.Extends) {
    PointSet found;
    if (edit.Dragged)
      found = PointsWithin(ws.store, {std::min(left, right), std::min(top, bottom),
                                      std::max(left, right), std::max(top, bottom)});
    if (edit.Extends) found = Union(found, ws.store.Page.Points);
    Select(ws, found);
    if (found.IsEmpty()) return;
    ws.status.Status =
        TrCount("%1 point selected", "%1 points selected", static_cast<long long>(found.Count()));
    ShowRow(ws, found.Ranges().front().First);
  }
}

void EndPointDrag(Workspace& ws) {
  if (ws.pointEdit.Pressed && ws.pointEdit.Dragged)
    ws.marksDirty.Add(0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1);
  ws.pointEdit = {};
}

bool NudgePoints(Workspace& ws, const Desktop& desktop, float columns, float rows) {
  const bool selected = HasSelectedPoints(ws);
  const PointSet points = selected ? ws.store.Page.Points : JustCaptured(ws);
  const auto area = AreaOf(ws.store, points);
  if (!area) return false;
  if (Within(ws, *area, {columns, rows}) != Place{columns, rows}) {
    ws.status.Status = Tr("There the picture ends");
    return true;
  }
  Do(ws, desktop, MovePointsStep{points, columns, rows});
  ws.pointEdit.ByKeys = true;
  if (!selected) Select(ws, points);
  ShowRow(ws, points.Ranges().front().First);
  return true;
}

void SelectAllPoints(Workspace& ws) {
  Select(ws, AllPoints(ws.store));
}

void SelectNoPoints(Workspace& ws) {
  Select(ws, {});
}

bool HasSelectedPoints(const Workspace& ws) {
  return !ws.store.Page.Points.IsEmpty();
}

void DeleteSelectedPoints(Workspace& ws, const Desktop& desktop) {
  Do(ws, desktop, DeletePointsStep{ws.store.Page.Points});
}

void FollowListSelection(Workspace& ws) {
  ListPage& page = ws.store.Page;
  page.Points = PointsOfRows(ws.store, page.SelectionStart, page.SelectionEnd);
  ShowPage(ws.store);
  const int end = page.SelectionEnd;
  if (end < 1 || end > ws.store.ListCount || !HasPlace(ws.store, ws.store.ListId[end])) return;
  const auto& [column, row] = ws.store.Places[ws.store.ListId[end]];
  BringIntoSight(ws, column, row);
}

}  // namespace graphize
