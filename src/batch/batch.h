#pragma once

#include <string>
#include <vector>

#include "batch/run_jobs.h"

namespace graphize {

/// Whether the words behind the program's name ask for something that needs no window: a command,
/// or "--help" and "--version".
bool IsBatch(const std::vector<std::string>& words);

/// Runs it. The exit status: 0 when all went well, 1 when a picture could not be done, 2 when the
/// command line cannot be understood, which is told in one line on Err.
int RunBatch(const std::vector<std::string>& words, const BatchStreams& streams);

}  // namespace graphize
