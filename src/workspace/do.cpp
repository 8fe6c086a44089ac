#include "workspace/do.h"

#include <utility>

#include "workspace/capture_commands.h"
#include "workspace/data_commands.h"
#include "workspace/extraction_commands.h"
#include "workspace/image_tools_commands.h"
#include "workspace/picture_commands.h"
#include "workspace/plot_mouse.h"
#include "workspace/recipe_options.h"
#include "workspace/run_command.h"
#include "workspace/save_points.h"
#include "workspace/toolbar.h"
#include "workspace/watched_desktop.h"

namespace graphize {

namespace {

void Note(Workspace& ws, Step step) {
  if (!Is<OpenStep>(step)) NoteOptions(ws);
  ws.recipe.Steps.push_back(std::move(step));
}

/// A recipe that begins with this picture: blockers, which outlive a picture, are its next steps.
void NoteBlockers(Workspace& ws) {
  if (ws.recipe.Steps.size() != 1 || !Is<OpenStep>(ws.recipe.Steps.front())) return;
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

template <class Record>
bool IsNoted(const Record&, const Outcome& outcome) {
  // What can be stopped can fail midway; all else fails before it has changed anything.
  if constexpr (requires(Record step) { step.Went; })
    if (outcome.Is == Outcome::How::Failed) return true;
  return outcome.IsDone();
}

}  // namespace

Outcome Do(Workspace& ws, const Desktop& desktop, Step step) {
  EndDrag(ws);
  return std::visit(
      [&](auto& record) {
        Outcome outcome = RunRecord(ws, desktop, record);
        if (!IsNoted(record, outcome)) return outcome;
        Note(ws, std::move(record));
        NoteBlockers(ws);
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
  const auto read = [](const Workspace& from) {
    std::vector<std::string> values;
    for (const RecipeOption& option : RecipeOptions()) values.push_back(option.Read(from));
    return values;
  };
  if (recipe.Options.empty()) recipe.Options = read(Workspace());
  std::vector<std::string> now = read(ws);
  for (std::size_t i = 0; i < now.size(); ++i)
    if (now[i] != recipe.Options[i])
      recipe.Steps.push_back(SetStep{RecipeOptions()[i].Name, now[i]});
  recipe.Options = std::move(now);
}

}  // namespace graphize
