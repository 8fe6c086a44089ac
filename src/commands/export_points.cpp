#include "commands/export_points.h"

#include "base/translation.h"
#include "base/whole_file.h"
#include "commands/forms.h"
#include "commands/save_points.h"
#include "data/data_file.h"
#include "data/waiting_points.h"

namespace graphize {

namespace {

/// The name that the picture is known by outside the program.
std::string PictureName(const PictureSource& picture) {
  return picture.WithoutFile ? picture.Name : picture.ChosenPath.filename().string();
}

FileQuestion QuestionFor(const Workspace& ws) {
  const bool json = ws.exportForm.Format == ExportFormat::Json;
  return {.ForSaving = true,
          .Title = Tr("Export Points As..."),
          .Folder = ws.picture.Folder,
          .FileName = DataFileProposal(ws.picture.Name, json ? ".json" : ".csv"),
          .Filters = json ? Tr("JSON Files (*.json)|*.json") : Tr("CSV Files (*.csv)|*.csv"),
          .DefaultExtension = json ? "json" : "csv"};
}

}  // namespace

std::vector<ExportCurve> ExportCurves(const Workspace& ws) {
  std::vector<ExportCurve> curves;
  const auto add = [&](int i) {
    curves.push_back(PlacedCurve(ws.curves.Curves[i].Name, PointsOf(ws.curves, ws.store, i),
                                 ws.calibration, ws.plot.Height()));
  };
  add(ws.curves.Active);
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i)
    if (i != ws.curves.Active) add(i);
  return curves;
}

bool CanExport(const Workspace& ws) {
  return CanSavePoints(ws) || AnyPoints(ws.curves, ws.store);
}

void ShowExport(Workspace& ws, const Desktop& desktop) {
  if (const int waiting = CountWaiting(ws.curves, ws.store); waiting > 0)
    return Tell(desktop, WaitingText(waiting), MessageIcon::Exclamation);
  if (ws.store.ListCount == 0) ws.exportForm.AllCurves = true;
  if (OpenExport(ws.exportForm, ExportCurves(ws), desktop)) ws.form = Form::Export;
}

std::optional<std::string> ExportText(const Workspace& ws, const Desktop& desktop) {
  const auto table = TableOfForm(ws.exportForm, ws.calibration, desktop);
  if (!table) return std::nullopt;
  if (ws.exportForm.Format == ExportFormat::Csv) return CsvText(*table);
  return JsonText(*table, ws.calibration,
                  {PictureName(ws.picture), ws.plot.Width(), ws.plot.Height(), ws.dataFileTitle});
}

void ExportPoints(Workspace& ws, const Desktop& desktop) {
  const auto text = ExportText(ws, desktop);
  if (!text) return;
  const auto path = desktop.ChooseFile(QuestionFor(ws));
  if (!path) return;
  ws.window.Hourglass = true;
  desktop.ShowNow();
  const std::error_code failure = ReplaceWholeFile(*path, *text);
  ws.window.Hourglass = false;
  if (failure) {
    Tell(desktop, Tr("Error while saving. \r\n%1", failure.message()), MessageIcon::Critical);
    return;
  }
  ws.status.Status =
      Tr("Exported: %1", ws.exportForm.Hint.substr(0, ws.exportForm.Hint.find('\n')));
  CloseForm(ws, desktop);
}

}  // namespace graphize
