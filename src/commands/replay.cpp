#include "commands/replay.h"

#include "commands/image_tools_commands.h"
#include "commands/shown_picture.h"
#include "commands/view_commands.h"

namespace graphize {

namespace {

/// Readings that impossible axes do not allow, and axes that no longer fit, were told when the step
/// was done first.
bool TellsNothingNew(const Step& step) {
  return Is<ModeStep>(step) || Is<ImageToolStep>(step);
}

bool IsExpectedToFail(const Step& step) {
  return std::visit(
      [](const auto& record) {
        if constexpr (requires { record.Went; }) return record.Went.Failed;
        return false;
      },
      step);
}

}  // namespace

void StartReplay(Workspace& ws) {
  BuildFormats(ws.settings, ws.formats);
  InitAxisDefFrame(ws.calibration, ws.axisPanel);
  ClearList(ws.store);
}

Outcome ReplayStep(Workspace& ws, const Desktop& desktop, const Step& step) {
  Desktop quiet = desktop;
  if (TellsNothingNew(step)) quiet.ShowMessage = [](const Message&) { return Answer::Ok; };
  Outcome outcome = Do(ws, quiet, step);
  if (outcome.Is == Outcome::How::Failed && IsExpectedToFail(step)) outcome.Is = Outcome::How::Done;
  // A reset would wait for a picture.
  KeepPictureUsable(ws);
  ResizeView(ws, ws.plot.Width(), ws.plot.Height());
  return outcome;
}

}  // namespace graphize
