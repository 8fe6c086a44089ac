#include "batch/job.h"

#include <optional>

#include "base/run_time_error.h"
#include "batch/console.h"
#include "data/data_file.h"
#include "data/point_table.h"
#include "workspace/replay.h"
#include "workspace/run_command.h"

namespace graphize {

namespace {

void RunStep(Workspace& ws, Console& console, const BatchStep& step,
             const std::filesystem::path& picture) {
  std::optional<std::string> problem;
  RunCommand(ws, console.Verbs(),
             [&] { problem = ReplayStep(ws, console.Verbs(), step.Text, picture); });
  // What the operation itself has told says more.
  if (!console.Problems.empty())
    problem = console.Problems.front();
  else if (problem && !console.Notes.empty())
    problem = console.Notes.back();
  if (problem) throw RunTimeError(step.Origin + ": " + *problem);
  if (step.Text.starts_with("integrate "))
    console.Notes.push_back("area = " + ws.integrate.AreaText);
}

std::string MakeTable(const Workspace& ws, TableFormat format, std::vector<std::string>& notes) {
  std::vector<RowError> errors;
  if (ws.commands.SaveErrors || format == TableFormat::Json) {
    if (HasRowErrors(ws.store, ws.calibration))
      errors = RowErrorsOf(ws.store, ws.calibration);
    else if (ws.commands.SaveErrors)
      notes.push_back("the rows are no places on the picture: they are written without errors");
  }
  switch (format) {
    case TableFormat::Csv:
      return CsvText(ws.store, errors);
    case TableFormat::Json:
      return JsonText(ws.store, ws.calibration,
                      {ws.picture.ChosenPath.filename().string(), ws.plot.Width(), ws.plot.Height(),
                       ws.dataFileTitle},
                      errors);
    case TableFormat::Dat:
      break;
  }
  return DataFileText(ws.dataFileTitle, ws.store, ws.formats, ws.settings.DecimalPoint, errors);
}

}  // namespace

JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, TableFormat format) {
  Workspace ws;
  Console console;
  StartReplay(ws);
  for (const BatchStep& step : steps) RunStep(ws, console, step, pictures[step.Picture]);
  if (ws.store.ListCount == 0)
    throw RunTimeError("no points were captured; tracers and scan see only black pixels");
  JobResult result;
  result.Table = MakeTable(ws, format, console.Notes);
  result.Notes = std::move(console.Notes);
  return result;
}

}  // namespace graphize
