#pragma once

#include "capture/point_store.h"
#include "desktop/command_states.h"

namespace graphize {

/// Rows may be deleted one by one only while they are captured points, and where some are selected.
bool CanClearSelected(const PointStore& store);
/// Removes the selected rows from the list, and their own points from the captured ones, also after
/// a sort; the number of captured points stays, their last ones repeat. An empty selection removes
/// nothing.
void ClearSelected(PointStore& store);
/// The number of captured points without those at the end that this has left there twice.
int CountWithoutRepeats(const PointStore& store);

/// Exchanges X and Y in every row of the list.
void SwapXY(PointStore& store);

/// Undo of everything that changed only the list: it becomes the captured points again. Nothing
/// happens without captured points.
void XY2List(PointStore& store);

/// What the two menus offer when they open; paste is the caller's. With exactly one captured point
/// curve length keeps the state it had.
void UpdateEditMenu(const PointStore& store, CommandStates& commands);
void UpdateDataMenu(const PointStore& store, CommandStates& commands);

/// Makes the list arrays large enough for `count` rows; new elements are 0.
void GrowList(PointStore& store, int count);

}  // namespace graphize
