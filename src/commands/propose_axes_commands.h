#pragma once

#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Finds the axes of the picture without marks and shows them over it, with progress and Escape.
/// Nothing else changes. What was shown stays when it is stopped.
void ShowProposedAxes(Workspace& ws, const Desktop& desktop, const AxesChoice& choice = {});
bool CanProposeAxes(const Workspace& ws);

/// The frame's boxes and switches. A value that is typed, or whose box is gone through (Confirm),
/// has been looked at.
void TypeProposedX(Workspace& ws, int row, const std::string& text);
void TypeProposedY(Workspace& ws, int row, const std::string& text);
void ConfirmProposedX(Workspace& ws, int row, bool confirmed = true);
void ConfirmProposedY(Workspace& ws, int row, bool confirmed = true);
/// The row whose box has the focus is marked, and brought into sight.
void LookAtProposedRow(Workspace& ws, int row);

/// Another of several plots, by its number or by a click on the picture; another scale.
void ChooseProposedPlot(Workspace& ws, const Desktop& desktop, int plot);
void ChooseProposedXScale(Workspace& ws, const Desktop& desktop, int scale);
void ChooseProposedYScale(Workspace& ws, const Desktop& desktop, int scale);
/// False where the click is none of a choice.
bool ClickProposedPlot(Workspace& ws, const Desktop& desktop, int x, int y);

/// Defines the axes as three clicks would, with whole pixels, the switches and the values. Where
/// one of the clicks would be refused, nothing changes and the reason is told.
void TakeProposedAxes(Workspace& ws, const Desktop& desktop);
bool CanTakeProposedAxes(const Workspace& ws);
void DropProposedAxes(Workspace& ws);
/// After each command: another picture, mode or definition of the axes drops what is shown.
void DropStaleAxes(Workspace& ws);

/// LBL_Verdict: the verdict, then the reasons, in words.
std::string VerdictText(const ProposedAxesForm& form);

}  // namespace graphize
