#include "base/whole_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/translation.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

std::error_code LastError() {
  // Some failures of the stdio functions leave no number; "no error" must not come of it.
  return {errno != 0 ? errno : EIO, std::generic_category()};
}

/// What can be opened, but is no file.
class NoFile : public std::error_category {
 public:
  const char* name() const noexcept override { return "no file"; }
  std::string message(int) const override { return Tr("It is no file, but a pipe or a device"); }
  std::error_condition default_error_condition(int) const noexcept override {
    return std::errc::not_supported;
  }
};

std::error_code OnlyRegular(const fs::file_status& status) {
  if (fs::is_regular_file(status)) return {};
  return std::make_error_code(fs::is_directory(status) ? std::errc::is_a_directory
                                                       : std::errc::not_supported);
}

/// Where the symbolic links at `path` lead, also when there is nothing yet.
fs::path FollowLinks(fs::path path, std::error_code& failure) {
  constexpr int kMostLinks = 40;  // as many as Linux follows
  for (int i = 0; i <= kMostLinks; ++i) {
    if (!fs::is_symlink(fs::symlink_status(path, failure))) {
      failure.clear();  // what is not there says so when it is opened
      return path;
    }
    const fs::path link = fs::read_symlink(path, failure);
    if (failure) return path;
    path = path.parent_path() / link;
  }
  failure = std::make_error_code(std::errc::too_many_symbolic_link_levels);
  return path;
}

/// Not made of the target's name, which may be as long as names can be.
fs::path TemporaryName(const fs::path& target, int number) {
  return target.parent_path() / (".graphize-save-" + std::to_string(number));
}

/// Takes away what a killed run has left at this name. A run holds a lock on its temporary file
/// until it ends, also over the network: the user's own file that nobody locks is a leftover. Where
/// locks are not known every file stays.
void RemoveLeftover(const fs::path& temporary) {
  const Descriptor file(
      open(temporary.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat opened = {}, named = {};
  if (!file.IsOpen() || fstat(file.Get(), &opened) != 0 || !S_ISREG(opened.st_mode) ||
      opened.st_nlink != 1 || opened.st_uid != geteuid())
    return;
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return;
  // Between opening and locking the name may have passed to another file.
  if (lstat(temporary.c_str(), &named) == 0 && named.st_ino == opened.st_ino &&
      named.st_dev == opened.st_dev)
    unlink(temporary.c_str());
}

/// A new, locked file of its own beside `target`; closed with errno set when there can be none.
Descriptor CreateTemporary(const fs::path& target, mode_t mode, fs::path& temporary) {
  constexpr int kMostNames = 1000, kNamesCleaned = 8;
  for (int i = 0; i < kNamesCleaned; ++i) RemoveLeftover(TemporaryName(target, i));
  for (int i = 0; i < kMostNames; ++i) {
    temporary = TemporaryName(target, i);
    Descriptor file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file.IsOpen()) {
      if (errno == EEXIST) continue;
      return file;
    }
    // Another run may just be taking the file for a leftover: then it is gone after the wait.
    while (flock(file.Get(), LOCK_EX) != 0 && errno == EINTR) continue;
    struct stat created = {};
    if (fstat(file.Get(), &created) != 0 || created.st_nlink > 0) return file;
  }
  errno = EEXIST;
  return Descriptor();
}

std::error_code Write(int file, std::string_view bytes) {
  errno = 0;
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return LastError();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

/// A file system that cannot flush at all says so with EINVAL.
bool IsFlushed(int result) {
  return result == 0 || errno == EINVAL;
}

std::error_code WriteToDisk(int file, std::string_view bytes, const std::function<bool()>& goesOn) {
  // What a disk takes in a few hundredths of a second. All at once it would be flushed in one call,
  // which nothing can stop.
  constexpr std::size_t kPiece = 4 << 20;
  const auto isStopped = [&] { return goesOn && !goesOn(); };
  for (; goesOn && bytes.size() > kPiece; bytes.remove_prefix(kPiece)) {
    if (isStopped()) return std::make_error_code(std::errc::operation_canceled);
    if (const std::error_code failure = Write(file, bytes.substr(0, kPiece))) return failure;
    if (!IsFlushed(fdatasync(file))) return LastError();
  }
  if (isStopped()) return std::make_error_code(std::errc::operation_canceled);
  if (const std::error_code failure = Write(file, bytes)) return failure;
  return IsFlushed(fsync(file)) ? std::error_code() : LastError();
}

/// Makes the new name last. Where that is impossible the file is whole all the same, and after a
/// power cut its name leads to the old or the new content.
void FlushFolder(const fs::path& folder) {
  const Descriptor file(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file.IsOpen()) fsync(file.Get());
}

}  // namespace

std::error_code ReadFileStart(const fs::path& path, std::size_t count, std::string& bytes) {
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (!failure) failure = OnlyRegular(status);
  if (failure) return failure;

  errno = 0;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return LastError();
  std::string content;
  // The size is a hint only: the file may grow or shrink meanwhile.
  std::error_code ignored;
  const std::uintmax_t size = fs::file_size(path, ignored);
  if (!ignored) content.reserve(static_cast<std::size_t>(std::min<std::uintmax_t>(size, count)));
  char block[16384];
  while (content.size() < count) {
    const std::size_t wanted = std::min(sizeof block, count - content.size());
    const std::size_t got = std::fread(block, 1, wanted, file);
    content.append(block, got);
    if (got < wanted) break;
  }
  if (std::ferror(file) != 0) failure = LastError();
  std::fclose(file);
  if (!failure) bytes = std::move(content);
  return failure;
}

std::error_code ReadWholeFile(const fs::path& path, std::size_t limit, std::string& bytes) {
  std::string content;
  const std::error_code failure = ReadFileStart(path, limit + 1, content);
  if (failure) return failure;
  if (content.size() > limit) return std::make_error_code(std::errc::file_too_large);
  bytes = std::move(content);
  return {};
}

Descriptor OpenToRead(const fs::path& path, std::uintmax_t& size, std::error_code& failure) {
  // Without waiting for the writer of a pipe, which is refused below.
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat opened = {};
  failure = file.IsOpen() && fstat(file.Get(), &opened) == 0 ? std::error_code() : LastError();
  static const NoFile noFile;
  if (!failure && !S_ISREG(opened.st_mode))
    failure = S_ISDIR(opened.st_mode) ? std::make_error_code(std::errc::is_a_directory)
                                      : std::error_code(1, noFile);
  size = static_cast<std::uintmax_t>(opened.st_size);
  return failure ? Descriptor() : std::move(file);
}

FileState StateOf(const Descriptor& file) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  struct stat status = {};
  if (fstat(file.Get(), &status) != 0) return {};
  return {.Size = static_cast<std::uintmax_t>(status.st_size),
          .Modified = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

std::optional<FileIdentity> IdentityOf(const fs::path& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return {};
  return FileIdentity{status.st_dev, status.st_ino};
}

std::error_code ReadAt(int file, std::uintmax_t offset, std::string& bytes) {
  std::size_t got = 0;
  while (got < bytes.size()) {
    const ssize_t part =
        pread(file, bytes.data() + got, bytes.size() - got, static_cast<off_t>(offset + got));
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return LastError();
    if (part == 0) break;
    got += static_cast<std::size_t>(part);
  }
  bytes.resize(got);
  return {};
}

std::error_code ReplaceWholeFile(const fs::path& path, std::string_view bytes,
                                 const std::function<bool()>& goesOn) {
  std::error_code failure;
  // Through a link, so that it is the linked file that is replaced.
  const fs::path target = FollowLinks(path, failure);
  if (failure) return failure;
  const fs::file_status old = fs::status(target, failure);
  const bool exists = fs::exists(old);
  if (failure && old.type() != fs::file_type::not_found) return failure;
  failure = exists ? OnlyRegular(old) : std::error_code();
  if (failure) return failure;
  constexpr fs::perms anyWrite =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if (exists && (old.permissions() & anyWrite) == fs::perms::none)
    return std::make_error_code(std::errc::permission_denied);

  const auto mode = static_cast<mode_t>(old.permissions() & fs::perms::all);
  const fs::path folder = target.parent_path();
  fs::path temporary;
  const Descriptor file = CreateTemporary(target, exists ? mode : 0666, temporary);
  if (!file.IsOpen()) return LastError();
  // Some network shares know no permissions: what was asked for above is then all there is.
  if (exists) static_cast<void>(fchmod(file.Get(), mode));
  failure = WriteToDisk(file.Get(), bytes, goesOn);
  // Still locked: nobody else's file can come to have the name before it is renamed.
  if (!failure) fs::rename(temporary, target, failure);
  std::error_code ignored;
  if (failure)
    fs::remove(temporary, ignored);
  else
    FlushFolder(folder);
  return failure;
}

}  // namespace graphize
