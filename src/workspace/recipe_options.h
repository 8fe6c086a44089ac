#pragma once

#include <span>
#include <string>

namespace graphize {

struct Workspace;

/// An option that decides what a step does or how points are written. A recipe has it as
/// "set NAME VALUE".
struct RecipeOption {
  const char* Name;
  std::string (*Read)(const Workspace&);
  /// False for a value that it cannot have.
  bool (*Take)(Workspace&, const std::string& value);
};

std::span<const RecipeOption> RecipeOptions();

/// The option of that name; null when there is none.
const RecipeOption* FindRecipeOption(const std::string& name);

}  // namespace graphize
