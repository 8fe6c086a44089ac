#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace graphize {

/// One step of workspace/replay.h, and where it comes from: "line 12" or "--trace 70,430".
struct BatchStep {
  std::string Text;
  std::string Origin;
  int Picture = 0;  // index into the job's pictures, for "open"
};

enum class TableFormat { Dat, Csv, Json };

struct JobResult {
  std::string Table;               // the file's content
  std::vector<std::string> Notes;  // what else there is to tell, such as sums
};

/// Does the steps on a workspace of its own and makes the table of its list. Throws RunTimeError
/// that begins with the origin of the step that went wrong.
JobResult RunJob(const std::vector<BatchStep>& steps,
                 const std::vector<std::filesystem::path>& pictures, TableFormat format);

}  // namespace graphize
