#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "base/append_file.h"
#include "base/lock_file.h"
#include "session/journal_text.h"

namespace graphize {

/// What a session's folder holds, beside the files of PictureSource::KeptCopy. The journal is
/// locked as long as its program runs. A new one, which begins with the whole document, takes the
/// old one's place when it is on the disk.
inline constexpr const char* kLockName = "lock";
inline constexpr const char* kJournalName = "journal";
inline constexpr const char* kNewJournalName = "journal.new";
// Behind the name of a picture's copy: what the raster remembers beside its pixels, where there is
// any (session/kept_raster.h).
inline constexpr const char* kFaintEnding = ".faint.csv";
inline constexpr const char* kColoursEnding = ".colours.bmp";
inline constexpr const char* kLastEditEnding = ".last-edit.csv";

/// Removes a session's folder, whose lock is held.
void RemoveSession(const std::filesystem::path& folder);

/// Keeps what is done on the disk, for the case that the program does not end as it should. After
/// every commit what it has made different is written; when that returns, only a power cut can take
/// it away, and after about a second none. An empty document leaves nothing on the disk.
class Journal {
 public:
  using Clock = std::int64_t (*)();  // seconds since 1970

  /// Sessions have their folders in `sessions`, which is made when it is needed; empty: nothing is
  /// kept. A journal larger than `most` bytes is written anew.
  explicit Journal(
      std::filesystem::path sessions = {}, std::size_t most = std::size_t{8} << 20,
      Clock clock = [] { return std::int64_t{std::time(nullptr)}; });

  /// Before a commit: the picture, where no step can make it again from a file, goes into the
  /// session's folder. Shows how far it is.
  void KeepPicture(Workspace& ws, const Desktop& desktop);
  /// The same with a copy that another session has kept. False when it cannot be had.
  bool TakePicture(Workspace& ws, const std::filesystem::path& copy);
  /// After a commit. Where it could not be written before, all of the document is.
  void Append(Workspace& ws, const DocumentDelta& delta);
  /// Waits until all of it is on the disk. False when not all of the document is.
  bool Flush();
  /// The user has ended the session: nothing stays.
  void Close();

  /// What the user has to know, once: why nothing is kept, or that all is again.
  std::string TakeNote() { return std::exchange(note_, {}); }
  /// Of this session; empty before there is one.
  const std::filesystem::path& Folder() const { return folder_; }

 private:
  bool Begin();
  /// False when there is nothing to write, or no place for it.
  bool Write(Workspace& ws, DocumentDelta delta, std::error_code& failure);
  std::error_code WriteWhole(Workspace& ws, const DocumentDelta& delta);
  void Tell(const std::error_code& failure);
  /// A journal that could not begin: nothing of the session stays on the disk.
  void LeaveNothing(Workspace& ws);
  std::filesystem::path FreePictureName() const;

  std::filesystem::path sessions_, folder_;
  std::size_t most_;
  Clock clock_;
  LockFile lock_;
  std::unique_ptr<AppendFile> file_;
  std::unique_ptr<AppendFile> before_;  // until the one that follows it is on the disk
  ToldCurves told_;
  std::vector<std::string> options_;  // as they were told last
  int projectsSaved_ = 0;
  int number_ = 0;         // of the last event
  std::size_t start_ = 0;  // bytes of the whole document at the beginning of the file
  bool whole_ = false;     // the file tells all of the document
  bool complained_ = false;
  std::weak_ptr<Raster> notKept_;  // the picture that could not be
  std::string note_;
};

}  // namespace graphize
