#include "commands/toolbar.h"

#include <array>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/capture_commands.h"
#include "commands/do.h"
#include "commands/extraction_commands.h"
#include "commands/options_commands.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/reference_commands.h"
#include "commands/save_points.h"
#include "commands/scan_commands.h"
#include "data/point_edit.h"

namespace graphize {

namespace {

/// Leaves persistent drawing: capture and trace marks are overlays again.
void LeaveEdit(Workspace& ws) {
  if (!ws.plot.PersistentDrawing) return;
  ws.plot.PersistentDrawing = false;
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
}

/// The marks of tests would hide the curve from the capture that follows; blockers stay.
void LeaveMode(Workspace& ws) {
  if (ws.mode == Mode::EditPoints) SelectPoints(ws.store, {});
  // Its prompt holds for its own clicks alone.
  if (ws.mode == Mode::GridBuster && ws.status.Status == Tr(ModeHint(Mode::GridBuster)))
    ws.status.Status = " ";
  if (ws.mode != Mode::BlockTest) return;
  ClearMarks(ws.plot);
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
}

void EnterEditMode(Workspace& ws, std::string_view key) {
  ShowFrame(ws, "graphize");
  ClearMarks(ws.plot);
  ws.plot.PersistentDrawing = true;
  if (key == "gridbuster") ws.status.Status = Tr(ModeHint(Mode::GridBuster));
}

void EnterMode(Workspace& ws, const Desktop& desktop, std::string_view key) {
  if (ModeOfKey(key) != ws.mode) LeaveMode(ws);
  ws.mode = ModeOfKey(key);
  if (ws.mode != Mode::AxisDef) ShowModeHint(ws);
  if (ws.mode == Mode::DrawErase || ws.mode == Mode::GridBuster) return EnterEditMode(ws, key);
  LeaveEdit(ws);
  ShowFrame(ws, key);
  // The marks that captures have left would stand where points no longer are.
  if (ws.mode == Mode::EditPoints) RefreshPlot(ws);
  if (ws.mode == Mode::Graphize) ChooseErrorDisplay(ws, desktop);
  if (ws.mode == Mode::AxisDef) {
    // A definition that was begun goes on: only an empty one is started.
    if (!HasBegun(ws.calibration, ws.axisPanel)) InitAxisDefFrame(ws.calibration, ws.axisPanel);
    FocusArmedRow(ws.calibration, ws.axisPanel);
    ShowModeHint(ws);
  }
}

/// For the row that the next click defines.
std::string AxisHint(const AxisCalibration& calibration) {
  constexpr std::array<const char*, 3> kRows = {Marked("Origin:"), Marked("X Axis:"),
                                                Marked("Y Axis:")};
  const auto row = static_cast<std::size_t>(calibration.CurrentRow);
  return Tr(kRows.at(row)) + " " + Tr(ModeHint(Mode::AxisDef));
}

}  // namespace

void ShowModeHint(Workspace& ws) {
  if (ws.mode == Mode::None) return ws.status.Hint.clear();
  if (ws.mode == Mode::AxisDef && ws.reference.Armed) {
    ws.status.Hint = Tr("Enter X, Y or both of a place and click there; Shift: without snapping");
    return;
  }
  if (ws.mode == Mode::AxisDef && ws.reference.Chosen >= 0 && CanAddReference(ws)) {
    ws.status.Hint = Tr("A click moves the chosen reference there; Shift: without snapping");
    return;
  }
  if (ws.mode != Mode::AxisDef)
    ws.status.Hint = Tr(ModeHint(ws.mode));
  else if (!ws.calibration.IsComplete())
    ws.status.Hint = AxisHint(ws.calibration);
  else if (HasOldValues(ws))
    ws.status.Hint = Tr("Points have values of other axes: see Edit, Recalculate Points");
  else
    ws.status.Hint = Instruction(ws.axisPanel);
}

bool CanPress(const Workspace& ws, std::string_view key) {
  const CommandStates& can = ws.commands;
  if (key == "open" || key == "paste" || key == "setup") return true;
  if (key == "save" || key == "copy" || key == "delete") return can.Data;
  if (key == "undo") return can.Blockers;
  if (key == "aquire") return can.Scanner;
  if (key == "refresh" || key == "axisdef" || key == "blocktest" || key == "drawerase" ||
      key == "editpoints" || key == "readcurve" || key == "findsymbols")
    return can.Picture;
  if (key == "graphize") return can.Graphize;
  if (key == "gridbuster") return can.GridBuster;
  return false;
}

bool IsPressed(const Workspace& ws, std::string_view key) {
  return ws.mode != Mode::None && ModeKey(ws.mode) == key;
}

void Toolbar_ButtonClick(Workspace& ws, const Desktop& desktop, std::string_view key) {
  EndDrag(ws);
  if (key == "open") return OpenImage(ws, desktop);
  if (key == "save") return SavePoints(ws, desktop), void();
  if (key == "copy") return CopyPoints(ws, desktop);
  if (key == "paste") return PasteImage(ws, desktop);
  if (key == "setup") return ShowOptions(ws);
  if (key == "refresh") return Do(ws, desktop, RefreshStep{}), void();
  if (key == "undo") {
    LeaveEdit(ws);
    return Do(ws, desktop, ClearLastBlockerStep{}), void();
  }
  if (key == "delete") {
    LeaveEdit(ws);
    return Do(ws, desktop, ClearDataStep{.Ask = true}), void();
  }
  if (key == "aquire") {
    LeaveEdit(ws);
    return Aquire(ws, desktop);
  }
  if (ModeOfKey(key) != Mode::None) Do(ws, desktop, ModeStep{ModeOfKey(key)});
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ModeStep& step) {
  if (step.To == Mode::None) {
    LeaveMode(ws);
    ws.mode = Mode::None;
    ws.status.Hint.clear();
    return {};
  }
  const std::string key(ModeKey(step.To));
  if (!CanPress(ws, key))
    return Refused(step.To == Mode::Graphize || step.To == Mode::GridBuster
                       ? Tr("the mode \"%1\" needs a picture and its axes", key)
                       : Tr("the mode \"%1\" needs a picture", key));
  EnterMode(ws, desktop, key);
  return {};
}

void ReleaseButtons(Workspace& ws, const Desktop& desktop) {
  EndDrag(ws);
  if (ws.mode != Mode::None) Do(ws, desktop, ModeStep{Mode::None});
}

Outcome Run(Workspace& ws, const Desktop&, const RefreshStep&) {
  RefreshPlot(ws);
  return {};
}

void ShowFrame(Workspace& ws, std::string_view key) {
  ws.window.AxisPanelShown = LowerCase(key) == "axisdef";
}

void RefreshPlot(Workspace& ws) {
  if (IsPressed(ws, "drawerase") && IsPressed(ws, "gridbuster")) return;
  ClearMarks(ws.plot);
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
  // Overlay and last-point marker are painted above the raster: the whole view shows them anew.
  ws.marksDirty = {0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1};
}

}  // namespace graphize
