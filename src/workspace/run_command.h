#pragma once

#include <functional>
#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// Runs one command: the one place that all commands pass. A command asked for while another runs
/// is dropped. A run-time error ends the command with its words in a message box; pointer, progress
/// and caption are put back. False when the command was dropped or failed.
bool RunCommand(Workspace& ws, const Desktop& desktop, const std::function<void()>& command);

/// Runs `work`. A run-time error is told and put back after as RunCommand does; its words are
/// returned, else nothing is.
std::string Guarded(Workspace& ws, const Desktop& desktop, const std::function<void()>& work);

}  // namespace graphize
