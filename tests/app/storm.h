#pragma once

#include <filesystem>

namespace graphize::test {

inline constexpr const char* kStorm = "--storm";

/// So many random events of a seed on the real window: pictures, modes, forms, files, tools, zoom,
/// undo, projects; the files are in `folder`. Between them it is looked whether the document is
/// what the journal tells, whether undoing all and doing it again leads back to it, and whether the
/// list is the captured points where it says so. 0, or 1 with what was found on the standard error.
int DoStorm(const std::filesystem::path& folder, unsigned seed, int events);

}  // namespace graphize::test
