#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace graphize::test {

/// Every include in src/ and tests/ below `root` that breaks the rules of src/README.md, as
/// "file:line: what is wrong", sorted; the table of levels is read from there.
std::vector<std::string> BrokenIncludes(const std::filesystem::path& root);

}  // namespace graphize::test
