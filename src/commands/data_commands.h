#pragma once

#include "data/sort.h"
#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Looks at what the Data menu may offer when it opens. Nothing in it has a key of its own that
/// would act before.
void OpenDataMenu(Workspace& ws);

/// The data list's bulk edits, the list as it was captured, and the lengths of the curve's
/// segments, of which a message has the sums. Refused with too few captured points.
Outcome Run(Workspace& ws, const Desktop& desktop, const SortStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const SwapStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const UndoListStep& step);
Outcome Run(Workspace& ws, const Desktop& desktop, const CurveLengthStep& step);

/// Opens the window FRM_Integrate; its button is the step: the area between the limits, shaded on
/// the picture in place of earlier marks.
void ShowIntegrate(Workspace& ws);
Outcome Run(Workspace& ws, const Desktop& desktop, IntegrateStep& step);

/// Opens the window Sample; its button is the step, as the boxes have it: the list is points at
/// even steps.
void ShowSample(Workspace& ws, const Desktop& desktop);
ResampleStep StepOfForm(const SampleForm& form);
Outcome Run(Workspace& ws, const Desktop& desktop, ResampleStep& step);

}  // namespace graphize
