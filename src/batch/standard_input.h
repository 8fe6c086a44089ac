#pragma once

#include <istream>
#include <optional>
#include <vector>

#include "base/temporary_folder.h"
#include "batch/run_jobs.h"

namespace graphize {

/// The picture "-" of the jobs: while this lives it is a file of its own, for pictures are read
/// from files that can be looked at twice. Throws UsageError when it is asked for twice and
/// RunTimeError when it cannot be read or kept.
class StandardInput {
 public:
  StandardInput(std::vector<Job>& jobs, std::istream* in);
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

  /// Where that file is; empty where no picture is "-".
  std::filesystem::path Folder() const {
    return folder_ ? folder_->Path() : std::filesystem::path();
  }

 private:
  void Keep(std::istream& in);

  std::optional<TemporaryFolder> folder_;  // none: no picture comes from there
};

}  // namespace graphize
