#include "settings/recent_files.h"

#include <algorithm>
#include <string>

#include "base/tokens.h"
#include "base/whole_file.h"

namespace graphize {

namespace fs = std::filesystem;

void NoteOpened(std::vector<fs::path>& files, const fs::path& file) {
  files.erase(std::remove(files.begin(), files.end(), file), files.end());
  files.insert(files.begin(), file);
  if (files.size() > kMostRecentFiles) files.resize(kMostRecentFiles);
}

std::vector<fs::path> ReadRecentFiles(const fs::path& list) {
  constexpr std::size_t kLargest = 1 << 20;
  std::string text;
  std::vector<fs::path> files;
  if (ReadWholeFile(list, kLargest, text)) return files;
  for (std::size_t at = 0; at < text.size() && files.size() < kMostRecentFiles;) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const auto words = Tokenize(std::string_view(text).substr(at, end - at));
    if (words && words->size() == 1 && !words->front().empty()) files.emplace_back(words->front());
    at = end + 1;
  }
  return files;
}

std::error_code AddRecentFiles(const fs::path& list, const std::vector<fs::path>& files) {
  std::vector<fs::path> all = ReadRecentFiles(list);
  for (auto file = files.rbegin(); file != files.rend(); ++file) NoteOpened(all, *file);
  std::string text;
  for (const fs::path& file : all) text += Quote(file.string()) + "\n";
  std::error_code failure;
  fs::create_directories(list.parent_path(), failure);
  return failure ? failure : ReplaceWholeFile(list, text);
}

}  // namespace graphize
