#pragma once

#include <Qt>

namespace graphize {

/// The shift state of the mouse and key commands: 1 Shift, 2 Ctrl, 4 Alt, added up.
inline int ShiftState(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
         (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
         (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

}  // namespace graphize
