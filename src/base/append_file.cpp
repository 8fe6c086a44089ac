#include "base/append_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

namespace graphize {

namespace {

constexpr std::chrono::seconds kFlushEvery(1);

std::error_code LastError() {
  return {errno != 0 ? errno : EIO, std::generic_category()};
}

void FlushFolder(const std::filesystem::path& path) {
  const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.IsOpen()) fsync(folder.Get());
}

}  // namespace

AppendFile::~AppendFile() {
  static_cast<void>(Flush());
}

std::error_code AppendFile::Create(const std::filesystem::path& path,
                                   const std::filesystem::path& replaced) {
  errno = 0;
  file_ = Descriptor(
      open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file_.IsOpen()) return LastError();
  path_ = path;
  replaced_ = replaced;
  folder_ = replaced.parent_path();
  waits_ = true;
  try {
    thread_ = std::jthread([this](const std::stop_token& stop) { FlushNowAndThen(stop); });
  } catch (const std::system_error&) {
    // No thread: each Append flushes.
  }
  return {};
}

std::error_code AppendFile::Append(std::string_view bytes) {
  if (!file_.IsOpen() || torn_) return std::make_error_code(std::errc::io_error);
  {
    const std::lock_guard held(mutex_);
    if (failure_) return std::exchange(failure_, {});
  }
  errno = 0;
  const auto size = static_cast<off_t>(size_);
  for (std::string_view rest = bytes; !rest.empty();) {
    const ssize_t written = write(file_.Get(), rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      const std::error_code failure = LastError();
      // Where even that fails, readers find a torn end, and nothing may come behind it.
      if (ftruncate(file_.Get(), size) != 0) torn_ = true;
      return failure;
    }
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
  std::unique_lock held(mutex_);
  size_ += bytes.size();
  if (!std::exchange(waits_, true)) changed_.notify_all();
  if (!thread_.joinable()) FlushOnce(held);
  return {};
}

std::error_code AppendFile::Flush() {
  std::unique_lock held(mutex_);
  changed_.wait(held, [this] { return !flushes_; });
  if (waits_ && file_.IsOpen()) FlushOnce(held);
  return std::exchange(failure_, {});
}

void AppendFile::FlushOnce(std::unique_lock<std::mutex>& held) {
  waits_ = false;
  flushes_ = true;
  const int file = file_.Get();
  const bool takesPlace = size_ > 0 && !replaced_.empty();
  held.unlock();
  errno = 0;
  // A file system that cannot flush at all says so with EINVAL.
  std::error_code failure;
  if (fdatasync(file) != 0 && errno != EINVAL) failure = LastError();
  if (!failure && takesPlace) std::filesystem::rename(path_, replaced_, failure);
  if (!failure && takesPlace) FlushFolder(folder_);
  held.lock();
  if (!failure && takesPlace) path_ = std::exchange(replaced_, {});
  failure_ = failure;
  flushes_ = false;
  changed_.notify_all();
}

void AppendFile::FlushNowAndThen(const std::stop_token& stop) {
  std::unique_lock held(mutex_);
  while (changed_.wait(held, stop, [this] { return waits_ && !flushes_; })) {
    FlushOnce(held);
    changed_.wait_for(held, stop, kFlushEvery, [] { return false; });
  }
}

}  // namespace graphize
