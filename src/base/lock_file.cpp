#include "base/lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace graphize {

bool LockFile::Take(const std::filesystem::path& path) {
  return Take(path, O_CREAT);
}

bool LockFile::TakeExisting(const std::filesystem::path& path) {
  return Take(path, 0);
}

bool LockFile::Take(const std::filesystem::path& path, int flags) {
  Descriptor file(open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | flags, 0600));
  if (!file.IsOpen() || flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return false;
  // Whoever held it before may have removed it between the opening and the taking.
  struct stat taken = {}, named = {};
  if (fstat(file.Get(), &taken) != 0 || lstat(path.c_str(), &named) != 0 ||
      taken.st_ino != named.st_ino || taken.st_dev != named.st_dev)
    return false;
  file_ = std::move(file);
  return true;
}

int ProcessNumber() {
  return getpid();
}

}  // namespace graphize
