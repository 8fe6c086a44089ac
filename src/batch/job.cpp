#include "batch/job.h"

#include <algorithm>
#include <optional>

#include "base/run_time_error.h"
#include "batch/console.h"
#include "data/data_file.h"
#include "data/point_table.h"
#include "workspace/replay.h"
#include "workspace/run_command.h"

namespace graphize {

namespace {

bool Is(const BatchStep& step, const std::string& name) {
  return step.Text == name || step.Text.starts_with(name + " ");
}

RunTimeError StepError(const BatchStep& step, const std::string& problem) {
  return RunTimeError(step.Origin.empty() ? problem : step.Origin + ": " + problem);
}

/// A store that is full is no reason to clear a list box here.
std::string InOurWords(const Workspace& ws, const std::string& problem) {
  if (ws.store.CaptureCount < ws.store.MaxPoints) return problem;
  return "there are more than " + std::to_string(ws.store.MaxPoints) +
         " points; larger increments give fewer";
}

void NoteWhatCameOut(const Workspace& ws, const BatchStep& step, int before,
                     std::vector<std::string>& notes) {
  const auto note = [&](const std::string& text) { notes.push_back(step.Origin + ": " + text); };
  const bool captures = Is(step, "trace") || Is(step, "scan");
  if (captures && ws.mode == Mode::Graphize && ws.store.CaptureCount == before)
    note("there is no curve or point to capture");
  if (Is(step, "integrate")) note("area = " + ws.integrate.AreaText);
  if (Is(step, "open") && step.Width > 0 &&
      (step.Width != ws.plot.Width() || step.Height != ws.plot.Height()))
    note("the picture has " + std::to_string(ws.plot.Width()) + "x" +
         std::to_string(ws.plot.Height()) + " pixels instead of " + std::to_string(step.Width) +
         "x" + std::to_string(step.Height));
}

void RunStep(Workspace& ws, const BatchStep& step, const std::filesystem::path& picture,
             std::vector<std::string>& notes) {
  Console console;
  const int before = ws.store.CaptureCount;
  std::optional<std::string> problem;
  RunCommand(ws, console.Callbacks(),
             [&] { problem = ReplayStep(ws, console.Callbacks(), step.Text, picture); });
  // What the operation itself has told says more.
  if (!console.Problems.empty())
    problem = InOurWords(ws, console.Problems.front());
  else if (problem && !console.Notes.empty())
    problem = console.Notes.back();
  if (problem) throw StepError(step, *problem);
  for (const std::string& note : console.Notes) notes.push_back(step.Origin + ": " + note);
  NoteWhatCameOut(ws, step, before, notes);
}

std::string MakeTable(const Workspace& ws, const TableOptions& options,
                      std::vector<std::string>& notes) {
  const bool wanted = ws.commands.SaveErrors || options.Errors;
  std::vector<RowError> errors;
  if (wanted || options.Format == TableFormat::Json) {
    if (HasRowErrors(ws.store, ws.calibration))
      errors = RowErrorsOf(ws.store, ws.calibration);
    else if (wanted)
      notes.push_back("the rows are no places on the picture: they are written without errors");
  }
  switch (options.Format) {
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

/// One behind the last step that the table is made of.
std::size_t EndOf(const std::vector<BatchStep>& steps, std::vector<std::string>& notes) {
  const auto isSave = [](const BatchStep& step) { return Is(step, "save"); };
  const auto saves = std::count_if(steps.begin(), steps.end(), isSave);
  if (saves == 0) return steps.size();
  if (saves > 1)
    notes.push_back("of " + std::to_string(saves) + " saved data files this is the last");
  const auto last = std::find_if(steps.rbegin(), steps.rend(), isSave);
  const auto behind = static_cast<std::size_t>(last - steps.rbegin());
  const auto counts = [](const BatchStep& step) { return !Is(step, "set") && !Is(step, "mode"); };
  if (std::any_of(steps.rbegin(), last, counts))
    notes.push_back("steps behind the saved data file are left out");
  return steps.size() - behind;
}

}  // namespace

JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, const TableOptions& options) {
  Workspace ws;
  JobResult result;
  StartReplay(ws);
  const std::size_t end = EndOf(steps, result.Notes);
  for (std::size_t i = 0; i < end; ++i)
    RunStep(ws, steps[i], pictures[steps[i].Picture], result.Notes);
  const bool saved = end > 0 && Is(steps[end - 1], "save");  // the window has written it, too
  if (ws.store.ListCount == 0 && !saved)
    throw RunTimeError(ws.store.CaptureCount > 0
                           ? "the list is empty"
                           : "no points were captured; tracers and scan see only black pixels");
  result.Table = MakeTable(ws, options, result.Notes);
  return result;
}

}  // namespace graphize
