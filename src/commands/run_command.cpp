#include "commands/run_command.h"

#include <new>

#include "base/run_time_error.h"
#include "commands/plot_mouse.h"
#include "commands/preview_commands.h"
#include "commands/propose_axes_commands.h"
#include "commands/shown_picture.h"

namespace graphize {

namespace {

void PutBackAfterError(Workspace& ws) {
  ws.window.Hourglass = false;
  ws.mouse.TraceRunning = false;
  EndDrag(ws);
  ws.status.ProgressVisible = false;
  ws.status.Status = " ";
  ShowPictureCaption(ws);
}

class CommandRuns {
 public:
  explicit CommandRuns(Workspace& ws) : ws_(ws) { ws_.commandRuns = true; }
  ~CommandRuns() { ws_.commandRuns = false; }
  CommandRuns(const CommandRuns&) = delete;
  CommandRuns& operator=(const CommandRuns&) = delete;

 private:
  Workspace& ws_;
};

}  // namespace

std::string Guarded(Workspace& ws, const Desktop& desktop, const std::function<void()>& work) {
  std::string error;
  try {
    work();
  } catch (const RunTimeError& e) {
    error = e.what();
  } catch (const std::bad_alloc&) {
    PutBackAfterError(ws);
    throw;
  } catch (const std::exception& e) {
    error = Tr("Unexpected error: %1", std::string(e.what()));
  }
  if (error.empty()) return error;
  PutBackAfterError(ws);
  Tell(desktop, error, MessageIcon::Critical);
  return error;
}

CommandEnd RunCommand(Workspace& ws, const Desktop& desktop, const std::function<void()>& command) {
  if (ws.commandRuns) return CommandEnd::Dropped;
  const CommandRuns runs(ws);
  try {
    const bool done = Guarded(ws, desktop, command).empty();
    DropStaleReading(ws);
    DropStaleAxes(ws);
    return done ? CommandEnd::Done : CommandEnd::Failed;
  } catch (const std::bad_alloc&) {
    Tell(desktop, "Out of memory", MessageIcon::Critical);
    return CommandEnd::OutOfMemory;
  }
}

}  // namespace graphize
