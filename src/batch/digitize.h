#pragma once

#include <span>
#include <vector>

#include "batch/arguments.h"
#include "batch/job.h"

namespace graphize {

/// The options of "graphize digitize", without those of the output.
std::span<const OptionSpec> DigitizeOptions();

/// The steps that these options ask for on one picture: opening and settings, the axes, then
/// cleaning and capturing in the order given, then the list's operations in the order given. Throws
/// UsageError that names the option.
std::vector<BatchStep> DigitizeSteps(const CommandLine& line);

}  // namespace graphize
