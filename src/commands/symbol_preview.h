#pragma once

#include "desktop/desktop.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// A click in the mode "findsymbols": on a symbol that is shown it is left out, or kept again;
/// elsewhere all symbols like the one there are found and shown. What is no symbol leaves what was
/// shown, and says why.
void ClickSymbol(Workspace& ws, const Desktop& desktop, int x, int y);
/// Finds what is shown again, with the controls as they are. What was left out stays so.
void FindAgain(Workspace& ws, const Desktop& desktop);
void ChooseCentre(Workspace& ws, const Desktop& desktop, SymbolCentre centre);

/// The doubtful symbol behind the one that is looked at, or with `step` -1 the one before it; it
/// comes into sight.
void StepDoubtful(Workspace& ws, int step);
bool HasDoubtful(const Workspace& ws);
/// The symbol that is looked at is not taken over, or is.
void LeaveOutCurrent(Workspace& ws, bool leaveOut);
/// Null where none is looked at.
const FoundSymbol* CurrentSymbol(const Workspace& ws);
bool IsCurrentLeftOut(const Workspace& ws);

/// What taking the symbols that are shown over does.
SymbolsStep StepOfSymbols(const Workspace& ws);
bool CanTakeSymbols(const Workspace& ws);

}  // namespace graphize
