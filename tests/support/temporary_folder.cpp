#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace graphize::test {

namespace fs = std::filesystem;

std::vector<std::string> TemporaryFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(Path()))
    names.push_back(entry.path().lexically_relative(Path()).string());
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
