#pragma once

#include <functional>
#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// How a command ended. One that ran out of memory may have ended anywhere: who keeps a history
/// takes it back whole.
enum class CommandEnd { Done, Dropped, Failed, OutOfMemory };

/// Runs one command: the one place that all commands pass. A command asked for while another runs
/// is dropped. A run-time error ends the command with its words in a message box; pointer, progress
/// and caption are put back.
CommandEnd RunCommand(Workspace& ws, const Desktop& desktop, const std::function<void()>& command);

/// Runs `work`. A run-time error is told and put back after as RunCommand does; its words are
/// returned, else nothing is. A lack of memory ends the whole command.
std::string Guarded(Workspace& ws, const Desktop& desktop, const std::function<void()>& work);

}  // namespace graphize
