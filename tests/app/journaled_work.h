#pragma once

#include <filesystem>

namespace graphize::test {

inline constexpr const char* kJournaledWork = "--journaled-work";
inline constexpr const char* kWorkPicture = "plot.bmp";
inline constexpr const char* kWorkSessions = "sessions";

/// A piece of work in the real window, event by event, on the picture in `folder`, where its
/// session is kept, too. After every event the number of events and the Crc32 of the document's
/// text are written as a line to the standard output. Then it waits to be killed.
int DoJournaledWork(const std::filesystem::path& folder, unsigned seed);

}  // namespace graphize::test
