#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/lock_file.h"
#include "session/journal_reading.h"

namespace graphize {

/// A session whose program did not end as it should. While this lives, nobody else sees it.
struct LeftSession {
  std::filesystem::path Folder;
  LockFile Lock;
  JournalledDocument Kept;
  std::string Fault;  // why nothing can be brought back, in plain words; empty when it can

  /// "734 points of plot1.bmp, 14:02"; with the day where it is not that of `now`, seconds since
  /// 1970. With a fault or damage, that too.
  std::string Describe(std::int64_t now) const;
};

/// The folders in which sessions may have been left, newest first. Looks at no content.
std::vector<std::filesystem::path> SessionFolders(const std::filesystem::path& sessions);

/// The session in this folder. Nothing when its program runs, and when nothing in it would be
/// missed: then it is removed.
std::optional<LeftSession> FindLeftSession(const std::filesystem::path& folder);

/// The picture of a session is made again in `made`, a workspace at its start: its file is read
/// again, and the steps that change a picture are done again. What is in the way, in plain words;
/// empty when the picture is exactly as it was.
std::string RestorePicture(const LeftSession& session, Workspace& made, const Desktop& desktop);

/// The session takes the place of the document that is there. With `made` its picture comes from
/// there, else the points alone are brought back.
void BringBackSession(Workspace& ws, const Desktop& desktop, const LeftSession& session,
                      Workspace* made);

}  // namespace graphize
