#include "commands/extraction_commands.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/plot_mouse.h"
#include "tracing/curve_tracer.h"
#include "tracing/smooth_tracer.h"

namespace graphize {

namespace {

/// What the increment boxes held before they were read. Says in the panel "status" when that was
/// another number than the one they show then.
class TypedIncrements {
 public:
  explicit TypedIncrements(const TracerControl& control) : x_(control.Xrange), y_(control.Yrange) {}

  void TellChanges(Workspace& ws) const {
    Tell(ws.status, Tr("X increment"), x_, ws.tracer.Xrange);
    Tell(ws.status, Tr("Y increment"), y_, ws.tracer.Yrange);
  }

 private:
  static void Tell(StatusBar& status, const std::string& box, const std::string& typed,
                   const std::string& used) {
    const TypedNumber number = ReadTyped(typed);
    if (number.IsPlain && number.Value == LeadingNumber(used)) return;
    status.Status = Tr("%1; %2 was read as %3", status.Status, box, used);
  }

  std::string x_, y_;
};

}  // namespace

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

std::optional<Outcome> RefusedAt(const Workspace& ws, float x, float y) {
  const PlotImage& plot = ws.plot;
  const auto inside = [](float at, int size) {
    return at >= 0 && at <= static_cast<float>(size - 1);
  };
  if (inside(x, plot.Width()) && inside(y, plot.Height())) return std::nullopt;
  return Refused(Tr("the position %1,%2 lies outside of the picture (%3x%4)", ShortestText(x),
                    ShortestText(y), plot.Width(), plot.Height()));
}

namespace {

std::optional<Outcome> ExtractionRefused(const Workspace& ws, float x, float y) {
  if (auto outside = RefusedAt(ws, x, y)) return outside;
  if (CanExtract(ws)) return std::nullopt;
  return Refused("this needs the axes and the mode \"graphize\" or \"blocktest\"");
}

}  // namespace

Outcome Run(Workspace& ws, const Desktop& desktop, TraceStep& step) {
  if (auto refused = ExtractionRefused(ws, step.X, step.Y)) return *refused;
  const int before = ws.store.CaptureCount;
  ws.mouse.TraceRunning = true;
  ws.window.Hourglass = true;
  const TypedIncrements typed(ws.tracer);
  const ExtractionContext context = ExtractionOf(ws, desktop);
  const TraceEnd end = ws.settings.Trace == 1 ? TraceSmooth(context, step.X, step.Y)
                                              : TraceNew(context, step.X, step.Y);
  typed.TellChanges(ws);
  ws.window.Hourglass = false;
  ws.mouse.TraceRunning = false;
  return {.Points = ws.store.CaptureCount - before, .HiddenByMarks = end.HiddenByMarks};
}

Outcome Run(Workspace& ws, const Desktop& desktop, ScanStep& step) {
  const auto at = [](std::int32_t position) { return static_cast<float>(position); };
  if (auto refused = ExtractionRefused(ws, at(step.Area.Left), at(step.Area.Top))) return *refused;
  const int before = ws.store.CaptureCount;
  ws.mouse.TraceRunning = true;
  const TypedIncrements typed(ws.tracer);
  Scan(ExtractionOf(ws, desktop), step.Area);
  typed.TellChanges(ws);
  ws.mouse.TraceRunning = false;
  return {.Points = ws.store.CaptureCount - before};
}

void FinishScanRectangle(Workspace& ws, const Desktop& desktop) {
  // The release that ends the drag is the click that is swallowed.
  ws.mouse.SuppressNextClick = false;
  const ScanRectangle rectangle = ws.scanRectangle;
  if (!ReleaseScanRectangle(ws.scanRectangle)) return;
  Do(ws, desktop, ScanStep{rectangle, {}});
}

void PlaceBlocker(Workspace& ws, const Desktop& desktop) {
  if (!std::exchange(ws.mouse.Painting, false)) return;
  Do(ws, desktop,
     BlockStep{static_cast<float>(ws.readOut.PlotX), static_cast<float>(ws.readOut.PlotY),
               ws.blockSize});
}

Outcome Run(Workspace& ws, const Desktop&, const BlockStep& step) {
  if (auto refused = RefusedAt(ws, step.X, step.Y)) return *refused;
  PaintBlocker(ws.blockers, ws.plot, ws.commands, ws.settings, ToInt16(step.X), ToInt16(step.Y),
               step.Size);
  return {};
}

bool CanRemoveBlockers(const Workspace& ws) {
  return ws.commands.Blockers;
}

Outcome Run(Workspace& ws, const Desktop&, const ClearLastBlockerStep&) {
  ClearLastBlocker(ws.blockers, ws.plot, ws.commands, ws.settings);
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const ClearBlockersStep&) {
  ClearBlockers(ws.blockers, ws.plot, ws.commands);
  return {};
}

void UsePen(Workspace& ws, PenTool tool, float x, float y, int size) {
  // A toolbar button may have left it while its mode stays pressed: blockers are hidden again.
  ws.plot.PersistentDrawing = true;
  PressPen(ws.pen, ws.plot, tool, x, y, size);
}

namespace {

Outcome MovePen(Workspace& ws, PenTool tool, const PenWay& pen) {
  if (pen.Way.empty()) return Refused("the pen has no way");
  const auto at = [](int position) { return static_cast<float>(position); };
  const auto& [x, y] = pen.Way.front();
  if (RefusedAt(ws, at(x), at(y))) return Refused("the pen does not begin on the picture");
  UsePen(ws, tool, at(x), at(y), pen.Size);
  for (std::size_t i = 1; i < pen.Way.size(); ++i)
    DragPen(ws.pen, ws.plot, at(pen.Way[i].X), at(pen.Way[i].Y));
  ReleasePen(ws.pen, ws.plot);
  return {};
}

}  // namespace

Outcome Run(Workspace& ws, const Desktop&, const DrawStep& step) {
  return MovePen(ws, PenTool::Draw, step);
}

Outcome Run(Workspace& ws, const Desktop&, const EraseStep& step) {
  return MovePen(ws, PenTool::Erase, step);
}

Outcome Run(Workspace& ws, const Desktop& desktop, GridStep& step) {
  const auto [x, y] = step.At.value_or(PlotPosition{-1, -1});
  if (step.At)
    if (auto refused = RefusedAt(ws, x, y)) return *refused;
  ws.window.Hourglass = true;
  ws.plot.PersistentDrawing = true;
  const GridRemoval removal = RemoveGridLines(ws.plot, ws.calibration, desktop, ws.status,
                                              step.Direction, step.All, ToInt16(x), ToInt16(y));
  ws.window.Hourglass = false;
  return removal.Pixels > 0 ? Outcome() : Nothing("there is no grid line");
}

bool CanUndoErase(const Workspace& ws) {
  return ws.plot.HasUndo;
}

Outcome Run(Workspace& ws, const Desktop&, const UndoEditStep&) {
  if (!CanUndoErase(ws)) return Nothing();
  UndoEdit(ws.plot);
  ws.status.Status = Tr("Undo completed");
  ws.plot.PersistentDrawing = true;
  // The edit modes show the picture alone; everywhere else a blocker must go on fencing.
  if (ws.mode != Mode::DrawErase && ws.mode != Mode::GridBuster)
    RedrawBlockers(ws.blockers, ws.plot, ws.settings);
  return {};
}

void StepIncrement(std::string& text, int step) {
  const double value = std::clamp(LeadingNumber(text), 0.0, 32767.0);
  text = std::to_string(std::clamp(static_cast<int>(value) + step, 0, 32767));
}

}  // namespace graphize
