#pragma once

#include <span>
#include <string>

#include "workspace/step.h"

namespace graphize {

/// What "Undo" and "Redo" call the last of these steps that they go back behind: "Trace (734
/// points)" with the number of points that were captured. Empty when all of them are passing:
/// modes, options, a refresh, a saved file.
std::string NameOfChange(std::span<const Step> done, int points);

}  // namespace graphize
