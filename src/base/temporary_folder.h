#pragma once

#include <filesystem>
#include <string>

namespace graphize {

/// A new folder that only this user can read; with all that is in it, it goes with the object.
class TemporaryFolder {
 public:
  /// RunTimeError when there can be none.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace graphize
