#pragma once

#include <vector>

#include "batch/arguments.h"
#include "batch/job.h"

namespace graphize {

/// Whether the options of "graphize digitize" ask for the picture alone: --save-picture,
/// and neither --output nor anything that captures points.
bool IsPictureOnly(const CommandLine& line);

/// The steps that these options ask for on one picture: opening, reduction and image tools in the
/// order given, the settings, the axes, then cleaning and capturing in the order given, then the
/// list's operations in the order given. Throws UsageError that names the option.
std::vector<BatchStep> DigitizeSteps(const CommandLine& line);

}  // namespace graphize
