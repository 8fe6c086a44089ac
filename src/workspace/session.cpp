#include "workspace/session.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "base/run_time_error.h"
#include "extraction/tracer_control.h"
#include "settings/settings_store.h"
#include "workspace/save_points.h"
#include "workspace/toolbar.h"

namespace graphize {

namespace {

/// What was wrong with the settings, in one message; nothing when all was well.
void TellNotes(const Desktop& desktop, const std::vector<std::string>& notes) {
  if (notes.empty()) return;
  std::string text;
  for (const std::string& note : notes) text += (text.empty() ? "" : "\r\n") + note;
  Tell(desktop, text, MessageIcon::Exclamation);
}

/// The default place of the window; nothing, and a note, on a screen too large for one.
std::optional<WindowPlacement> PlacementFor(const WindowFrame& window) {
  try {
    return DefaultPlacement(window.ScreenWidth, window.ScreenHeight);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

/// Patterns and list follow the settings. Settings that make no pattern leave the last ones.
void ApplyFormats(Workspace& ws, std::vector<std::string>& notes) {
  try {
    BuildFormats(ws.settings, ws.formats);
  } catch (const RunTimeError& error) {
    notes.push_back(error.what());
  }
  ShowPage(ws.store);
}

}  // namespace

void StartUp(Workspace& ws, const Desktop& desktop) {
  Get_INI(ws, desktop);
  ws.status.Status.clear();
  InitAxisDefFrame(ws.calibration, ws.axisPanel);
  ws.axisPanel.Focus = FocusTarget::None;
  ShowFrame(ws, "graphize");
  ClearList(ws.store);
}

bool MayClose(Workspace& ws, const Desktop& desktop) {
  if (ws.store.ListCount < 1) return true;
  switch (desktop.ShowMessage({.Text = "Do you want to save graphized points ?",
                               .Icon = MessageIcon::Question,
                               .Buttons = MessageButtons::YesNoCancel})) {
    case Answer::Yes: return SavePoints(ws, desktop);  // nothing is lost by a failed save
    case Answer::No: return true;
    default: return false;
  }
}

void Get_INI(Workspace& ws, const Desktop& desktop) {
  std::vector<std::string> notes;
  const SettingsFile file = ReadSettingsFile(ws.settingsPath);
  ReadSettings(file, ws.settings, notes);
  ApplyFormats(ws, notes);
  SetTraceType(ws.tracer, ws.settings.Trace);
  ws.commands.ShowLastPoint = ReadLastPoint(file);
  ReadPlacement(file, PlacementFor(ws.window), ws.window.Placement, notes);
  ws.window.PlacementAsked = true;
  TellNotes(desktop, notes);
}

void Write_INI(Workspace& ws) {
  SettingsFile file = ReadSettingsFile(ws.settingsPath);
  WriteSettings(file, ws.settings, ws.commands.ShowLastPoint, ws.commands.Overlay,
                ws.window.Placement);
  try {
    SaveSettingsFile(ws.settingsPath, file);
  } catch (const RunTimeError& error) {
    ws.status.Status = error.what();
  }
}

void DefaultSettings(Workspace& ws) {
  ResetSettings(ws.settings);
  ws.commands.ShowLastPoint = true;
  ws.commands.Overlay = false;
  SetTraceType(ws.tracer, ws.settings.Trace);
  ws.blockSize = 4;
  BuildFormats(ws.settings, ws.formats);
  ShowPage(ws.store);
  if (const auto placement = PlacementFor(ws.window)) ws.window.Placement = *placement;
  ws.window.Placement.State = WindowState::Maximised;
  ws.window.PlacementAsked = true;
}

}  // namespace graphize
