#include "workspace/recipe.h"

#include <utility>

#include "base/numbers.h"
#include "base/tokens.h"
#include "workspace/recipe_options.h"
#include "workspace/workspace.h"

namespace graphize {

namespace {

std::vector<std::string> ReadOptions(const Workspace& ws) {
  std::vector<std::string> values;
  for (const RecipeOption& option : RecipeOptions()) values.push_back(option.Read(ws));
  return values;
}

RecipePicture PictureOf(const Workspace& ws) {
  RecipePicture picture{.Width = ws.plot.Width(), .Height = ws.plot.Height()};
  if (!ws.picture.FromFile) return picture;
  picture.Path = ws.picture.ChosenPath;
  picture.FileSize = ws.picture.FileSize;
  picture.FileChecksum = ws.picture.FileChecksum;
  return picture;
}

}  // namespace

void NoteOptions(Workspace& ws) {
  Recipe& recipe = ws.recipe;
  if (recipe.Options.empty()) recipe.Options = ReadOptions(Workspace());
  std::vector<std::string> now = ReadOptions(ws);
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] == recipe.Options[i]) continue;
    recipe.Steps.push_back({"set " + std::string(RecipeOptions()[i].Name) + " " + Quote(now[i])});
  }
  recipe.Options = std::move(now);
}

void NoteStep(Workspace& ws, const std::string& text) {
  NoteOptions(ws);
  ws.recipe.Steps.push_back({text});
}

void NoteOpened(Workspace& ws, const std::string& how) {
  const bool anew = !ws.calibration.AnyDefined() && ws.store.CaptureCount == 0;
  if (anew) ws.recipe = {};
  Recipe& recipe = ws.recipe;
  recipe.Steps.push_back(
      {"open" + (how.empty() ? "" : " " + how), static_cast<int>(recipe.Pictures.size())});
  recipe.Pictures.push_back(PictureOf(ws));
  if (!anew) return;
  // Blockers outlive a picture.
  for (int i = 1; i <= ws.blockers.Count; ++i) {
    const Blocker& blocker = ws.blockers.Blockers[i];
    NoteStep(ws,
             "block " + PositionText(blocker.X, blocker.Y) + " " + std::to_string(blocker.Size));
  }
}

std::string PositionText(float x, float y) {
  return ShortestText(x) + " " + ShortestText(y);
}

StepWatch::StepWatch(const Desktop& desktop) : callbacks_(desktop) {
  callbacks_.EscapeHeld = [this, held = desktop.EscapeHeld] {
    ++asked_;
    const bool now = held();
    if (now != (changes_.size() % 2 == 1)) changes_.push_back(asked_);
    return now;
  };
  callbacks_.ShowMessage = [this, show = desktop.ShowMessage](const Message& message) {
    told_ = true;
    return show(message);
  };
}

std::string StepWatch::StepText() const {
  std::string text = changes_.empty() ? "" : " stop";
  for (const std::int64_t change : changes_) text += " " + std::to_string(change);
  return text + (told_ ? " told" : "");
}

}  // namespace graphize
