#pragma once

#include <string>

#include "capture/point_store.h"
#include "desktop/desktop.h"
#include "tracing/ink_check.h"
#include "workspace/workspace.h"

namespace graphize {

/// What the picture, without marks, says of the list's points that have a place on it.
InkCheck InkCheckOf(Workspace& ws, const PointStore& store);

/// The active curve's points against the picture: fills the line under the list.
void CheckPoints(Workspace& ws);
/// The same, with a line for each other curve of which a point is doubtful.
void CheckAllCurves(Workspace& ws);
/// The same of work that was opened, where it was done before: a line only of what is doubtful.
void CheckOpened(Workspace& ws);
bool CanCheckPoints(const Workspace& ws);
/// CheckPoints, which tells where no point has a place.
void AskForCheck(Workspace& ws);
/// LBL_InkCheck: of several curves it names the active one.
std::string InkCheckLine(const Workspace& ws);
/// While there is a line, it is of the points and the pixels as they are. It goes without
/// points, and where an image tool has moved the picture away from its axes.
void RenewInkCheck(Workspace& ws);

/// Selects the doubtful points, which frames them on the picture; or none when they are selected.
void ShowDoubtful(Workspace& ws);
bool IsDoubtfulShown(const Workspace& ws);
/// The doubtful points go, as points that are deleted do, and the others are checked anew.
void RemoveDoubtful(Workspace& ws, const Desktop& desktop);
bool CanRemoveDoubtful(const Workspace& ws);
/// Whether that was the last thing done, so that Undo brings the points back.
bool IsRemovedLast(const Workspace& ws);

}  // namespace graphize
