#include "batch/job.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/run_time_error.h"
#include "base/tokens.h"
#include "batch/console.h"
#include "data/data_file.h"
#include "data/point_table.h"
#include "raster/black_white.h"
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

/// Why the trace or scan that has just run captured nothing.
std::string WhyNothing(Workspace& ws, const BatchStep& step) {
  const std::vector<std::string> words = Tokenize(step.Text).value_or(std::vector<std::string>());
  std::string why = ws.status.Status;
  if (why.starts_with("No curve here") && words.size() > 2)
    why = "no ink at " + words[1] + "," + words[2] + " within the increments";
  if (why.starts_with("No black pixels here"))
    why = "no ink in the rectangle at the steps of the increments";
  const BasePictureShown base(ws.plot);
  if (!IsBlackAndWhite(ws.plot.Pixels)) {
    why += "; the picture has other colours, and only black is ink";
    if (step.Origin.starts_with("--")) why += ": see --black-white";
  }
  return why;
}

/// What a run has to tell beside the table.
struct Told {
  std::vector<std::string> Notes;
  std::vector<std::string> Failed;  // captures, and why; these are among the notes, too

  std::string WhyNoPoints() const {
    std::string text;
    for (const std::string& failure : Failed) text += (text.empty() ? "" : "; ") + failure;
    return text;
  }
};

void NoteWhatCameOut(Workspace& ws, const BatchStep& step, int before, Told& told) {
  const auto note = [&](const std::string& text) {
    told.Notes.push_back(step.Origin + ": " + text);
  };
  const bool captures = Is(step, "trace") || Is(step, "scan");
  if (captures && ws.mode == Mode::Graphize && ws.store.CaptureCount == before) {
    note(WhyNothing(ws, step));
    told.Failed.push_back(told.Notes.back());
  } else if (Is(step, "trace") &&
             ws.status.Status.find("earlier trace cover") != std::string::npos) {
    note("marks of an earlier trace cover a part of the curve");
  }
  if (Is(step, "resample") && !ws.sample.Hint.empty()) note(ws.sample.Hint);
  if (Is(step, "integrate")) note("area = " + ws.integrate.AreaText);
  if (Is(step, "open") && step.Width > 0 &&
      (step.Width != ws.plot.Width() || step.Height != ws.plot.Height()))
    note("the picture has " + std::to_string(ws.plot.Width()) + "x" +
         std::to_string(ws.plot.Height()) + " pixels instead of " + std::to_string(step.Width) +
         "x" + std::to_string(step.Height));
}

void RunStep(Workspace& ws, const BatchStep& step, const std::filesystem::path& picture,
             Told& told) {
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
  // Too few points for a step have a cause of their own.
  if (problem && ws.store.CaptureCount == 0 && !told.Failed.empty())
    *problem += "; " + told.WhyNoPoints();
  if (problem) throw StepError(step, *problem);
  for (const std::string& note : console.Notes) told.Notes.push_back(step.Origin + ": " + note);
  NoteWhatCameOut(ws, step, before, told);
}

std::string MakeTable(const Workspace& ws, const JobOptions& options,
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
  const std::string hidden = HiddenDigits(ws.store, ws.calibration, ws.settings, ws.formats);
  if (!hidden.empty()) notes.push_back(hidden);
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
                 const std::vector<std::filesystem::path>& pictures, const JobOptions& options) {
  Workspace ws;
  JobResult result;
  Told told;
  StartReplay(ws);
  const std::size_t end = EndOf(steps, told.Notes);
  for (std::size_t i = 0; i < end; ++i) RunStep(ws, steps[i], pictures[steps[i].Picture], told);
  if (!options.PictureOnly) {
    const bool saved = end > 0 && Is(steps[end - 1], "save");  // the window has written it, too
    if (ws.store.ListCount == 0 && (options.PointsExpected || !saved)) {
      const std::string why = told.WhyNoPoints();
      throw RunTimeError(ws.store.CaptureCount > 0
                             ? "the list is empty"
                             : "no points were captured" + (why.empty() ? "" : "; " + why));
    }
    result.Table = MakeTable(ws, options, told.Notes);
  }
  if (options.KeepPicture) {
    ClearMarks(ws.plot);
    result.Picture = std::move(ws.plot.Pixels);
  }
  result.Notes = std::move(told.Notes);
  return result;
}

}  // namespace graphize
