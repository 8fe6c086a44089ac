#include "support/include_levels.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <string_view>
#include <utility>

namespace graphize::test {

namespace {

namespace fs = std::filesystem;

using Levels = std::map<std::string, int>;

/// Reads the lines "| 2 | `raster/` | ... |".
Levels ReadLevels(const fs::path& readme, std::vector<std::string>& broken) {
  static const std::regex kLevel(R"(\| (\d+) \| `(\w+)/` \|.*)");
  Levels levels;
  std::ifstream file(readme);
  std::smatch match;
  for (std::string line; std::getline(file, line);)
    if (std::regex_match(line, match, kLevel) &&
        !levels.emplace(match.str(2), std::stoi(match.str(1))).second)
      broken.push_back("src/README.md: two levels for " + match.str(2) + "/");
  if (levels.empty()) broken.push_back("src/README.md: no table of levels");
  return levels;
}

bool EndsLikeWidget(std::string stem) {
  if (stem.ends_with("_test")) stem.resize(stem.size() - 5);
  return stem.ends_with("_panel") || stem.ends_with("_dialog") || stem.ends_with("_view");
}

/// The folder whose rules a file keeps: its own, or widgets/ for a widget beside its logic. `path`
/// is relative to src/ or tests/.
std::string FolderOf(const fs::path& path) {
  if (!path.has_parent_path()) return "";
  const std::string folder = path.begin()->string();
  return folder != "app" && EndsLikeWidget(path.stem().string()) ? "widgets" : folder;
}

/// What follows "#include", its delimiters included; empty for any other line.
std::string IncludeOf(const std::string& line) {
  static const std::regex kInclude(R"re(\s*#\s*include\s*(<[^>]*>|"[^"]*"|.*).*)re");
  std::smatch match;
  return std::regex_match(line, match, kInclude) ? match.str(1) : "";
}

bool IsStandard(std::string_view header) {
  return header.find_first_not_of("abcdefghijklmnopqrstuvwxyz_") == std::string_view::npos;
}

/// The folder of a module that shuts a library in; empty for any other file.
std::string ModuleOf(const fs::path& path) {
  const std::string folder = path.parent_path().generic_string();
  constexpr std::string_view kModules[] = {"codecs/direct", "codecs/picbuf", "codecs/decoder",
                                           "scanner/sane", "finding_axes/tesseract"};
  return std::ranges::count(kModules, folder) > 0 ? folder : "";
}

/// The one file or folder that sees a library, by how its headers start.
constexpr std::pair<std::string_view, std::string_view> kLibraries[] = {
    {"Magick", "codecs/picbuf"},
    {"magick/", "codecs/picbuf"},
    {"tiffio.h", "codecs/direct"},
    {"png.h", "codecs/direct"},
    {"jpeglib.h", "codecs/direct"},
    {"isa-l.h", "codecs/direct"},
    {"sane/", "scanner/sane"},
    {"dlfcn.h", "base/module.cpp"},
    {"zlib.h", "base/checksum.cpp"},
    {"zlib.h", "base/zip_file.cpp"},
    {"tesseract/", "finding_axes/tesseract"},
    {"omp.h", "finding_axes/tesseract"},
    {"nlohmann/", "base/json.cpp"},
    {"CLI/", "batch/arguments.cpp"},
};

/// The places of the logic that see the system, and which of its headers.
constexpr std::pair<std::string_view, std::string_view> kSystemPlaces[] = {
    {"base/append_file.cpp", " fcntl.h sys/file.h sys/stat.h unistd.h "},
    {"base/child_process.cpp",
     " fcntl.h poll.h sched.h signal.h spawn.h sys/socket.h sys/wait.h unistd.h "},
    {"base/cores.cpp", " sched.h "},
    {"base/descriptor.cpp", " unistd.h "},
    {"base/lock_file.cpp", " fcntl.h sys/file.h sys/stat.h unistd.h "},
    {"base/memory_file.cpp", " fcntl.h sys/mman.h sys/stat.h unistd.h "},
    {"base/whole_file.cpp", " fcntl.h sys/file.h sys/stat.h unistd.h "},
    {"codecs/picbuf", " malloc.h "},
    {"codecs/decoder",
     " fcntl.h linux/audit.h linux/filter.h linux/landlock.h linux/sched.h linux/seccomp.h poll.h "
     "sched.h sys/mman.h sys/prctl.h sys/resource.h sys/syscall.h sys/wait.h unistd.h "},
};

bool SeesSystem(const fs::path& path, std::string_view header) {
  const std::string word = ' ' + std::string(header) + ' ';
  return std::ranges::any_of(kSystemPlaces, [&](const auto& place) {
    return (path == place.first || path.parent_path() == place.first) &&
           place.second.find(word) != std::string_view::npos;
  });
}

/// A header in angle brackets: what is wrong with it here, or nothing.
std::string CheckLibrary(const fs::path& path, bool isTest, std::string_view header) {
  const std::string folder = FolderOf(path);
  const bool seesQt = folder == "app" || folder == "widgets";
  const bool isQt = header.starts_with('Q') || header.starts_with("qpa/") ||
                    (header.starts_with('q') && header.ends_with(".h"));
  if (isQt) return seesQt ? "" : "Qt is for app/ and widgets";
  if (isTest) return "";
  std::string wrong;
  for (const auto& [start, place] : kLibraries) {
    if (!header.starts_with(start)) continue;
    if (path == place || path.parent_path() == place) return "";
    wrong = "this library is for " + std::string(place);
  }
  if (!wrong.empty()) return wrong;
  return seesQt || SeesSystem(path, header) || IsStandard(header)
             ? ""
             : "logic has the standard library only";
}

/// The folder whose level a folder of tests/ has: what tests share stands where widgets stand,
/// above the logic, and what feeds every reader above that.
std::string LevelOfTests(const std::string& folder) {
  if (folder == "support") return "widgets";
  return folder == "fuzz" || folder == "faults" ? "app" : folder;
}

/// A header in quotes: what is wrong with it here, or nothing.
std::string CheckOwn(const fs::path& root, const Levels& levels, const fs::path& path, bool isTest,
                     const fs::path& header) {
  const bool inTests = isTest && fs::exists(root / "tests" / header);
  if (header != header.lexically_normal() || (!inTests && !fs::exists(root / "src" / header)))
    return "no such file: paths are written from src/ (or tests/)";
  if (const std::string module = ModuleOf(header); !module.empty() && ModuleOf(path) != module)
    return module + "/ is seen by itself alone";
  const std::string from = FolderOf(path), to = FolderOf(header);
  if (inTests && (to == "support" || to == from)) return "";
  if (!levels.contains(to)) return to + "/ is not in the table";
  const int level = levels.at(isTest ? LevelOfTests(from) : from);
  if (from == to || levels.at(to) < level) return "";
  return from + "/ does not see " + to + "/";
}

void CheckFile(const fs::path& root, const Levels& levels, const fs::path& path, bool isTest,
               std::vector<std::string>& broken) {
  const std::string name = (isTest ? "tests/" : "src/") + path.generic_string();
  const std::string folder = FolderOf(path);
  if (!levels.contains(isTest ? LevelOfTests(folder) : folder))
    return broken.push_back(name + ": its folder is not in the table");
  std::ifstream file(root / name);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    const std::string include = IncludeOf(line);
    if (include.empty()) continue;
    std::string wrong = "neither <> nor \"\"";
    if (include.size() > 2 && include.back() == '>')
      wrong = CheckLibrary(path, isTest, include.substr(1, include.size() - 2));
    else if (include.size() > 2 && include.front() == '"')
      wrong = CheckOwn(root, levels, path, isTest, include.substr(1, include.size() - 2));
    if (!wrong.empty())
      broken.push_back(name + ":" + std::to_string(number) + ": " + include + ": " + wrong);
  }
}

}  // namespace

std::vector<std::string> BrokenIncludes(const fs::path& root) {
  std::vector<std::string> broken;
  const Levels levels = ReadLevels(root / "src/README.md", broken);
  for (const char* needed : {"app", "widgets"})
    if (!levels.contains(needed))
      broken.push_back(std::string("src/README.md: no level for ") + needed + "/");
  if (!broken.empty()) return broken;
  for (const bool isTest : {false, true}) {
    const fs::path base = root / (isTest ? "tests" : "src");
    for (const auto& entry : fs::recursive_directory_iterator(base)) {
      const std::string extension = entry.path().extension().string();
      if (extension == ".h" || extension == ".cpp")
        CheckFile(root, levels, entry.path().lexically_relative(base), isTest, broken);
    }
  }
  std::sort(broken.begin(), broken.end());
  return broken;
}

}  // namespace graphize::test
