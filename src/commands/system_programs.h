#pragma once

#include "desktop/desktop.h"

namespace graphize {

// Programs of the desktop are started and not waited for. A message when there is none.

/// The desktop's settings of mouse and touchpad.
void MouseSettings(const Desktop& desktop);
/// The desktop's tool that tells about the computer.
void SystemInformation(const Desktop& desktop);

}  // namespace graphize
