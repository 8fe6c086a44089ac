#pragma once

#include <optional>

#include "capture/point_store.h"

namespace graphize {

/// What the mouse does in "Edit Points". Which points are selected: ListPage.
struct PointEdit {
  std::optional<PointId> Near;     // what a press would take
  bool Pressed = false;            // the left button is down
  std::optional<PointId> Grabbed;  // what the press has taken; without it a band begins
  bool Extends = false;            // the press was with Shift or Ctrl
  bool Dragged = false;            // further than a click
  Place From, To;                  // the pointer at the press, and where it has led
  bool ByKeys = false;             // the last command has moved points by keys, for the history
};

/// How near to a point a press takes it, and where a drag begins, in pixels of the screen.
inline constexpr float kTakeReach = 8;
inline constexpr float kDragBegins = 3;

}  // namespace graphize
