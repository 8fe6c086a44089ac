#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace graphize::test {

/// A folder of the test's own, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  /// What is in it, hidden files included: names from here, sorted.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path path_;
};

/// The file's bytes; a test failure when it cannot be read. And the way back, folders included.
std::string BytesOf(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

}  // namespace graphize::test
