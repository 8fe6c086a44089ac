#pragma once

#include <span>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "workspace/outcome.h"
#include "workspace/step.h"

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
/// All values, in that order.
std::vector<std::string> OptionValues(const Workspace& ws);

/// Refused when there is no such option, or it cannot have this value.
Outcome Run(Workspace& ws, const Desktop& desktop, const SetStep& step);

}  // namespace graphize
