#include "workspace/plot_mouse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "capture/snap.h"
#include "workspace/do.h"
#include "workspace/extraction_commands.h"
#include "workspace/point_edit_commands.h"
#include "workspace/toolbar.h"

namespace graphize {

namespace {

constexpr const char* kPointerStays = Marked("This desktop does not let programs move the pointer");

/// The button that a drag on the picture holds down; 0 without one.
int DraggingButton(const Workspace& ws) {
  if (ws.scanRectangle.Active) return kRightButton;
  if (ws.pen.Down) return ws.pen.Tool == PenTool::Draw ? kLeftButton : kRightButton;
  if (ws.pointEdit.Pressed) return kLeftButton;
  return 0;
}

/// How far a view from `start` on, `length` wide, has to move to reach `position`: one jump at
/// most.
int StepTowards(int position, int start, int length, int jump) {
  if (position < start) return std::max(position - start, -jump);
  return std::clamp(position - (start + length - 1), 0, jump);
}

/// A drag beyond the edge of what is seen takes the view with it.
void FollowDrag(Workspace& ws, float X, float Y) {
  const Viewport& view = ws.view;
  ScrollTo(
      ws.view,
      view.X + StepTowards(ToInt32(X), view.X, view.Width, std::max<int>(ws.settings.XJump, 1)),
      view.Y + StepTowards(ToInt32(Y), view.Y, view.Height, std::max<int>(ws.settings.YJump, 1)));
}

/// A message that is cleared stays readable in the panel beside it.
void ClearStatus(StatusBar& status) {
  if (!TrimRight(status.Status).empty()) status.Hint = status.Status;
  status.Status = " ";
}

/// Captures at the cursor. Without values there, there is nothing to capture but what was read
/// before.
Outcome CaptureHere(Workspace& ws, const Desktop& desktop) {
  if (!ws.mouse.ReadFault.empty()) {
    Tell(desktop, ws.mouse.ReadFault, MessageIcon::Critical);
    return Refused("the axes give no values here");
  }
  if (AddPoint(ws.store, ws.commands, desktop, true)) return Refused("the store is full");
  return {.Points = 1};
}

std::optional<Outcome> CaptureRefused(const Workspace& ws, float x, float y) {
  if (ws.mode != Mode::Graphize) return Refused("points need the mode \"graphize\"");
  return RefusedAt(ws, x, y);
}

/// Whether the hand that holds the button has not moved on since the press was snapped.
bool StaysSnapped(Workspace& ws, int Button, float X, float Y) {
  PlotMouse& mouse = ws.mouse;
  const float way = std::abs(X - mouse.DownPixelX) + std::abs(Y - mouse.DownPixelY);
  mouse.Snapped = mouse.Snapped && (Button & kLeftButton) != 0 &&
                  way < static_cast<float>(ws.window.DragDistance);
  return mouse.Snapped;
}

}  // namespace

Outcome Run(Workspace& ws, const Desktop& desktop, AxisStep& step) {
  if (auto refused = RefusedAt(ws, step.X, step.Y)) return *refused;
  if (ws.mode != Mode::AxisDef || ws.calibration.CurrentRow != step.Row)
    return Refused("this axis point is not the next one");
  ReadPlot(ws, desktop, step.X, step.Y);
  ws.axisPanel.Rows[step.Row].XText = step.XText;
  ws.axisPanel.Rows[step.Row].YText = step.YText;
  if (!DefineAxis(ws.calibration, ws.axisPanel, ws.commands, desktop, step.Row,
                  ws.store.CurrentPixelX, ws.store.CurrentPixelY))
    return Refused("the axis point was refused");
  ws.map.OfAxisPoints[step.Row] = ws.map.Shown;
  step.XText = ws.axisPanel.Rows[step.Row].XText;  // the number that was read
  step.YText = ws.axisPanel.Rows[step.Row].YText;
  // What is wrong with the row's value has been told.
  const char* fault = LogPointFault(ws.calibration);
  ws.mouse.FaultTold = fault != nullptr ? fault : "";
  if (step.Row < 2) ++ws.calibration.CurrentRow;
  ShowModeHint(ws);
  return {};
}

Outcome Run(Workspace& ws, const Desktop& desktop, const CaptureStep& step) {
  if (auto refused = CaptureRefused(ws, step.X, step.Y)) return *refused;
  const auto snapped =
      SnapToXY(ws.plot, step.X, step.Y, ws.settings.SnapMode, ws.settings.SnapDistance);
  const SnappedPosition at = snapped.value_or(SnappedPosition{step.X, step.Y});
  ReadPlot(ws, desktop, at.X, at.Y);
  return CaptureHere(ws, desktop);
}

Outcome Run(Workspace& ws, const Desktop& desktop, const PointStep& step) {
  if (auto refused = CaptureRefused(ws, step.X, step.Y)) return *refused;
  ReadPlot(ws, desktop, step.X, step.Y);
  return CaptureHere(ws, desktop);
}

void EndDrag(Workspace& ws) {
  ws.scanRectangle.Active = false;
  // What the pen has changed by now stays.
  if (ws.pen.Down && ws.pen.Begun) NotePen(ws);
  ws.pen.Down = false;
  EndPointDrag(ws);
  ws.mouse.Painting = false;
  ws.mouse.SuppressNextClick = false;
  ws.mouse.Snapped = false;
}

bool GiveUpDrag(Workspace& ws) {
  if (!ws.scanRectangle.Active && !ws.pointEdit.Dragged) return false;
  EndDrag(ws);
  return true;
}

void ReadPlot(Workspace& ws, const Desktop& desktop, float X, float Y) {
  std::string told;
  Desktop reader = desktop;
  reader.ShowMessage = [&told](const Message& message) {
    told = message.Text;
    return Answer::Ok;
  };
  ws.mouse.ReadFault.clear();
  try {
    ReadCursor(ws.readOut, ws.axisPanel, ws.store, ws.calibration, reader, ws.plot.Height(), X, Y);
  } catch (const RunTimeError& error) {
    told = error.what();
  }
  // With two log axes the refusal is silent.
  const char* origin = ws.calibration.IsComplete() ? LogOriginFault(ws.calibration) : nullptr;
  ws.mouse.ReadFault = told.empty() && origin != nullptr ? origin : told;
  if (ws.mouse.ReadFault.empty()) return;
  ws.status.Status = ws.mouse.ReadFault;
  if (told.empty() || std::exchange(ws.mouse.FaultTold, told) == told) return;
  Tell(desktop, told, MessageIcon::Critical);
}

void Plot_MouseEnter(Workspace& ws, const Desktop& desktop, float X, float Y) {
  if (ws.plot.IsPresent()) ReadPlot(ws, desktop, X, Y);
}

void Plot_MouseLeave(Workspace& ws) {
  ws.mouse.FaultTold.clear();
  if (ws.mode == Mode::EditPoints && !ws.pointEdit.Pressed) PointNowhere(ws);
}

void Plot_MouseMove(Workspace& ws, const Desktop& desktop, int Button, int /*Shift*/, float X,
                    float Y) {
  if (const int held = DraggingButton(ws); (Button & held) != held) EndDrag(ws);
  if (StaysSnapped(ws, Button, X, Y)) return;
  if (!ws.mouse.TraceRunning) ClearStatus(ws.status);
  ReadPlot(ws, desktop, X, Y);
  if (ws.scanRectangle.Active) MoveScanCorner(ws.scanRectangle, X, Y);
  DragPen(ws.pen, ws.plot, X, Y);
  if (ws.mode == Mode::EditPoints) {
    PointTo(ws, X, Y);
    DragPoints(ws, desktop, X, Y);
  }
  if (DraggingButton(ws) != 0) FollowDrag(ws, X, Y);
  if (ws.mode == Mode::AxisDef) FocusArmedRow(ws.calibration, ws.axisPanel);
}

void Plot_MouseDown(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X,
                    float Y) {
  ShowModeHint(ws);
  if (ws.mode == Mode::GridBuster) {
    if (Button == kLeftButton || Button == kRightButton)
      Do(ws, desktop,
         GridStep{Button == kLeftButton ? GridDirection::X : GridDirection::Y,
                  (Shift & kShiftKey) != 0,
                  PlotPosition{X, Y},
                  {}});
    return;
  }
  if (Button == kRightButton && CanExtract(ws)) {
    if (ws.settings.Trace == 2) {
      ws.mouse.SuppressNextClick = true;
      StartScanRectangle(ws.scanRectangle, X, Y);
    } else {
      Do(ws, desktop, TraceStep{X, Y, {}});
    }
  }
  if (ws.mode == Mode::BlockTest && Button == kLeftButton) ws.mouse.Painting = true;
  if (ws.mode == Mode::DrawErase && ws.plot.IsPresent() &&
      (Button == kLeftButton || Button == kRightButton))
    UsePen(ws, Button == kLeftButton ? PenTool::Draw : PenTool::Erase, X, Y, ws.blockSize);
  if (ws.mode == Mode::EditPoints && Button == kLeftButton) PressPoint(ws, Shift, X, Y);
  ws.mouse.DownPixelX = ToInt16(X);
  ws.mouse.DownPixelY = ToInt16(Y);
  if (ws.mode != Mode::Graphize || Button != kLeftButton) return;
  ws.mouse.PressFailed = true;  // until it is seen not to
  const auto snapped = SnapToXY(ws.plot, X, Y, ws.settings.SnapMode, ws.settings.SnapDistance);
  if (snapped) Plot_MouseMove(ws, desktop, 0, 0, snapped->X, snapped->Y);
  ws.mouse.Snapped = snapped.has_value();
  ws.mouse.PressFailed = false;
  ws.mouse.CapturePress = {ws.readOut.PlotX, ws.readOut.PlotY};
}

void Plot_MouseUp(Workspace& ws, const Desktop& desktop, int Button, int /*Shift*/, float /*X*/,
                  float /*Y*/) {
  if (Button == kRightButton && ws.scanRectangle.Active) FinishScanRectangle(ws, desktop);
  if (Button == kLeftButton && ws.pointEdit.Pressed) ReleasePoints(ws, desktop);
  if (ws.pen.Down && Button == DraggingButton(ws)) {
    ReleasePen(ws.pen, ws.plot);
    NotePen(ws);
  }
}

void Plot_Click(Workspace& ws, const Desktop& desktop) {
  if (ws.mouse.TraceRunning) return;
  if (std::exchange(ws.mouse.SuppressNextClick, false)) return;
  if (std::exchange(ws.mouse.PressFailed, false)) return;
  const float x = static_cast<float>(ws.readOut.PlotX), y = static_cast<float>(ws.readOut.PlotY);
  if (ws.mode == Mode::AxisDef) {
    const int row = ws.calibration.CurrentRow;
    const AxisPanel::Row& typed = ws.axisPanel.Rows[row];
    Do(ws, desktop, AxisStep{row, x, y, typed.XText, typed.YText});
  } else if (ws.mode == Mode::Graphize) {
    const auto press = std::exchange(ws.mouse.CapturePress, std::nullopt);
    // A pointer that was moved since the press captures where it is, without snapping.
    if (press && press->X == ws.readOut.PlotX && press->Y == ws.readOut.PlotY)
      Do(ws, desktop,
         CaptureStep{static_cast<float>(ws.mouse.DownPixelX),
                     static_cast<float>(ws.mouse.DownPixelY)});
    else
      Do(ws, desktop, PointStep{x, y});
  } else if (ws.mode == Mode::BlockTest) {
    PlaceBlocker(ws, desktop);
  }
}

void Plot_DblClick(Workspace& ws, const Desktop& desktop) {
  if (ws.mode != Mode::AxisDef) Plot_Click(ws, desktop);
}

bool MovePointerByKey(Workspace& ws, const Desktop& desktop, PointerKey key, int Shift) {
  static constexpr std::array<std::pair<int, int>, 8> kMoves = {
      {{1, -1}, {1, 1}, {-1, 1}, {-1, -1}, {-1, 0}, {0, -1}, {1, 0}, {0, 1}}};
  if (!desktop.PointerOverPlot()) return false;
  const int step = Shift == kCtrlKey ? 10 : 1;
  const auto [x, y] = kMoves[static_cast<std::size_t>(key)];
  if (!desktop.MovePointer(x * step, y * step)) ws.status.Status = Tr(kPointerStays);
  return true;
}

bool CanPutPointer(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void PutPointer(Workspace& ws, const Desktop& desktop) {
  const Viewport& view = ws.view;
  const int right = std::min(view.X + view.Width, ws.plot.Width()) - 1;
  const int bottom = std::min(view.Y + view.Height, ws.plot.Height()) - 1;
  const int x = ws.readOut.PlotX, y = ws.readOut.PlotY;
  const bool seen = x > view.X && x < right && y > view.Y && y < bottom;
  const bool moved =
      seen ? desktop.PointAt(x, y) : desktop.PointAt((view.X + right) / 2, (view.Y + bottom) / 2);
  if (!moved) ws.status.Status = Tr(kPointerStays);
}

void StepZoom(Workspace& ws, int step) {
  ws.zoom.Factor = std::clamp(ws.zoom.Factor + step, ZoomWindow::kMinimum, ZoomWindow::kMaximum);
}

}  // namespace graphize
