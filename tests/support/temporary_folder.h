#pragma once

#include <signal.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/temporary_folder.h"

namespace graphize::test {

/// A folder of the test's own, removed with all that is in it.
class TemporaryFolder : public graphize::TemporaryFolder {
 public:
  /// What is in it, hidden files included: names from here, sorted.
  std::vector<std::string> Names() const;
};

/// The file's bytes; a test failure when it cannot be read. And the way back, folders included.
std::string BytesOf(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

/// While it lives no file can grow beyond `bytes`, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &old_); }

 private:
  rlimit old_{};
};

}  // namespace graphize::test
