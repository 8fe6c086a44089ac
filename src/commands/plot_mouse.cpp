#include "commands/plot_mouse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "capture/snap.h"
#include "commands/do.h"
#include "commands/extraction_commands.h"
#include "commands/ink_preview.h"
#include "commands/point_edit_commands.h"
#include "commands/preview_commands.h"
#include "commands/propose_axes_commands.h"
#include "commands/reference_commands.h"
#include "commands/symbol_preview.h"
#include "commands/toolbar.h"

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

/// How far a view from `start` on, `length` wide, has to move to reach a picture pixel: one jump at
/// most.
int StepTowards(double zoom, int pixel, int start, int length, int jump) {
  if (const int last = LastPlaceOf(zoom, pixel); last < start) return std::max(last - start, -jump);
  return std::clamp(FirstPlaceOf(zoom, pixel) - (start + length - 1), 0, jump);
}

/// A drag beyond the edge of what is seen takes the view with it.
void FollowDrag(Workspace& ws, float X, float Y) {
  const Viewport& view = ws.view;
  ScrollTo(ws.view,
           view.X + StepTowards(view.Zoom, ToInt32(X), view.X, view.Width,
                                std::max<int>(ws.settings.XJump, 1)),
           view.Y + StepTowards(view.Zoom, ToInt32(Y), view.Y, view.Height,
                                std::max<int>(ws.settings.YJump, 1)));
}

/// A message that is cleared stays readable in the panel beside it.
void ClearStatus(StatusBar& status) {
  if (!TrimRight(status.Status).empty() && status.Status != status.Passing)
    status.Hint = status.Status;
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

/// A position in whole pixels.
PlotPosition PixelUnder(float X, float Y) {
  return {static_cast<float>(ToInt16(X)), static_cast<float>(ToInt16(Y))};
}

/// Whether the last position lies within a pixel, which was asked for.
bool IsWithinPixel(const Workspace& ws) {
  const auto [x, y] = ws.store.CurrentPlace;
  return ws.settings.SubPixelClicks && (x != std::floor(x) || y != std::floor(y));
}

/// Whether the hand that holds the button has not moved on since the press was snapped.
bool StaysSnapped(Workspace& ws, int Button, float X, float Y) {
  PlotMouse& mouse = ws.mouse;
  const float way = std::abs(X - mouse.DownPixelX) + std::abs(Y - mouse.DownPixelY);
  mouse.Snapped =
      mouse.Snapped && (Button & kLeftButton) != 0 && way * ws.view.Zoom < ws.window.DragDistance;
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
  if (step.At)
    ws.calibration.Refined.Rows[static_cast<std::size_t>(step.Row)] = {
        step.At->Column, static_cast<float>(ws.plot.Height()) - step.At->Row, step.Sigma};
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
  FollowAxisSnap(ws, true);
  if (ws.mode == Mode::EditPoints && !ws.pointEdit.Pressed) PointNowhere(ws);
}

void Plot_MouseMove(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X,
                    float Y) {
  if (const int held = DraggingButton(ws); (Button & held) != held) EndDrag(ws);
  if (StaysSnapped(ws, Button, X, Y)) return;
  if (!ws.mouse.TraceRunning) ClearStatus(ws.status);
  ReadPlot(ws, desktop, X, Y);
  const auto [x, y] = PixelUnder(X, Y);
  if (ws.scanRectangle.Active) MoveScanCorner(ws.scanRectangle, x, y);
  DragPen(ws.pen, ws.plot, x, y);
  if (ws.mode == Mode::EditPoints) {
    PointTo(ws, X, Y);
    DragPoints(ws, desktop, X, Y);
  }
  if (DraggingButton(ws) != 0) FollowDrag(ws, X, Y);
  if (ws.mode == Mode::AxisDef) FocusArmedRow(ws.calibration, ws.axisPanel);
  FollowAxisSnap(ws, (Shift & kShiftKey) != 0);
}

void Plot_MouseDown(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X,
                    float Y) {
  if (ws.form == Form::Ink) return;  // the click picks an ink
  ShowModeHint(ws);
  const auto [x, y] = PixelUnder(X, Y);
  if (ws.mode == Mode::GridBuster) {
    if (Button == kLeftButton || Button == kRightButton)
      Do(ws, desktop,
         GridStep{Button == kLeftButton ? GridDirection::X : GridDirection::Y,
                  (Shift & kShiftKey) != 0,
                  PlotPosition{x, y},
                  {}});
    return;
  }
  if (Button == kRightButton && CanExtract(ws)) {
    if (ws.settings.Trace == 2) {
      ws.mouse.SuppressNextClick = true;
      StartScanRectangle(ws.scanRectangle, x, y);
    } else {
      Do(ws, desktop, TraceStep{x, y, {}});
    }
  }
  if (ws.mode == Mode::BlockTest && Button == kLeftButton) ws.mouse.Painting = true;
  if (IsReading(ws.mode) && Button == kRightButton) BlockReading(ws, desktop, X, Y);
  if (ws.mode == Mode::DrawErase && ws.plot.IsPresent() &&
      (Button == kLeftButton || Button == kRightButton))
    UsePen(ws, Button == kLeftButton ? PenTool::Draw : PenTool::Erase, x, y, ws.blockSize);
  if (ws.mode == Mode::EditPoints && Button == kLeftButton) PressPoint(ws, Shift, X, Y);
  ws.mouse.DownPixelX = ToInt16(X);
  ws.mouse.DownPixelY = ToInt16(Y);
  if (ws.mode != Mode::Graphize || Button != kLeftButton) return;
  ws.mouse.PressFailed = true;  // until it is seen not to
  const auto snapped = SnapToXY(ws.plot, x, y, ws.settings.SnapMode, ws.settings.SnapDistance);
  if (snapped) Plot_MouseMove(ws, desktop, 0, 0, snapped->X, snapped->Y);
  ws.mouse.Snapped = snapped.has_value();
  ws.mouse.PressFailed = false;
  ws.mouse.CapturePress = {ws.readOut.PlotX, ws.readOut.PlotY};
}

std::optional<PlotPixel> SnapAhead(const Workspace& ws) {
  const int x = ws.readOut.PlotX, y = ws.readOut.PlotY;
  if (ws.mode != Mode::Graphize || ws.mouse.TraceRunning || ws.mouse.Snapped ||
      !ws.plot.Contains(x, y))
    return std::nullopt;
  try {
    const auto at = SnapToXY(ws.plot, static_cast<float>(x), static_cast<float>(y),
                             ws.settings.SnapMode, ws.settings.SnapDistance);
    const PlotPixel pixel = at ? PlotPixel{ToInt32(at->X), ToInt32(at->Y)} : PlotPixel{x, y};
    if (pixel.X == x && pixel.Y == y) return std::nullopt;
    return pixel;
  } catch (const RunTimeError&) {
    return std::nullopt;  // the press will tell
  }
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
  if (ws.form == Form::Ink) return PickInk(ws, desktop, ws.readOut.PlotX, ws.readOut.PlotY);
  const float x = static_cast<float>(ws.readOut.PlotX), y = static_cast<float>(ws.readOut.PlotY);
  if (ClickProposedPlot(ws, desktop, ws.readOut.PlotX, ws.readOut.PlotY)) return;
  if (ws.mode == Mode::AxisDef) {
    const auto snap = std::exchange(ws.mouse.AxisSnap, std::nullopt);
    if (ws.reference.Armed)
      return AddReferenceAt(ws, desktop, snap ? snap->Column : x, snap ? snap->Row : y);
    if (MoveChosenReference(ws, desktop, snap ? snap->Column : x, snap ? snap->Row : y)) return;
    const int row = ws.calibration.CurrentRow;
    const AxisPanel::Row& typed = ws.axisPanel.Rows[row];
    AxisStep step{row, x, y, typed.XText, typed.YText};
    if (snap) step.At = {static_cast<float>(snap->Column), static_cast<float>(snap->Row)};
    Do(ws, desktop, std::move(step));
  } else if (ws.mode == Mode::Graphize) {
    const auto press = std::exchange(ws.mouse.CapturePress, std::nullopt);
    // A pointer that was moved since the press captures where it is, without snapping.
    if (IsWithinPixel(ws))
      Do(ws, desktop, PointStep{ws.store.CurrentPlace.Column, ws.store.CurrentPlace.Row});
    else if (press && press->X == ws.readOut.PlotX && press->Y == ws.readOut.PlotY)
      Do(ws, desktop,
         CaptureStep{static_cast<float>(ws.mouse.DownPixelX),
                     static_cast<float>(ws.mouse.DownPixelY)});
    else
      Do(ws, desktop, PointStep{x, y});
  } else if (ws.mode == Mode::BlockTest) {
    PlaceBlocker(ws, desktop);
  } else if (ws.mode == Mode::ReadCurve) {
    ClickCurve(ws, desktop, ws.readOut.PlotX, ws.readOut.PlotY);
  } else if (ws.mode == Mode::FindSymbols) {
    ClickSymbol(ws, desktop, ws.readOut.PlotX, ws.readOut.PlotY);
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
  const int left = PixelAt(view.Zoom, view.X), top = PixelAt(view.Zoom, view.Y);
  const int right = std::min(PixelAt(view.Zoom, view.X + view.Width - 1), ws.plot.Width() - 1);
  const int bottom = std::min(PixelAt(view.Zoom, view.Y + view.Height - 1), ws.plot.Height() - 1);
  const int x = ws.readOut.PlotX, y = ws.readOut.PlotY;
  const bool seen = x > left && x < right && y > top && y < bottom;
  const bool moved =
      seen ? desktop.PointAt(x, y) : desktop.PointAt((left + right) / 2, (top + bottom) / 2);
  if (!moved) ws.status.Status = kPointerStays;
}

void StepZoom(Workspace& ws, int step) {
  ws.zoom.Factor = std::clamp(ws.zoom.Factor + step, ZoomWindow::kMinimum, ZoomWindow::kMaximum);
}

}  // namespace graphize
