#include "workspace/extraction_commands.h"

#include <algorithm>

#include "base/numbers.h"
#include "extraction/curve_tracer.h"
#include "extraction/smooth_tracer.h"

namespace graphize {

ExtractionContext ExtractionOf(Workspace& ws, const Desktop& desktop) {
  return {.Image = ws.plot,
          .View = ws.view,
          .Cursor = ws.readOut,
          .Panel = ws.axisPanel,
          .Store = ws.store,
          .Commands = ws.commands,
          .Status = ws.status,
          .Control = ws.tracer,
          .Calibration = ws.calibration,
          .Options = ws.settings,
          .Verbs = desktop,
          .CapturePressed = ws.mode == Mode::Graphize};
}

bool CanExtract(const Workspace& ws) {
  return ws.plot.IsPresent() && (ws.calibration.Defined[1] || ws.calibration.Defined[2]) &&
         (ws.mode == Mode::Graphize || ws.mode == Mode::BlockTest);
}

void Trace(Workspace& ws, const Desktop& desktop, float x, float y) {
  ws.mouse.TraceRunning = true;
  ws.window.Hourglass = true;
  const ExtractionContext context = ExtractionOf(ws, desktop);
  ws.settings.Trace == 1 ? TraceSmooth(context, x, y) : TraceNew(context, x, y);
  ws.window.Hourglass = false;
  ws.mouse.TraceRunning = false;
}

void FinishScanRectangle(Workspace& ws, const Desktop& desktop) {
  // The release that ends the drag is the click that is swallowed.
  ws.mouse.SuppressNextClick = false;
  const ScanRectangle rectangle = ws.scanRectangle;
  if (!ReleaseScanRectangle(ws.scanRectangle)) return;
  ws.mouse.TraceRunning = true;
  Scan(ExtractionOf(ws, desktop), rectangle);
  ws.mouse.TraceRunning = false;
}

void StepIncrement(std::string& text, int step) {
  const double value = std::clamp(LeadingNumber(text), 0.0, 32767.0);
  text = std::to_string(std::clamp(static_cast<int>(value) + step, 0, 32767));
}

}  // namespace graphize
