#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "desktop/desktop.h"
#include "workspace/workspace.h"

namespace graphize {

/// A workspace as the program starts with it, but with the built-in options instead of the user's:
/// what a recipe's steps begin on.
void StartReplay(Workspace& ws);

/// Does one step of a recipe (workspace/recipe.h). "open" reads `picture`. Nothing when it was
/// done, else what is wrong with it in plain words; the workspace is of no use then. Run-time
/// errors and messages of the operations are the caller's to catch.
std::optional<std::string> ReplayStep(Workspace& ws, const Desktop& desktop,
                                      const std::string& step,
                                      const std::filesystem::path& picture);

}  // namespace graphize
