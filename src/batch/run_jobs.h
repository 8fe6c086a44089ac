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
  std::istream* In = nullptr;  // the picture "-"
};

/// The same steps on one set of pictures, and where the table goes: a file, or "-" for the standard
/// output.
struct Job {
  std::string Name;  // of the picture, in messages
  std::vector<std::filesystem::path> Pictures;
  std::filesystem::path Output;         // empty: there is no table
  std::filesystem::path PictureOutput;  // empty: the picture is not written
};

struct RunOptions {
  JobOptions Table;
  bool Force = false;            // replace files that exist
  bool Quiet = false;            // no notes and no progress
  int Workers = 0;               // 0: one more than the cores it may use
  std::filesystem::path Report;  // of each picture (batch/page_report.h); empty: none is written
};

/// The operands of --output and --save-picture; empty where the option is not given.
struct OutputNames {
  std::string Table;
  std::string Picture;
  TableFormat Format = TableFormat::Dat;
};

/// Where the tables and the cleaned pictures of `pictures` go: the file that is named, or files in
/// that folder when it is one, ends in a slash or there are several pictures. Throws UsageError
/// when two of them would meet, or one and a picture or another of `inputs`.
std::vector<Job> MakeJobs(const std::vector<std::filesystem::path>& pictures,
                          const OutputNames& outputs,
                          const std::vector<std::filesystem::path>& inputs = {});

/// Runs all jobs, several at a time; one that fails does not stop the others. Errors go to Err, one
/// line each, and are counted at the end. True when all went well. A file holds the old or the new
/// content, never a part. The report is written when all are done.
bool RunJobs(const std::vector<BatchStep>& steps, const std::vector<Job>& jobs,
             const RunOptions& options, const BatchStreams& streams);

}  // namespace graphize
