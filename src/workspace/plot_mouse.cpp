#include "workspace/plot_mouse.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/numbers.h"
#include "capture/snap.h"
#include "workspace/extraction_commands.h"

namespace graphize {

namespace {

/// The button that a drag on the picture holds down; 0 without one.
int DraggingButton(const Workspace& ws) {
  if (ws.scanRectangle.Active) return kRightButton;
  if (ws.pen.Down) return ws.pen.Tool == PenTool::Draw ? kLeftButton : kRightButton;
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

void NotePen(Workspace& ws) {
  std::string step =
      (ws.pen.Tool == PenTool::Draw ? "draw " : "erase ") + std::to_string(ws.pen.BlockSize);
  for (const auto& [x, y] : ws.pen.Way) step += " " + std::to_string(x) + "," + std::to_string(y);
  NoteStep(ws, step);
}

/// Without values under the cursor there is nothing to capture but what was read before. With two
/// log axes the reading itself has told nothing.
bool CanReadHere(const Workspace& ws, const Desktop& desktop) {
  const char* fault = LogOriginFault(ws.calibration);
  if (fault == nullptr) return true;
  if (ws.calibration.XLog && ws.calibration.YLog) Tell(desktop, fault, MessageIcon::Critical);
  return false;
}

void NoteAxis(Workspace& ws, int row) {
  const AxisCalibration& axes = ws.calibration;
  NoteStep(ws, "axis " + std::to_string(row) + " " +
                   PositionText(static_cast<float>(ws.readOut.PlotX),
                                static_cast<float>(ws.readOut.PlotY)) +
                   " " + ShortestText(axes.ValueX[row]) + " " + ShortestText(axes.ValueY[row]));
}

}  // namespace

void EndDrag(Workspace& ws) {
  ws.scanRectangle.Active = false;
  // What the pen has changed by now stays.
  if (ws.pen.Down && (ws.pen.Tool == PenTool::Draw || ws.pen.Way.size() > 1)) NotePen(ws);
  ws.pen.Down = false;
  ws.mouse.Painting = false;
  ws.mouse.SuppressNextClick = false;
}

void Plot_MouseMove(Workspace& ws, const Desktop& desktop, int Button, int /*Shift*/, float X,
                    float Y) {
  if (const int held = DraggingButton(ws); (Button & held) != held) EndDrag(ws);
  if (!ws.mouse.TraceRunning) ws.status.Status = " ";
  ReadCursor(ws.readOut, ws.axisPanel, ws.store, ws.calibration, desktop, ws.plot.Height(), X, Y);
  if (ws.scanRectangle.Active) MoveScanCorner(ws.scanRectangle, X, Y);
  DragPen(ws.pen, ws.plot, X, Y);
  if (DraggingButton(ws) != 0) FollowDrag(ws, X, Y);
  if (ws.mode == Mode::AxisDef) FocusArmedRow(ws.calibration, ws.axisPanel);
}

void Plot_MouseDown(Workspace& ws, const Desktop& desktop, int Button, int Shift, float X,
                    float Y) {
  if (ws.mode == Mode::GridBuster) {
    if (Button == kLeftButton || Button == kRightButton)
      BustGrid(ws, desktop, Button == kLeftButton ? GridDirection::X : GridDirection::Y,
               (Shift & kShiftKey) != 0, X, Y);
    return;
  }
  if (Button == kRightButton && CanExtract(ws)) {
    if (ws.settings.Trace == 2) {
      ws.mouse.SuppressNextClick = true;
      StartScanRectangle(ws.scanRectangle, X, Y);
    } else {
      Trace(ws, desktop, X, Y);
    }
  }
  if (ws.mode == Mode::BlockTest && Button == kLeftButton) ws.mouse.Painting = true;
  if (ws.mode == Mode::DrawErase && ws.plot.IsPresent() &&
      (Button == kLeftButton || Button == kRightButton))
    UsePen(ws, Button == kLeftButton ? PenTool::Draw : PenTool::Erase, X, Y, ws.blockSize);
  ws.mouse.DownPixelX = ToInt16(X);
  ws.mouse.DownPixelY = ToInt16(Y);
  if (ws.mode != Mode::Graphize || Button != kLeftButton) return;
  ws.mouse.PressFailed = true;  // until it is seen not to
  const auto snapped = SnapToXY(ws.plot, X, Y, ws.settings.SnapMode, ws.settings.SnapDistance);
  if (snapped) Plot_MouseMove(ws, desktop, 0, 0, snapped->X, snapped->Y);
  ws.mouse.PressFailed = false;
  ws.mouse.CapturePress = {ws.readOut.PlotX, ws.readOut.PlotY};
}

void Plot_MouseUp(Workspace& ws, const Desktop& desktop, int Button, int /*Shift*/, float /*X*/,
                  float /*Y*/) {
  if (Button == kRightButton && ws.scanRectangle.Active) FinishScanRectangle(ws, desktop);
  if (ws.pen.Down && Button == DraggingButton(ws)) {
    ReleasePen(ws.pen, ws.plot);
    NotePen(ws);
  }
}

void Plot_Click(Workspace& ws, const Desktop& desktop) {
  if (ws.mouse.TraceRunning) return;
  if (std::exchange(ws.mouse.SuppressNextClick, false)) return;
  if (std::exchange(ws.mouse.PressFailed, false)) return;
  if (ws.mode == Mode::AxisDef) {
    AxisCalibration& calibration = ws.calibration;
    const int row = calibration.CurrentRow;
    if (!DefineAxis(calibration, ws.axisPanel, ws.commands, desktop, row)) return;
    NoteAxis(ws, row);
    if (row < 2) ++calibration.CurrentRow;
  } else if (ws.mode == Mode::Graphize) {
    const auto press = std::exchange(ws.mouse.CapturePress, std::nullopt);
    if (!CanReadHere(ws, desktop)) return;
    if (AddPoint(ws.store, ws.commands, desktop, true)) return;
    // A pointer that was moved since the press captures where it is, without snapping.
    const PlotPixel at{ws.readOut.PlotX, ws.readOut.PlotY};
    press && press->X == at.X && press->Y == at.Y
        ? NoteStep(ws, "capture " + PositionText(ws.mouse.DownPixelX, ws.mouse.DownPixelY))
        : NoteStep(ws, "point " + PositionText(static_cast<float>(at.X), static_cast<float>(at.Y)));
  } else if (ws.mode == Mode::BlockTest) {
    PlaceBlocker(ws);
  }
}

bool MovePointerByKey(Workspace& ws, const Desktop& desktop, PointerKey key, int Shift) {
  static constexpr std::array<std::pair<int, int>, 8> kMoves = {
      {{1, -1}, {1, 1}, {-1, 1}, {-1, -1}, {-1, 0}, {0, -1}, {1, 0}, {0, 1}}};
  if (!desktop.PointerOverPlot()) return false;
  const int step = Shift == kCtrlKey ? 10 : 1;
  const auto [x, y] = kMoves[static_cast<std::size_t>(key)];
  if (!desktop.MovePointer(x * step, y * step))
    ws.status.Status = "This desktop does not let programs move the pointer";
  return true;
}

void StepZoom(Workspace& ws, int step) {
  ws.zoom.Factor = std::clamp(ws.zoom.Factor + step, ZoomWindow::kMinimum, ZoomWindow::kMaximum);
}

}  // namespace graphize
