#pragma once

#include "commands/run_command.h"
#include "session/history.h"
#include "session/journal.h"

namespace graphize {

/// After every command, however it ended: what it has changed goes into the history and onto the
/// disk. One that ran out of memory is taken back before. What cannot be kept is told, and made up
/// for after the next command. Whether the document has become another.
bool CommitCommand(Workspace& ws, const Desktop& desktop, History& history, Journal& journal,
                   CommandEnd end);

}  // namespace graphize
