#pragma once

#include "commands/do.h"

namespace graphize {

/// A workspace as the program starts with it, but with the built-in options instead of the user's:
/// what a recipe's steps begin on.
void StartReplay(Workspace& ws);

/// Does one step of a recipe, the whole picture in view, so that nothing scrolls. What the step's
/// own user has been told is not told again, and a step that failed then is done when it fails.
Outcome ReplayStep(Workspace& ws, const Desktop& desktop, const Step& step);

}  // namespace graphize
