#include "commands/do.h"

#include <type_traits>
#include <utility>

#include "commands/capture_commands.h"
#include "commands/curve_commands.h"
#include "commands/data_commands.h"
#include "commands/extraction_commands.h"
#include "commands/find_commands.h"
#include "commands/image_tools_commands.h"
#include "commands/ink_check_commands.h"
#include "commands/ink_commands.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/reading_commands.h"
#include "commands/reference_commands.h"
#include "commands/run_command.h"
#include "commands/save_points.h"
#include "commands/toolbar.h"
#include "commands/watched_desktop.h"
#include "workspace/recipe_options.h"

namespace graphize {

namespace {

void Note(Workspace& ws, Step step) {
  if (!Is<OpenStep>(step)) NoteOptions(ws);
  ws.recipe.Steps.push_back(std::move(step));
}

/// The steps to curves without points that are named, shown and active as these.
void NoteCurves(Workspace& ws) {
  const std::vector<Curve>& curves = ws.curves.Curves;
  if (curves.front().Name != CurveList().Curves.front().Name)
    Note(ws, RenameCurveStep{curves.front().Name});
  const Curve* active = &curves.front();
  for (const Curve& curve : curves)
    if (&curve != active) Note(ws, NewCurveStep{curve.Name});
  active = &curves.back();
  const auto select = [&](const Curve& curve) {
    if (&curve != std::exchange(active, &curve)) Note(ws, SelectCurveStep{curve.Name});
  };
  for (const Curve& curve : curves) {
    if (curve.Shown) continue;
    select(curve);
    Note(ws, ShowCurveStep{false});
  }
  select(curves[ws.curves.Active]);
}

/// A recipe that begins with this picture: blockers and the names of curves, which outlive a
/// picture, are its next steps.
void NoteWhatStays(Workspace& ws) {
  if (ws.recipe.Steps.size() != 1 || !Is<OpenStep>(ws.recipe.Steps.front())) return;
  NoteCurves(ws);
  for (int i = 1; i <= ws.blockers.Count; ++i) {
    const auto& [x, y, size] = ws.blockers.Blockers[i];
    Note(ws, BlockStep{static_cast<float>(x), static_cast<float>(y), size});
  }
}

/// Runs with run-time errors told and made an outcome.
template <class Record>
Outcome RunGuarded(Workspace& ws, const Desktop& desktop, Record& step) {
  Outcome outcome;
  const std::string error = Guarded(ws, desktop, [&] { outcome = Run(ws, desktop, step); });
  return error.empty() ? outcome : Outcome{.Is = Outcome::How::Failed, .Reason = error};
}

template <class Record>
Outcome RunRecord(Workspace& ws, const Desktop& desktop, Record& step) {
  if constexpr (requires { step.Went; }) {
    WatchedDesktop watched(desktop, step.Went);
    Outcome outcome = RunGuarded(ws, watched.Callbacks(), step);
    step.Went = watched.Went();
    step.Went.Failed = outcome.Is == Outcome::How::Failed;
    if (outcome.Is == Outcome::How::Done && !step.Went.Escape.empty())
      outcome.Is = Outcome::How::Stopped;
    return outcome;
  } else {
    return RunGuarded(ws, desktop, step);
  }
}

template <class Record, class... Kinds>
constexpr bool kIsOneOf = (std::is_same_v<Record, Kinds> || ...);

/// Nothing is captured or moved unseen: a hidden curve is shown then.
template <class Record>
void ShowWorkedOn(Workspace& ws, int pointsBefore) {
  constexpr bool kMoves = kIsOneOf<Record, MovePointsStep>;
  constexpr bool kCaptures =
      kIsOneOf<Record, CaptureStep, PointStep, TraceStep, ScanStep, ReadStep, SymbolsStep>;
  const bool worked = kMoves || (kCaptures && ws.store.CaptureCount > pointsBefore);
  if (!worked || ActiveCurve(ws.curves).Shown) return;
  ActiveCurve(ws.curves).Shown = true;
  ws.plot.Dirty.Add(0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1);
}

template <class Record>
bool IsNoted(const Record&, const Outcome& outcome) {
  // What can be stopped can fail midway; all else fails before it has changed anything.
  if constexpr (requires(Record step) { step.Went; })
    if (outcome.Is == Outcome::How::Failed) return true;
  return outcome.IsDone();
}

/// Whether the step finds points by itself, so that they are held against the picture.
template <class Record>
constexpr bool kFindsPoints =
    kIsOneOf<Record, TraceStep, ScanStep, ReadStep, SymbolsStep, ReadAllStep>;

/// Whether points that wait for the axes may have values after the step.
template <class Record>
constexpr bool kBringsAxes = kIsOneOf<Record, AxisStep, SetStep, UndoImageToolStep, ReloadStep>;

}  // namespace

Outcome Do(Workspace& ws, const Desktop& desktop, Step step) {
  EndDrag(ws);
  return std::visit(
      [&](auto& record) {
        const int points = ws.store.CaptureCount;
        const std::string hint = ws.status.Hint;
        Outcome outcome = RunRecord(ws, desktop, record);
        if (!IsNoted(record, outcome)) return outcome;
        using Record = std::remove_reference_t<decltype(record)>;
        ShowWorkedOn<Record>(ws, points);
        // What a message before has told is no longer so.
        if (ws.status.Hint == hint && !IsReading(ws.mode)) ShowModeHint(ws);
        if (kBringsAxes<Record>) GiveWaitingValues(ws);
        Note(ws, std::move(record));
        NoteWhatStays(ws);
        if (kFindsPoints<Record> && outcome.Points > 0)
          std::is_same_v<Record, ReadAllStep> ? CheckAllCurves(ws) : CheckPoints(ws);
        return outcome;
      },
      step);
}

void NotePen(Workspace& ws) {
  const Pen& pen = ws.pen;
  PenWay way{pen.BlockSize, {}};
  for (const auto& [x, y] : pen.Way) way.Way.push_back({x, y});
  pen.Tool == PenTool::Draw ? Note(ws, DrawStep{std::move(way)})
                            : Note(ws, EraseStep{std::move(way)});
}

void NoteOptions(Workspace& ws) {
  Recipe& recipe = ws.recipe;
  if (recipe.Options.empty()) recipe.Options = OptionValues(Workspace());
  std::vector<std::string> now = OptionValues(ws);
  for (std::size_t i = 0; i < now.size(); ++i)
    if (now[i] != recipe.Options[i])
      recipe.Steps.push_back(SetStep{RecipeOptions()[i].Name, now[i]});
  recipe.Options = std::move(now);
}

}  // namespace graphize
