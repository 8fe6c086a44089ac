#include "commands/start_and_close.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "base/joined.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/save_points.h"
#include "commands/toolbar.h"
#include "settings/language.h"
#include "settings/scanner_source.h"
#include "settings/settings_store.h"
#include "tracing/tracer_control.h"

namespace graphize {

namespace {

/// The default place of the window; nothing, and a note, on a screen too large for one.
std::optional<WindowPlacement> PlacementFor(const WindowFrame& window) {
  try {
    return DefaultPlacement(window.ScreenWidth, window.ScreenHeight);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

/// A screen too large for a default place is nothing to answer a box for at every start: it is told
/// in the status panel.
void ReadWindowPlacement(Workspace& ws, const SettingsFile& file, std::vector<std::string>& notes) {
  const std::optional<WindowPlacement> defaults = PlacementFor(ws.window);
  std::vector<std::string> placementNotes;
  ReadPlacement(file, defaults, ws.window.Placement, placementNotes);
  ws.window.PlacementAsked = true;
  if (defaults)
    notes.insert(notes.end(), placementNotes.begin(), placementNotes.end());
  else
    ws.status.Status = Joined(placementNotes, " ");
}

/// Patterns and list follow the settings. Numbers of places that make no pattern are told, and
/// their defaults used.
void ApplyFormats(Workspace& ws, std::vector<std::string>& notes) {
  try {
    BuildFormats(ws.settings, ws.formats);
  } catch (const RunTimeError& error) {
    notes.push_back(std::string(error.what()) + " " + Tr("The default is used."));
    Settings& settings = ws.settings;
    const auto repair = [](std::int16_t& places, int least, std::int16_t byDefault) {
      if (places < least || places > kMaxPlaces) places = byDefault;
    };
    repair(settings.XDigits, 1, Settings().XDigits);
    repair(settings.YDigits, 1, Settings().YDigits);
    repair(settings.XDecimals, 0, Settings().XDecimals);
    repair(settings.YDecimals, 0, Settings().YDecimals);
    BuildFormats(settings, ws.formats);
  }
  ShowPage(ws.store);
}

}  // namespace

void StartUp(Workspace& ws, const Desktop& desktop) {
  ws.status.Status.clear();
  Get_INI(ws, desktop);
  // No option: what was chosen since stays when the settings are read again.
  ws.scanner.Source = ReadScannerSource(ReadSettingsFile(ws.settingsPath));
  InitAxisDefFrame(ws.calibration, ws.axisPanel);
  ws.axisPanel.Focus = FocusTarget::None;
  ShowFrame(ws, "graphize");
  ClearList(ws.store);
}

namespace {

std::vector<std::string> UnsavedNames(const Workspace& ws) {
  std::vector<std::string> names;
  for (const int curve : UnsavedCurves(ws.curves, ws.store))
    names.push_back(ws.curves.Curves[curve].Name);
  return names;
}

/// Each into a data file of its own.
bool SaveCurves(Workspace& ws, const Desktop& desktop, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    Do(ws, desktop, SelectCurveStep{name});
    if (ws.store.ListCount < 1) Do(ws, desktop, UndoListStep{});
    if (!SavePoints(ws, desktop)) return false;
  }
  return true;
}

}  // namespace

bool MayClose(Workspace& ws, const Desktop& desktop) {
  const std::vector<std::string> unsaved = UnsavedNames(ws);
  if (unsaved.empty()) return true;
  std::string which;
  if (ws.curves.Curves.size() > 1) which = "\r\n\r\n" + Tr("Not saved: %1.", Joined(unsaved, ", "));
  switch (desktop.ShowMessage({.Text = Tr("Do you want to save graphized points ?") + which,
                               .Icon = MessageIcon::Question,
                               .Buttons = MessageButtons::YesNoCancel})) {
    case Answer::Yes:
      return SaveCurves(ws, desktop, unsaved);  // nothing is lost by a failed save
    case Answer::No:
      return true;
    default:
      return false;
  }
}

void Get_INI(Workspace& ws, const Desktop& desktop) {
  std::vector<std::string> notes;
  const SettingsFile file = ReadSettingsFile(ws.settingsPath);
  ReadSettings(file, ws.settings, notes);
  ws.language = ReadLanguage(file);
  ApplyFormats(ws, notes);
  SetTraceType(ws.tracer, ws.settings.Trace);
  ws.commands.ShowLastPoint = ReadLastPoint(file);
  ReadWindowPlacement(ws, file, notes);
  if (!notes.empty()) Tell(desktop, Joined(notes, "\r\n"), MessageIcon::Exclamation);
}

bool Write_INI(Workspace& ws) {
  SettingsFile file = ReadSettingsFile(ws.settingsPath);
  WriteSettings(file, ws.settings, ws.commands.ShowLastPoint, ws.commands.Overlay,
                ws.window.Placement);
  try {
    SaveSettingsFile(ws.settingsPath, file);
  } catch (const RunTimeError& error) {
    ws.status.Status = error.what();
    return false;
  }
  return true;
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
