#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include "batch/job.h"

namespace graphize {

/// The streams of a run without a window.
struct BatchStreams {
  std::ostream& Out;
  std::ostream& Err;
  bool ErrIsTerminal = false;
};

/// The same steps on one set of pictures, and where the table goes: a file, or "-" for the standard
/// output.
struct Job {
  std::string Name;  // of the picture, in messages
  std::vector<std::filesystem::path> Pictures;
  std::filesystem::path Output;
};

struct RunOptions {
  TableOptions Table;
  bool Force = false;  // replace files that exist
  bool Quiet = false;  // no notes and no progress
  int Workers = 0;     // 0: one for each core
};

/// Where the tables of `pictures` go for the operand of --output: that file, or files in that
/// folder when it is one, ends in a slash or there are several pictures. Throws UsageError when two
/// tables would meet, or one and a picture or another of `inputs`.
std::vector<Job> MakeJobs(const std::vector<std::filesystem::path>& pictures,
                          const std::string& output, TableFormat format,
                          const std::vector<std::filesystem::path>& inputs = {});

/// Runs all jobs, several at a time; one that fails does not stop the others. Errors go to Err, one
/// line each, and are counted at the end. True when all went well. A file holds the old or the new
/// content, never a part.
bool RunJobs(const std::vector<BatchStep>& steps, const std::vector<Job>& jobs,
             const RunOptions& options, const BatchStreams& streams);

}  // namespace graphize
