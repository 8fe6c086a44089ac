#include "batch/job_table.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "base/run_time_error.h"
#include "batch/console.h"
#include "codecs/picture_probe.h"
#include "commands/export_points.h"
#include "commands/ink_check_commands.h"
#include "commands/save_points.h"
#include "data/data_file.h"
#include "session/project_file.h"

namespace graphize {

namespace {

/// Pictures that go after the run have no path, but their bytes.
void KnowByName(Workspace& ws, const std::filesystem::path& passing) {
  if (ws.picture.ChosenPath.parent_path() == passing) {
    ProbeResult verdict;
    ws.picture.Bytes =
        std::make_shared<const std::string>(ReadPictureFile(ws.picture.ChosenPath, verdict));
    ws.picture.ChosenPath = ws.picture.ChosenPath.filename();
  }
  for (RecipePicture& picture : ws.recipe.Pictures)
    if (picture.Path.parent_path() == passing) picture.Path = picture.Path.filename();
}

/// Each row gets what the picture says of its point.
void AddInk(Workspace& ws, std::vector<ExportCurve>& curves) {
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i) {
    const auto curve = std::find_if(curves.begin(), curves.end(), [&](const ExportCurve& exported) {
      return exported.Name == ws.curves.Curves[static_cast<std::size_t>(i)].Name;
    });
    if (curve == curves.end()) continue;
    const PointStore& store = PointsOf(ws.curves, ws.store, i);
    const InkCheck check = InkCheckOf(ws, store);
    std::vector<const char*> words(store.Places.size(), nullptr);
    for (std::size_t k = 0; k < check.Ids.size(); ++k)
      words[check.Ids[k]] = WordOf(check.Verdicts[k]);
    for (int row = 1; row <= store.ListCount; ++row)
      if (store.ListId[row] != 0)
        curve->Rows[static_cast<std::size_t>(row - 1)].Ink = words[store.ListId[row]];
  }
}

}  // namespace

int RowsOf(const Workspace& ws) {
  int rows = ws.store.ListCount;
  for (const Curve& curve : ws.curves.Curves)
    if (curve.Points != nullptr) rows += curve.Points->ListCount;
  return rows;
}

bool HasRows(const Workspace& ws, TableFormat format) {
  return (format == TableFormat::Dat ? ws.store.ListCount : RowsOf(ws)) > 0;
}

std::string MakeTable(Workspace& ws, const JobOptions& options, bool saved,
                      std::vector<std::string>& notes) {
  if (options.Format == TableFormat::Project) {
    const Console console;
    if (!options.Passing.empty()) KnowByName(ws, options.Passing);
    return ProjectBytes(ws, console.Callbacks()).value_or("");
  }
  const bool wanted = ws.commands.SaveErrors || options.Errors;
  const bool known = HasRowErrors(ws.store, ws.calibration);
  const ErrorKind kind = options.PixelErrors ? ErrorKind::Pixel : ErrorKindOf(ws);
  if (wanted && !known)
    notes.push_back("the rows are no places on the picture: they are written without errors");
  if (options.Format != TableFormat::Dat) {
    const bool json = options.Format == TableFormat::Json;
    ws.exportForm = {.Format = json ? ExportFormat::Json : ExportFormat::Csv,
                     .AllCurves = true,
                     .Errors = wanted || json,
                     .PixelErrors = kind == ErrorKind::Pixel,
                     .Curves = ExportCurves(ws)};
    if (json) AddInk(ws, ws.exportForm.Curves);
    const Console console;
    return ExportText(ws, console.Callbacks()).value_or("");
  }
  if (ws.curves.Curves.size() > 1) {
    constexpr const char* kAll = "; csv, json and graphize hold all";
    if (!saved)
      throw RunTimeError("there are " + std::to_string(ws.curves.Curves.size()) +
                         " curves, and a data file holds one" + kAll);
    notes.push_back("a data file holds one curve, this one \"" + ActiveCurve(ws.curves).Name +
                    "\"" + kAll);
  }
  std::vector<RowError> errors;
  if (wanted && known) errors = RowErrorsOf(ws.store, ws.calibration, ws.plot.Height(), kind);
  const std::string hidden = HiddenDigits(ws.store, ws.calibration, ws.settings, ws.formats);
  if (!hidden.empty()) notes.push_back(hidden);
  return DataFileText(ws.dataFileTitle, ws.store, ws.formats, ws.settings.DecimalPoint, errors);
}

}  // namespace graphize
