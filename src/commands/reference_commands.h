#pragma once

#include <array>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Adds a reference to the axes, takes one away, and switches between refined axes and those of the
/// three rows. While they are refined, a change of the references fits them anew.
Outcome Run(Workspace& ws, const Desktop& desktop, ReferenceStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const RemoveReferenceStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const RefineStep& step);

/// Further references need complete axes, of the picture as it is.
bool CanAddReference(const Workspace& ws);
bool CanRefine(const Workspace& ws);

/// CMD_AddReference: the next clicks add references, or no longer.
void SwitchAddReference(Workspace& ws);
/// A click while it is pressed: with the values of the boxes, which are emptied then.
void AddReferenceAt(Workspace& ws, const Desktop& desktop, double column, double row);
/// A row of the list, or none (-1).
void ChooseReference(Workspace& ws, int number);
/// A click moves the reference that is chosen; false without one.
bool MoveChosenReference(Workspace& ws, const Desktop& desktop, double column, double row);
/// The reference that is chosen in the list goes.
void RemoveChosenReference(Workspace& ws, const Desktop& desktop);

/// Where a click that defines axes would snap to, as the pointer is told; with `held` nowhere.
void FollowAxisSnap(Workspace& ws, bool held);

/// What the axis panel shows of all this.
struct ReferenceView {
  bool CanAdd = false, CanRefine = false, CanRemove = false;
  std::array<std::string, 3> OfRows;  // LBL_RowResidual: pixels, beside the rows
  std::vector<std::string> Lines;     // LST_References: value and residual
  std::string Summary;                // LBL_Residual
  std::string Angle;                  // LBL_Angle: of the axes that are in use, degrees
};
ReferenceView ReferencesOf(const Workspace& ws);

}  // namespace graphize
