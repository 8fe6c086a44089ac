#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace graphize {

struct Workspace;

/// One thing that the user has done, in words that workspace/replay.h can do again. A step that
/// opens a picture names it by its number; all else of the picture is told when the recipe is
/// written.
struct RecipeStep {
  std::string Text;
  int Picture = -1;  // index of Recipe::Pictures
};

struct RecipePicture {
  std::filesystem::path Path;  // empty: pasted or scanned
  int Width = 0, Height = 0;   // pixels
  std::uintmax_t FileSize = 0;
  std::uint32_t FileChecksum = 0;
};

/// All that led to the points as they are now: from the opening of the picture on.
struct Recipe {
  std::vector<RecipeStep> Steps;
  std::vector<RecipePicture> Pictures;
  std::optional<int> SavedPoints;    // rows of the last data file
  std::vector<std::string> Options;  // as the steps leave them, in the order of RecipeOptions()
};

/// Adds a step, after the options that were changed since the last one. Called by the command that
/// has done it, once it has been done.
void NoteStep(Workspace& ws, const std::string& text);
/// The same for options alone: what was changed since the last step.
void NoteOptions(Workspace& ws);
/// A picture was opened, pasted or scanned: `how` is the step behind "open". A new recipe begins
/// unless points or axes stay.
void NoteOpened(Workspace& ws, const std::string& how);

/// A picture position in a step: "140 220".
std::string PositionText(float x, float y);

/// Watches an operation, so that its replay goes the same way: at which of its questions Escape
/// came to be held or let go, and whether it told the user something.
class StepWatch {
 public:
  explicit StepWatch(const Desktop& desktop);
  StepWatch(const StepWatch&) = delete;
  StepWatch& operator=(const StepWatch&) = delete;

  /// To be handed to the operation.
  const Desktop& Callbacks() const { return callbacks_; }
  /// What a step says of it behind its own words: nothing, or " stop 17 23 told".
  std::string StepText() const;

 private:
  Desktop callbacks_;
  std::int64_t asked_ = 0;
  std::vector<std::int64_t> changes_;  // numbers of questions: held, let go, held ...
  bool told_ = false;
};

}  // namespace graphize
