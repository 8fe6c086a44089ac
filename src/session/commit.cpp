#include "session/commit.h"

#include <functional>
#include <utility>

#include "commands/ink_check_commands.h"

namespace graphize {

bool CommitCommand(Workspace& ws, const Desktop& desktop, History& history, Journal& journal,
                   CommandEnd end) {
  // By reference: a copy could need memory, here where nobody catches its lack.
  const auto run = [&](const auto& work) { RunCommand(ws, desktop, std::ref(work)); };
  if (end == CommandEnd::OutOfMemory) run([&] { history.TakeBack(ws); });
  run([&] {
    RenewInkCheck(ws);
    journal.KeepPicture(ws, desktop);
  });
  run([&] { history.Commit(ws); });
  const DocumentDelta delta = history.TakeDelta();
  journal.Append(ws, delta);
  if (std::string note = journal.TakeNote(); !note.empty()) ws.status.Status = std::move(note);
  return delta.Any;
}

}  // namespace graphize
