#pragma once

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Does a step: the one way in which anything that leads to points happens, from the window, a
/// recipe, the command line or a test.
///
/// 1. Ends what a press on the picture has begun; the pen's way so far is a step of its own.
/// 2. Does it. What a person has to be told is told through `desktop`; a run-time error is, too,
///    and makes the outcome Failed.
/// 3. Notes the step in the recipe, behind the options that were changed since the last one, unless
///    nothing came of it. A step that was stopped, or that failed midway, is noted with how it
///    went (Interruptions), and a step that says so itself goes that way again.
Outcome Do(Workspace& ws, const Desktop& desktop, Step step);

/// Notes the way that the pen has come, when its button is released.
void NotePen(Workspace& ws);

/// Notes the options that were changed since the last step.
void NoteOptions(Workspace& ws);

}  // namespace graphize
