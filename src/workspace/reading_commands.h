#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Whether a curve can be read: a picture with complete axes.
bool CanRead(const Workspace& ws);

/// Reads the curve at a picture position, off the picture without marks and with the blockers for
/// walls, and captures its points. Refused with what was found there where that is no curve; Escape
/// captures nothing.
Outcome Run(Workspace& ws, const Desktop& desktop, const ReadStep& step);

}  // namespace graphize
