#include "workspace/run_command.h"

#include <new>

#include "base/run_time_error.h"
#include "workspace/plot_mouse.h"
#include "workspace/preview_commands.h"
#include "workspace/propose_axes_commands.h"
#include "workspace/shown_picture.h"

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

}  // namespace

std::string Guarded(Workspace& ws, const Desktop& desktop, const std::function<void()>& work) {
  std::string error;
  try {
    work();
  } catch (const RunTimeError& e) {
    error = e.what();
  } catch (const std::bad_alloc&) {
    error = Tr("Out of memory");
  } catch (const std::exception& e) {
    error = Tr("Unexpected error: %1", std::string(e.what()));
  }
  if (error.empty()) return error;
  PutBackAfterError(ws);
  Tell(desktop, error, MessageIcon::Critical);
  return error;
}

bool RunCommand(Workspace& ws, const Desktop& desktop, const std::function<void()>& command) {
  if (ws.commandRuns) return false;
  ws.commandRuns = true;
  const bool done = Guarded(ws, desktop, command).empty();
  DropStaleReading(ws);
  DropStaleAxes(ws);
  ws.commandRuns = false;
  return done;
}

}  // namespace graphize
