#include "workspace/export_points.h"

#include "base/whole_file.h"
#include "data/data_file.h"
#include "workspace/forms.h"
#include "workspace/save_points.h"

namespace graphize {

namespace {

/// The name that the picture is known by outside the program.
std::string PictureName(const PictureSource& picture) {
  return picture.WithoutFile ? picture.Name : picture.ChosenPath.filename().string();
}

FileQuestion QuestionFor(const Workspace& ws) {
  const bool json = ws.exportForm.Format == ExportFormat::Json;
  return {.ForSaving = true,
          .Title = "Export Points As...",
          .Folder = ws.picture.Folder,
          .FileName = DataFileProposal(ws.picture.Name, json ? ".json" : ".csv"),
          .Filters = json ? "JSON Files (*.json)|*.json" : "CSV Files (*.csv)|*.csv",
          .DefaultExtension = json ? "json" : "csv"};
}

}  // namespace

std::vector<ExportCurve> ExportCurves(const Workspace& ws) {
  return {PlacedCurve("curve 1", ws.store, ws.calibration, ws.plot.Height())};
}

bool CanExport(const Workspace& ws) {
  return CanSavePoints(ws);
}

void ShowExport(Workspace& ws, const Desktop& desktop) {
  if (OpenExport(ws.exportForm, ExportCurves(ws), desktop)) ws.form = Form::Export;
}

void ExportPoints(Workspace& ws, const Desktop& desktop) {
  const auto table = TableOfForm(ws.exportForm, ws.calibration, desktop);
  if (!table) return;
  const auto path = desktop.ChooseFile(QuestionFor(ws));
  if (!path) return;
  ws.window.Hourglass = true;
  desktop.ShowNow();
  const std::error_code failure =
      ReplaceWholeFile(*path, ws.exportForm.Format == ExportFormat::Csv
                                  ? CsvText(*table)
                                  : JsonText(*table, ws.calibration,
                                             {PictureName(ws.picture), ws.plot.Width(),
                                              ws.plot.Height(), ws.dataFileTitle}));
  ws.window.Hourglass = false;
  if (failure) {
    Tell(desktop, "Error while saving. \r\n" + failure.message(), MessageIcon::Critical);
    return;
  }
  ws.status.Status = "Exported: " + ws.exportForm.Hint.substr(0, ws.exportForm.Hint.find('\n'));
  CloseForm(ws, desktop);
}

}  // namespace graphize
