#include "workspace/save_points.h"

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "data/data_file.h"

namespace graphize {

bool CanSavePoints(const Workspace& ws) {
  return ws.commands.Data;
}

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
    desktop.Pump();
    WriteDataFile(*path, title, ws.store, ws.formats, ws.settings.DecimalPoint);
    written = true;
  } catch (const RunTimeError& error) {
    Tell(desktop, std::string("Error while saving. \r\n") + error.what(), MessageIcon::Critical);
  }
  ws.window.Hourglass = false;
  return written;
}

void CopyPoints(Workspace& ws, const Desktop& desktop) {
  desktop.CopyText(PointLines(ws.store, ws.formats, ws.settings.DecimalPoint));
}

}  // namespace graphize
