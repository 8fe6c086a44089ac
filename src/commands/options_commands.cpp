#include "commands/options_commands.h"

#include <utility>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "commands/start_and_close.h"
#include "settings/language.h"

namespace graphize {

namespace {

void FillFromSettings(Workspace& ws) {
  FillOptions(ws.options, ws.settings);
  FormatChanged(ws);
  ColoursChanged(ws);
}

}  // namespace

void ChooseTraceType(Workspace& ws, int type) {
  if (ws.settings.Trace == type) return;
  ws.settings.Trace = static_cast<std::int16_t>(type);
  SetTraceType(ws.tracer, type);
}

void ChooseSnap(Workspace& ws, int mode) {
  ws.settings.SnapMode = static_cast<std::int16_t>(mode);
}

void ChooseThreshold(Workspace& ws, int level) {
  ws.settings.Threshold = static_cast<std::int16_t>(level);
}

void ShowOptions(Workspace& ws) {
  ws.options = {.AtOpening = ws.settings};
  FillFromSettings(ws);
  ws.form = Form::Options;
}

void AcceptOptions(Workspace& ws) {
  ApplyOptions(ws);
  ws.form = Form::None;
}

void ApplyOptions(Workspace& ws) {
  ws.options.Note.clear();
  const std::int16_t traceBefore = ws.settings.Trace;
  TakeOptions(ws.options, ws.settings);
  ChooseTraceType(ws, std::exchange(ws.settings.Trace, traceBefore));
  FillFromSettings(ws);
}

void CancelOptions(Workspace& ws) {
  PutBackOptions(ws.options, ws.settings);
  FillFromSettings(ws);
}

void SaveOptions(Workspace& ws, const Desktop& desktop) {
  ApplyOptions(ws);
  if (Write_INI(ws))
    LoadOptions(ws, desktop);
  else
    ws.options.Note = ws.status.Status;
}

void LoadOptions(Workspace& ws, const Desktop& desktop) {
  Get_INI(ws, desktop);
  FillFromSettings(ws);
}

void DefaultOptions(Workspace& ws) {
  DefaultSettings(ws);
  FillFromSettings(ws);
}

void FormatChanged(Workspace& ws) {
  // A point with different digits in X and Y.
  constexpr float kX = 12.4567f, kY = 54.9876f;
  BuildFormats(ws.settings, ws.formats);
  ShowPage(ws.store);
  const NumberFormats& formats = ws.formats;
  const bool point = ws.settings.DecimalPoint;
  ws.options.Example = FormatValue(kX, formats.X, point) +
                       (formats.Delimiter == "\t" ? "  " : formats.Delimiter) +
                       FormatValue(kY, formats.Y, point);
}

void ColoursChanged(Workspace& ws) {
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
}

void ChooseLanguage(Workspace& ws, const Desktop& desktop, const std::string& code) {
  try {
    SettingsFile file = ReadSettingsFile(ws.settingsPath);
    WriteLanguage(file, code);
    SaveSettingsFile(ws.settingsPath, file);
    ws.language = code;
    ws.status.Status = Tr("The window speaks this language from its next start on.");
  } catch (const RunTimeError& error) {
    Tell(desktop, error.what(), MessageIcon::Exclamation);
  }
}

}  // namespace graphize
