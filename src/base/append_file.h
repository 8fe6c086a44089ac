#pragma once

#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>

#include "base/descriptor.h"

namespace graphize {

/// A file that grows by pieces, each of which is there whole or not at all. They survive the end of
/// the program from the moment they were appended, and a power cut about a second later: a thread
/// beside flushes them to the disk.
class AppendFile {
 public:
  AppendFile() = default;
  /// Flushes what is not on the disk yet.
  ~AppendFile();
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;

  /// First of all, once: makes the file, empty, also when there is one. When its first content is
  /// on the disk, it takes the place of `replaced`, unless that is empty; until then both are
  /// there.
  [[nodiscard]] std::error_code Create(const std::filesystem::path& path,
                                       const std::filesystem::path& replaced = {});
  /// On failure the file holds what it held before. A failure to flush what was appended before is
  /// told here, once.
  [[nodiscard]] std::error_code Append(std::string_view bytes);
  /// Waits until all of it is on the disk.
  [[nodiscard]] std::error_code Flush();
  std::size_t Size() const { return size_; }

 private:
  void FlushNowAndThen(const std::stop_token& stop);
  void FlushOnce(std::unique_lock<std::mutex>& held);

  Descriptor file_;
  std::filesystem::path path_, replaced_, folder_;
  bool torn_ = false;  // a piece at the end that could not be taken back

  std::mutex mutex_;  // for all below, and for the paths
  std::size_t size_ = 0;
  std::condition_variable_any changed_;
  bool waits_ = false;  // something is not on the disk
  bool flushes_ = false;
  std::error_code failure_;
  std::jthread thread_;
};

}  // namespace graphize
