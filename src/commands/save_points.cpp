#include "commands/save_points.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "commands/do.h"
#include "data/data_file.h"
#include "data/waiting_points.h"

namespace graphize {

bool CanSavePoints(const Workspace& ws) {
  return ws.commands.Data;
}

ErrorKind ErrorKindOf(const Workspace& ws) {
  return ws.commands.PixelErrors ? ErrorKind::Pixel : ErrorKind::Standard;
}

namespace {

/// The two columns of errors when they are wanted; a list that has none is told.
std::vector<RowError> ErrorColumns(const Workspace& ws, const Desktop& desktop) {
  if (!ws.commands.SaveErrors) return {};
  if (HasRowErrors(ws.store, ws.calibration))
    return RowErrorsOf(ws.store, ws.calibration, ws.plot.Height(), ErrorKindOf(ws));
  Tell(desktop, "The rows of the list are no places on the picture: they are saved without errors",
       MessageIcon::Exclamation);
  return {};
}

void TellHiddenDigits(const Workspace& ws, const Desktop& desktop) {
  const std::string hidden = HiddenDigits(ws.store, ws.calibration, ws.settings, ws.formats);
  if (!hidden.empty())
    Tell(desktop, hidden + ' ' + Tr("Decimals are set on the tab Format of the settings."));
}

/// Of several curves, none proposes the name of another's file.
std::string ProposalFor(const Workspace& ws) {
  std::string name = DataFileProposal(ws.picture.Name);
  if (ws.curves.Curves.size() == 1) return name;
  std::string curve = ActiveCurve(ws.curves).Name;
  std::replace(curve.begin(), curve.end(), '/', '_');
  return name.insert(name.rfind('.'), " - " + curve);
}

/// Tells that there are points without values, where there are.
bool TellWaiting(const Workspace& ws, const Desktop& desktop) {
  const int waiting = CountWaiting(ws.store);
  if (waiting > 0) Tell(desktop, WaitingText(waiting), MessageIcon::Exclamation);
  return waiting > 0;
}

}  // namespace

bool SavePoints(Workspace& ws, const Desktop& desktop) {
  if (TellWaiting(ws, desktop)) return false;
  const std::string title =
      desktop.Prompt({.Prompt = Tr("Enter file title line (press Enter to Skip)"),
                      .Caption = Tr("File Title Line")});
  const auto path = desktop.ChooseFile({.ForSaving = true,
                                        .Title = Tr("Save Points As..."),
                                        .Folder = ws.picture.Folder,
                                        .FileName = ProposalFor(ws),
                                        .Filters = Tr("Data Files (*.dat)|*.dat"),
                                        .DefaultExtension = "DAT"});
  return path && Do(ws, desktop, SaveStep{title, *path}).IsDone();
}

Outcome Run(Workspace& ws, const Desktop& desktop, const SaveStep& step) {
  if (const int waiting = CountWaiting(ws.store); waiting > 0) return Refused(WaitingText(waiting));
  Outcome outcome;
  if (!step.Path.empty()) {
    ws.dataFileName = LowerCase(step.Path.string());
    ws.window.Hourglass = true;
    desktop.ShowNow();
    try {
      WriteDataFile(step.Path, DataFileText(step.Title, ws.store, ws.formats,
                                            ws.settings.DecimalPoint, ErrorColumns(ws, desktop)));
    } catch (const RunTimeError& error) {
      outcome = Refused(Tr("Error while saving. \r\n%1", std::string(error.what())));
      Tell(desktop, outcome.Reason, MessageIcon::Critical);
    }
    ws.window.Hourglass = false;
  }
  if (!outcome.IsDone()) return outcome;
  ws.dataFileTitle = step.Title;
  if (!step.Path.empty()) {
    NoteSaved(ws.store);
    ws.recipe.SavedPoints = ws.store.ListCount;
    TellHiddenDigits(ws, desktop);
  }
  return outcome;
}

void CopyPoints(Workspace& ws, const Desktop& desktop) {
  if (TellWaiting(ws, desktop)) return;
  desktop.CopyText(PointLines(ws.store, ws.formats, ws.settings.DecimalPoint));
}

}  // namespace graphize
