#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Points of the list go by so many pixels, as does each row and captured point with their ids;
/// their values are those of the new places. Refused, which is told, where the axes give none.
Outcome Run(Workspace& ws, const Desktop& desktop, const MovePointsStep& step);
/// Points go, with every row that shows them.
Outcome Run(Workspace& ws, const Desktop& desktop, const DeletePointsStep& step);
/// All points get the values of their places by the axes as they are now. Refused, which is told,
/// where the axes give one of them none, or all of them have these values.
Outcome Run(Workspace& ws, const Desktop& desktop, const RecalculateStep& step);
bool CanRecalculate(const Workspace& ws);
/// Whether a point would get another value.
bool HasOldValues(const Workspace& ws);
/// Points that were captured before the axes were defined get their values, where the axes give
/// any.
void GiveWaitingValues(Workspace& ws);

// "Edit Points": the left button and the pointer on the picture, row downward.

void PointTo(Workspace& ws, float X, float Y);
void PointNowhere(Workspace& ws);
void PressPoint(Workspace& ws, int Shift, float X, float Y);
void DragPoints(Workspace& ws, const Desktop& desktop, float X, float Y);
void ReleasePoints(Workspace& ws, const Desktop& desktop);
/// What the press has begun is as it was, and nothing lies under the pointer.
void EndPointDrag(Workspace& ws);

/// The points that keys move by so many pixels: the selected ones, else the one that has just been
/// captured. False where there are none.
bool NudgePoints(Workspace& ws, const Desktop& desktop, float columns, float rows);
void SelectAllPoints(Workspace& ws);
void SelectNoPoints(Workspace& ws);
bool HasSelectedPoints(const Workspace& ws);
void DeleteSelectedPoints(Workspace& ws, const Desktop& desktop);

/// The points of the list's selection are the selected ones; its end is brought into view.
void FollowListSelection(Workspace& ws);

}  // namespace graphize
