#pragma once

#include "batch/arguments.h"
#include "batch/run_jobs.h"

namespace graphize {

/// "graphize export": a project's points as the window FRM_Export writes them. False when the file
/// cannot be written, which is told. Throws UsageError and RunTimeError.
bool ExportProject(const CommandLine& line, const BatchStreams& streams);

}  // namespace graphize
