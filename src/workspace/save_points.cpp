#include "workspace/save_points.h"

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "data/data_file.h"

namespace graphize {

bool CanSavePoints(const Workspace& ws) {
  return ws.commands.Data;
}

namespace {

/// The two columns of pixel sizes when they are wanted; a list that has none is told.
std::vector<RowError> ErrorColumns(const Workspace& ws, const Desktop& desktop) {
  if (!ws.commands.SaveErrors) return {};
  if (HasRowErrors(ws.store, ws.calibration)) return RowErrorsOf(ws.store, ws.calibration);
  Tell(desktop, "The rows of the list are no places on the picture: they are saved without errors",
       MessageIcon::Exclamation);
  return {};
}

void TellHiddenDigits(const Workspace& ws, const Desktop& desktop) {
  const std::string hidden = HiddenDigits(ws.store, ws.calibration, ws.settings, ws.formats);
  if (!hidden.empty())
    Tell(desktop, hidden + " Decimals are set on the tab Format of the settings.");
}

}  // namespace

bool SavePoints(Workspace& ws, const Desktop& desktop) {
  const std::string title = desktop.Prompt(
      {.Prompt = "Enter file title line (press Enter to Skip)", .Caption = "File Title Line"});
  bool written = false;
  try {
    const auto path = desktop.ChooseFile({.ForSaving = true,
                                          .Title = "Save Points As...",
                                          .Folder = ws.picture.Folder,
                                          .FileName = DataFileProposal(ws.picture.Name),
                                          .Filters = "Data Files (*.dat)|*.dat",
                                          .DefaultExtension = "DAT"});
    if (!path) return false;
    ws.dataFileName = LowerCase(path->string());
    ws.window.Hourglass = true;
    desktop.ShowNow();
    WriteDataFile(*path, DataFileText(title, ws.store, ws.formats, ws.settings.DecimalPoint,
                                      ErrorColumns(ws, desktop)));
    written = true;
    ws.dataFileTitle = title;
    NoteStep(ws, "save " + Quote(title));
    ws.recipe.SavedPoints = ws.store.ListCount;
  } catch (const RunTimeError& error) {
    Tell(desktop, std::string("Error while saving. \r\n") + error.what(), MessageIcon::Critical);
  }
  ws.window.Hourglass = false;
  if (written) TellHiddenDigits(ws, desktop);
  return written;
}

void CopyPoints(Workspace& ws, const Desktop& desktop) {
  desktop.CopyText(PointLines(ws.store, ws.formats, ws.settings.DecimalPoint));
}

}  // namespace graphize
