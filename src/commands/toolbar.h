#pragma once

#include <string_view>

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// A click on the toolbar button `key`; keys are compared exactly, an unknown one does nothing.
void Toolbar_ButtonClick(Workspace& ws, const Desktop& desktop, std::string_view key);

/// Whether the button is enabled, and whether it is pressed.
bool CanPress(const Workspace& ws, std::string_view key);
bool IsPressed(const Workspace& ws, std::string_view key);

/// A mode button goes down, or all five come up. Refused where the button is not enabled.
Outcome Run(Workspace& ws, const Desktop& desktop, const ModeStep& step);
void ReleaseButtons(Workspace& ws, const Desktop& desktop);

/// What the mode asks for next, in the panel "hint".
void ShowModeHint(Workspace& ws);

/// The side panel of a mode: the axis panel for "axisdef" in any letter case.
void ShowFrame(Workspace& ws, std::string_view key);

/// Clears the marks and draws what is stored again.
void RefreshPlot(Workspace& ws);
Outcome Run(Workspace& ws, const Desktop& desktop, const RefreshStep& step);

}  // namespace graphize
