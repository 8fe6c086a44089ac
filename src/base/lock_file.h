#pragma once

#include <filesystem>

#include "base/descriptor.h"

namespace graphize {

/// A file that one program at a time holds, until it lets go or ends, however it ends.
class LockFile {
 public:
  /// Makes the file where it is missing and takes it, without waiting. False when another program
  /// holds it, or nobody can know; and when the file was removed meanwhile.
  bool Take(const std::filesystem::path& path);
  /// The same without making it.
  bool TakeExisting(const std::filesystem::path& path);
  void LetGo() { file_ = Descriptor(); }
  bool IsHeld() const { return file_.IsOpen(); }

 private:
  bool Take(const std::filesystem::path& path, int flags);
  Descriptor file_;
};

/// This program's process: no other that runs on this computer has the same number.
int ProcessNumber();

}  // namespace graphize
