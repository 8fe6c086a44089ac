#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace graphize::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "graphize-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = fs::canonical(name);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::vector<std::string> TemporaryFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(path_))
    names.push_back(entry.path().lexically_relative(path_).string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  EXPECT_TRUE(file.good()) << path;
}

}  // namespace graphize::test
