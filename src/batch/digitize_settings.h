#pragma once

#include <vector>

#include "batch/arguments.h"
#include "batch/batch_step.h"

namespace graphize {

/// The options of "graphize digitize" that are settings of the program, each as its step: how axes
/// are scaled, what snaps, how is traced, and how numbers are written. Throws UsageError that names
/// the option.
std::vector<BatchStep> SettingSteps(const CommandLine& line);

}  // namespace graphize
