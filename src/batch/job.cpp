#include "batch/job.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "base/joined.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "batch/axes_command.h"
#include "batch/console.h"
#include "batch/job_table.h"
#include "batch/picture_thumbnail.h"
#include "commands/ink_check_commands.h"
#include "commands/replay.h"
#include "commands/run_command.h"
#include "raster/black_white.h"

namespace graphize {

namespace {

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
  std::string why = "no ink in the rectangle at the steps of the increments";
  if (const auto* trace = std::get_if<TraceStep>(&step.Do))
    why = "no ink at " + ShortestText(trace->X) + "," + ShortestText(trace->Y) +
          " within the increments";
  const BasePictureShown base(ws.plot);
  if (!IsBlackAndWhite(ws.plot.Pixels)) {
    why += "; the picture has other colours, and only black is ink";
    if (step.Origin.starts_with("--")) why += ": see --black-white";
  }
  return why;
}

/// What a run has to tell beside the table.
struct Told {
  // Curves with points that a step has found, and what was doubtful of them when it had.
  std::map<std::string, std::string> Found;
  std::vector<std::string> Notes;
  std::vector<std::string> Failed;      // captures, and why; these are among the notes, too
  std::vector<std::string> PageDoubts;  // of an alike page

  std::string WhyNoPoints() const { return Joined(Failed, "; "); }
};

std::string DoubtOf(const InkCheck& check) {
  return check.AnyDoubtful() ? check.Text : "";
}

bool FindsPoints(const Step& step) {
  return Is<TraceStep>(step) || Is<ScanStep>(step) || Is<ReadStep>(step) || Is<SymbolsStep>(step) ||
         Is<ReadAllStep>(step);
}

void NoteFound(Workspace& ws, const BatchStep& step, Told& told) {
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i)
    if (i == ws.curves.Active || Is<ReadAllStep>(step.Do))
      told.Found[ws.curves.Curves[static_cast<std::size_t>(i)].Name] =
          DoubtOf(InkCheckOf(ws, PointsOf(ws.curves, ws.store, i)));
}

/// What the picture says of the points that are written, an entry for each doubtful curve. Rows
/// that are no places on it, such as resampled ones, are as doubtful as what they were made of.
/// Points that were captured by hand alone are doubted only where it is asked for.
std::vector<std::string> DoubtsOf(Workspace& ws, const JobOptions& options, const Told& told) {
  std::vector<std::string> doubts;
  const int count = static_cast<int>(ws.curves.Curves.size());
  for (int i = 0; i < count; ++i) {
    if (options.Format == TableFormat::Dat && i != ws.curves.Active) continue;
    const std::string& name = ws.curves.Curves[static_cast<std::size_t>(i)].Name;
    const PointStore& points = PointsOf(ws.curves, ws.store, i);
    const auto found = told.Found.find(name);
    if (points.ListCount == 0 || (found == told.Found.end() && !options.Strict)) continue;
    const InkCheck check = InkCheckOf(ws, points);
    std::string doubt = DoubtOf(check);
    if (check.Ids.empty() && found != told.Found.end()) doubt = found->second;
    if (doubt.empty()) continue;
    if (count > 1) doubt.insert(0, "curve \"" + name + "\": ");
    doubts.push_back(std::move(doubt));
  }
  return doubts;
}

void NoteWhatCameOut(Workspace& ws, const BatchStep& step, const Outcome& outcome, Told& told) {
  const auto note = [&](const std::string& text) {
    told.Notes.push_back(step.Origin + ": " + text);
  };
  const bool captures = Is<TraceStep>(step.Do) || Is<ScanStep>(step.Do);
  if (captures && ws.mode == Mode::Graphize && outcome.Points == 0) {
    note(WhyNothing(ws, step));
    told.Failed.push_back(told.Notes.back());
  } else if (!outcome.Remark.empty()) {
    note(outcome.Remark);
  } else if (outcome.HiddenByMarks) {
    note("marks of an earlier trace cover a part of the curve");
  }
  if (outcome.Points > 0 && FindsPoints(step.Do)) NoteFound(ws, step, told);
  if (Is<ResampleStep>(step.Do) && !ws.sample.Hint.empty()) note(ws.sample.Hint);
  if (outcome.Area) note("area = " + ShortestText(*outcome.Area));
  if (Is<OpenStep>(step.Do) && step.Width > 0 &&
      (step.Width != ws.plot.Width() || step.Height != ws.plot.Height()))
    note("the picture has " + std::to_string(ws.plot.Width()) + "x" +
         std::to_string(ws.plot.Height()) + " pixels instead of " + std::to_string(step.Width) +
         "x" + std::to_string(step.Height));
}

/// As the window has it.
std::filesystem::path AbsolutePath(const std::filesystem::path& path) {
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::absolute(path, failure);
  return failure ? path : absolute;
}

/// Axes of the picture as it is; only settled ones.
AxesProposal SureAxes(Workspace& ws, const AxesChoice& choice) {
  const BasePictureShown base(ws.plot);
  AxesProposal axes = ProposeChosenAxes(ws.plot.Pixels, choice);
  if (!IsSettled(axes))
    throw RunTimeError("--propose-axes: the axes are not sure: " + WhyNotSettled(axes));
  return axes;
}

/// The step with what was found instead of its own values.
void TakeAxes(const AxesProposal& axes, Step& step) {
  if (auto* set = std::get_if<SetStep>(&step))
    set->Value = (set->Option == "x-log" ? axes.X : axes.Y).Log ? "on" : "off";
  if (auto* axis = std::get_if<AxisStep>(&step)) {
    const ProposedRow& row = axes.Rows.at(axis->Row);
    axis->X = static_cast<float>(std::nearbyint(row.Column));
    axis->Y = static_cast<float>(std::nearbyint(row.Row));
    axis->At = {static_cast<float>(row.Column), static_cast<float>(row.Row)};
    axis->Sigma = static_cast<float>(row.Sigma);
    axis->XText = ShortestText(row.X);
    axis->YText = ShortestText(row.Y);
  }
}

void RunStep(Workspace& ws, const BatchStep& step,
             const std::vector<std::filesystem::path>& pictures, AxesProposal& axes, Told& told) {
  Console console;
  if (step.LooksFor) axes = SureAxes(ws, *step.LooksFor);
  Step toDo = step.Do;
  if (step.TakesAxes) TakeAxes(axes, toDo);
  if (auto* open = std::get_if<OpenStep>(&toDo))
    open->Path = AbsolutePath(pictures[open->Picture - 1]);
  const Outcome outcome = ReplayStep(ws, console.Callbacks(), toDo);
  // What the operation itself has told says more.
  std::string problem;
  if (!console.Problems.empty())
    problem = InOurWords(ws, console.Problems.front());
  else if (outcome.Is == Outcome::How::Refused || outcome.Is == Outcome::How::Failed)
    problem = console.Notes.empty() ? outcome.Reason : console.Notes.back();
  if (const auto* open = std::get_if<OpenStep>(&step.Do);
      open != nullptr && open->Part.empty() &&
      problem.find("neither width nor height") != problem.npos)
    problem += " See --part.";
  // Too few points for a step have a cause of their own.
  if (!problem.empty() && ws.store.CaptureCount == 0 && !told.Failed.empty())
    problem += "; " + told.WhyNoPoints();
  if (!problem.empty()) throw StepError(step, problem);
  for (const std::string& note : console.Notes) told.Notes.push_back(step.Origin + ": " + note);
  NoteWhatCameOut(ws, step, outcome, told);
}

/// An OpenStep whose picture is looked at in its colours before it is reduced to black and white.
template <class Look>
void RunOpen(Workspace& ws, const BatchStep& step,
             const std::vector<std::filesystem::path>& pictures, AxesProposal& axes, Told& told,
             const Look& look) {
  BatchStep plain = step;
  auto& open = std::get<OpenStep>(plain.Do);
  const bool reduce = std::exchange(open.BlackAndWhite, false);
  RunStep(ws, plain, pictures, axes, told);
  {
    const BasePictureShown base(ws.plot);
    look(ws.plot.Pixels);
  }
  if (!reduce) return;
  const InkThreshold threshold{.Level = static_cast<float>(ThresholdOf(open.Threshold))};
  RunStep(ws, {.Do = BlackWhiteStep{threshold}, .Origin = step.Origin}, pictures, axes, told);
}

/// Points that a scan has found beyond the turned rectangle go.
std::optional<DeletePointsStep> PointsBeyond(const Workspace& ws, const StepsOnPage::Area& area,
                                             int before) {
  std::vector<PointId> beyond;
  for (int i = before + 1; i <= ws.store.CaptureCount; ++i) {
    const PointId id = ws.store.CaptureId[i];
    if (!HasPlace(ws.store, id)) continue;
    const Place& place = ws.store.Places[id];
    const auto [x, y] = Mapped(area.Back, place.Column, place.Row);
    constexpr double kSlack = 0.75;
    if (x < area.Is.Left - kSlack || x > area.Is.Right + kSlack || y < area.Is.Top - kSlack ||
        y > area.Is.Bottom + kSlack)
      beyond.push_back(id);
  }
  if (beyond.empty()) return std::nullopt;
  return DeletePointsStep{PointSet(std::move(beyond))};
}

/// One of the recipe's steps on a page that is like the recipe's own picture.
void RunOnPage(Workspace& ws, const AlikePages& alike, std::size_t number, const BatchStep& step,
               const std::vector<std::filesystem::path>& pictures, AxesProposal& axes, Told& told,
               JobResult& result) {
  if (Is<OpenStep>(step.Do)) {
    RunOpen(ws, step, pictures, axes, told, [&](const Raster& page) {
      if (!alike.Align) return;
      PictureOperation operation;
      result.Registration = RegisterPage(alike.Reference, page, operation);
      if (!result.Registration->Refusal.empty())
        throw RunTimeError("it does not fit the calibrated page: " + result.Registration->Refusal);
      if (!result.Registration->Doubt.empty())
        told.PageDoubts.push_back(result.Registration->Doubt);
    });
    return;
  }
  const AffineMap toPage = result.Registration ? result.Registration->ToPage : AffineMap{};
  StepsOnPage on;
  try {
    on = StepsFor(alike, toPage, number, step, ws);
  } catch (const RunTimeError& error) {
    throw StepError(step, error.what());
  }
  if (!on.Note.empty()) told.Notes.push_back(step.Origin + ": " + on.Note);
  const int before = ws.store.CaptureCount;
  for (Step& toDo : on.Do)
    RunStep(ws, {.Do = std::move(toDo), .Origin = step.Origin}, pictures, axes, told);
  if (!on.Doubt.empty()) told.PageDoubts.push_back(StepError(step, on.Doubt).what());
  if (!on.Within) return;
  if (auto beyond = PointsBeyond(ws, *on.Within, before))
    RunStep(ws, {.Do = *std::move(beyond), .Origin = step.Origin}, pictures, axes, told);
}

/// One behind the last step that the table is made of.
std::size_t EndOf(const std::vector<BatchStep>& steps, std::vector<std::string>& notes) {
  const auto isSave = [](const BatchStep& step) { return Is<SaveStep>(step.Do); };
  const auto saves = std::count_if(steps.begin(), steps.end(), isSave);
  if (saves == 0) return steps.size();
  if (saves > 1)
    notes.push_back("of " + std::to_string(saves) + " saved data files this is the last");
  const auto last = std::find_if(steps.rbegin(), steps.rend(), isSave);
  const auto behind = static_cast<std::size_t>(last - steps.rbegin());
  const auto counts = [](const BatchStep& step) {
    return !Is<SetStep>(step.Do) && !Is<ModeStep>(step.Do);
  };
  if (std::any_of(steps.rbegin(), last, counts))
    notes.push_back("steps behind the saved data file are left out");
  return steps.size() - behind;
}

/// What is kept of the workspace beside the table.
void KeepPicture(Workspace& ws, JobResult& result) {
  result.Places = CapturedPlaces(ws.store);
  ClearMarks(ws.plot);
  result.Picture = std::move(ws.plot.Pixels);
}

void RunSteps(Workspace& ws, const std::vector<BatchStep>& steps, std::size_t end,
              const std::vector<std::filesystem::path>& pictures, const JobOptions& options,
              Told& told, JobResult& result) {
  AxesProposal axes;
  for (std::size_t i = 0; i < end; ++i) {
    if (options.Alike != nullptr)
      RunOnPage(ws, *options.Alike, i, steps[i], pictures, axes, told, result);
    else
      RunStep(ws, steps[i], pictures, axes, told);
    result.Points = RowsOf(ws);
  }
  if (options.PictureOnly) return;
  // The window has written a table that was saved, too.
  const bool saved = end > 0 && Is<SaveStep>(steps[end - 1].Do);
  if (!HasRows(ws, options.Format) && (options.PointsExpected || !saved)) {
    const std::string why = told.WhyNoPoints();
    throw RunTimeError(ws.store.CaptureCount > 0
                           ? "the list is empty"
                           : "no points were captured" + (why.empty() ? "" : "; " + why));
  }
  result.Table = MakeTable(ws, options, saved, told.Notes);
}

}  // namespace

std::vector<BatchStep> StepsOf(const RecipeFile& recipe, const std::string& name) {
  std::vector<BatchStep> steps;
  for (const RecipeFile::Line& line : recipe.Steps) {
    BatchStep made{.Do = line.Is, .Origin = name + "line " + std::to_string(line.Number)};
    if (const auto* open = std::get_if<OpenStep>(&line.Is)) {
      made.Width = recipe.Pictures[open->Picture - 1].Width;
      made.Height = recipe.Pictures[open->Picture - 1].Height;
    }
    steps.push_back(std::move(made));
  }
  return steps;
}

void RunJob(const std::vector<BatchStep>& steps, const std::vector<std::filesystem::path>& pictures,
            const JobOptions& options, JobResult& result) {
  Workspace ws;
  Told told;
  StartReplay(ws);
  const std::size_t end = EndOf(steps, told.Notes);
  try {
    RunSteps(ws, steps, end, pictures, options, told, result);
  } catch (const RunTimeError&) {
    if (options.KeepFailed && ws.plot.IsPresent()) {
      if (result.Registration && result.Registration->Fits())
        result.Table = MakeTable(ws, options, false, told.Notes);
      KeepPicture(ws, result);
    }
    throw;
  }
  std::vector<std::string> doubts = std::move(told.PageDoubts);
  if (!options.PictureOnly)
    std::ranges::move(DoubtsOf(ws, options, told), std::back_inserter(doubts));
  result.Doubt = Joined(doubts, "; ");
  if (options.KeepPicture) KeepPicture(ws, result);
  result.Notes = std::move(told.Notes);
}

JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, const JobOptions& options) {
  JobResult result;
  RunJob(steps, pictures, options, result);
  return result;
}

AlikePages LookAtOwnPicture(const std::vector<BatchStep>& steps,
                            const std::vector<std::filesystem::path>& pictures, bool align) {
  AlikePages alike{.Align = align};
  Workspace ws;
  Told told;
  AxesProposal axes;
  StartReplay(ws);
  for (const BatchStep& step : steps) {
    if (Is<OpenStep>(step.Do))
      RunOpen(ws, step, pictures, axes, told, [&](const Raster& picture) {
        PictureOperation operation;
        alike.Reference = PageReferenceOf(picture, operation);
        if (align && !alike.Reference.Refusal.empty()) throw RunTimeError(alike.Reference.Refusal);
      });
    alike.Known.push_back(LookAt(ws, step.Do));
    if (!Is<OpenStep>(step.Do) && ShapesPicture(step.Do)) RunStep(ws, step, pictures, axes, told);
  }
  return alike;
}

}  // namespace graphize
