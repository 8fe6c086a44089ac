#pragma once

#include "batch/arguments.h"

namespace graphize {

/// The program as its --help shows it, and its commands: all that they take and say of themselves.
CommandSpec ProgramSpec();
CommandSpec DigitizeSpec();
CommandSpec ReplaySpec();
CommandSpec ExportSpec();
CommandSpec AxesSpec();

}  // namespace graphize
