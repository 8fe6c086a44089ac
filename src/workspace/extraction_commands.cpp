#include "workspace/extraction_commands.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "raster/black_white.h"
#include "tracing/curve_tracer.h"
#include "tracing/smooth_tracer.h"
#include "workspace/plot_mouse.h"

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
          .Callbacks = desktop,
          .CapturePressed = ws.mode == Mode::Graphize};
}

bool CanExtract(const Workspace& ws) {
  return ws.plot.IsPresent() && (ws.calibration.Defined[1] || ws.calibration.Defined[2]) &&
         (ws.mode == Mode::Graphize || ws.mode == Mode::BlockTest);
}

void Trace(Workspace& ws, const Desktop& desktop, float x, float y) {
  ws.mouse.TraceRunning = true;
  ws.window.Hourglass = true;
  const StepWatch watch(desktop);
  const ExtractionContext context = ExtractionOf(ws, watch.Callbacks());
  ws.settings.Trace == 1 ? TraceSmooth(context, x, y) : TraceNew(context, x, y);
  NoteStep(ws, "trace " + PositionText(x, y) + watch.StepText());
  ws.window.Hourglass = false;
  ws.mouse.TraceRunning = false;
}

void ScanArea(Workspace& ws, const Desktop& desktop, const ScanRectangle& area) {
  ws.mouse.TraceRunning = true;
  const StepWatch watch(desktop);
  Scan(ExtractionOf(ws, watch.Callbacks()), area);
  NoteStep(ws, "scan " + std::to_string(area.Left) + " " + std::to_string(area.Top) + " " +
                   std::to_string(area.Right) + " " + std::to_string(area.Bottom) +
                   watch.StepText());
  ws.mouse.TraceRunning = false;
}

void FinishScanRectangle(Workspace& ws, const Desktop& desktop) {
  // The release that ends the drag is the click that is swallowed.
  ws.mouse.SuppressNextClick = false;
  const ScanRectangle rectangle = ws.scanRectangle;
  if (!ReleaseScanRectangle(ws.scanRectangle)) return;
  ScanArea(ws, desktop, rectangle);
}

void PlaceBlocker(Workspace& ws) {
  if (!std::exchange(ws.mouse.Painting, false)) return;
  const PointStore& at = ws.store;
  const std::int16_t row = ToInt16(ws.plot.Height() - at.CurrentPixelY);
  PaintBlocker(ws.blockers, ws.plot, ws.commands, ws.settings, at.CurrentPixelX, row, ws.blockSize);
  NoteStep(ws, "block " + PositionText(at.CurrentPixelX, row) + " " + std::to_string(ws.blockSize));
}

bool CanRemoveBlockers(const Workspace& ws) {
  return ws.commands.Blockers;
}

void RemoveLastBlocker(Workspace& ws) {
  EndDrag(ws);
  ClearLastBlocker(ws.blockers, ws.plot, ws.commands, ws.settings);
  NoteStep(ws, "clear-last-blocker");
}

void RemoveAllBlockers(Workspace& ws) {
  EndDrag(ws);
  ClearBlockers(ws.blockers, ws.plot, ws.commands);
  NoteStep(ws, "clear-blockers");
}

void UsePen(Workspace& ws, PenTool tool, float x, float y, int size) {
  // A toolbar button may have left it while its mode stays pressed: blockers are hidden again.
  ws.plot.PersistentDrawing = true;
  PressPen(ws.pen, ws.plot, tool, x, y, size);
}

void BustGrid(Workspace& ws, const Desktop& desktop, GridDirection direction, bool all, float x,
              float y) {
  ws.window.Hourglass = true;
  ws.plot.PersistentDrawing = true;
  const StepWatch watch(desktop);
  const GridRemoval removal = RemoveGridLines(ws.plot, ws.calibration, watch.Callbacks(), ws.status,
                                              direction, all, ToInt16(x), ToInt16(y));
  if (removal.Pixels > 0)
    NoteStep(ws, std::string("grid ") + (direction == GridDirection::X ? "x " : "y ") +
                     (all ? "all " : "one ") + PositionText(x, y) + watch.StepText());
  ws.window.Hourglass = false;
}

bool CanUndoErase(const Workspace& ws) {
  return ws.plot.HasUndo;
}

void UndoErase(Workspace& ws) {
  EndDrag(ws);
  UndoEdit(ws.plot);
  ws.status.Status = "Undo completed";
  NoteStep(ws, "undo-edit");
  ws.plot.PersistentDrawing = true;
  // The edit modes show the picture alone; everywhere else a blocker must go on fencing.
  if (ws.mode != Mode::DrawErase && ws.mode != Mode::GridBuster)
    RedrawBlockers(ws.blockers, ws.plot, ws.settings);
}

bool OfferBlackAndWhite(Workspace& ws, const Desktop& desktop, Raster& picture,
                        std::optional<bool> reduce) {
  if (IsBlackAndWhite(picture)) return false;
  if (!reduce)
    reduce = AskYesNo(desktop,
                      "Image is not Black & White !\r\nAuto-Trace works best on BW "
                      "images\r\n\r\nDo you want to reduce colors to BW ?");
  desktop.ShowNow();
  if (!*reduce) return false;
  ws.status.Status = "Reducing color depth...";
  desktop.ShowNow();
  ReduceToBlackAndWhite(picture);
  return true;
}

void StepIncrement(std::string& text, int step) {
  const double value = std::clamp(LeadingNumber(text), 0.0, 32767.0);
  text = std::to_string(std::clamp(static_cast<int>(value) + step, 0, 32767));
}

}  // namespace graphize
