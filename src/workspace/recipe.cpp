#include "workspace/recipe.h"

#include <system_error>
#include <utility>

#include "base/numbers.h"
#include "base/words.h"
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
  std::error_code ignored;  // without a size the file is told apart by its checksum
  picture.Path = ws.picture.ChosenPath;
  picture.FileSize = std::filesystem::file_size(picture.Path, ignored);
  picture.FileTime = std::filesystem::last_write_time(picture.Path, ignored);
  return picture;
}

}  // namespace

void NoteOptions(Workspace& ws) {
  Recipe& recipe = ws.recipe;
  if (recipe.Options.empty()) recipe.Options = ReadOptions(Workspace());
  std::vector<std::string> now = ReadOptions(ws);
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] == recipe.Options[i]) continue;
    recipe.Steps.push_back({"set " + std::string(RecipeOptions()[i].Name) + " " + AsWord(now[i])});
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

EscapeCount::EscapeCount(const Desktop& desktop) : verbs_(desktop) {
  verbs_.EscapeHeld = [this, held = desktop.EscapeHeld] {
    ++asked_;
    if (!held()) return false;
    if (stoppedAt_ == 0) stoppedAt_ = asked_;
    return true;
  };
}

std::string EscapeCount::StepText() const {
  return Stopped() ? " stop " + std::to_string(stoppedAt_) : "";
}

}  // namespace graphize
