#pragma once

#include <filesystem>
#include <system_error>
#include <vector>

namespace graphize {

// Pictures and projects that were opened or saved last, the newest first, in a file of its own.

inline constexpr std::size_t kMostRecentFiles = 10;

/// The list with `file` in front, and nowhere else.
void NoteOpened(std::vector<std::filesystem::path>& files, const std::filesystem::path& file);

/// None where the list cannot be read, or there is none.
std::vector<std::filesystem::path> ReadRecentFiles(const std::filesystem::path& list);
/// `files`, the newest first, come in front of those that the list holds by then.
[[nodiscard]] std::error_code AddRecentFiles(const std::filesystem::path& list,
                                             const std::vector<std::filesystem::path>& files);

}  // namespace graphize
