#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/descriptor.h"

namespace graphize {

/// All bytes of a regular file of at most `limit` bytes. On failure the reason, and `bytes` keeps
/// what it held. Folders, pipes and devices are refused before anything is read from them.
[[nodiscard]] std::error_code ReadWholeFile(const std::filesystem::path& path, std::size_t limit,
                                            std::string& bytes);

/// The same for the first `count` bytes, or all of a shorter file.
[[nodiscard]] std::error_code ReadFileStart(const std::filesystem::path& path, std::size_t count,
                                            std::string& bytes);

/// A regular file, opened to be read, and its size; closed, and the reason in `failure`, where that
/// cannot be.
Descriptor OpenToRead(const std::filesystem::path& path, std::uintmax_t& size,
                      std::error_code& failure);

/// By which an open file is known to have been written to between two looks.
struct FileState {
  std::uintmax_t Size = 0;
  std::int64_t Modified = 0;  // nanoseconds since 1970
  bool operator==(const FileState&) const = default;
};
FileState StateOf(const Descriptor& file);

/// Which file a path leads to, also by links: of two paths the same where they lead to the same
/// one. Nothing where there is none.
struct FileIdentity {
  std::uint64_t Device = 0, Number = 0;

  bool operator==(const FileIdentity&) const = default;
  bool operator<(const FileIdentity& other) const {
    return Device != other.Device ? Device < other.Device : Number < other.Number;
  }
};
std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path);

/// The bytes of an open file from `offset` on, as many as `bytes` holds; it is cut to what there
/// is.
[[nodiscard]] std::error_code ReadAt(int file, std::uintmax_t offset, std::string& bytes);

/// Puts `bytes` in the place of the file, or makes it: at any time the path holds the old or the
/// new content whole, also after a power cut. Written to a temporary file in the same folder,
/// flushed to the disk, then renamed; on failure the reason comes back, the old file is as it was
/// and nothing stays behind. What killed runs have left in the folder is removed. A symbolic link
/// stays one, also where what it leads to does not exist yet; permissions are kept where the file
/// system knows them, and a write-protected file is refused, even to root. A large file is written
/// and flushed piece by piece: before each `goesOn` is asked, and where it is false the reason is
/// operation_canceled.
[[nodiscard]] std::error_code ReplaceWholeFile(const std::filesystem::path& path,
                                               std::string_view bytes,
                                               const std::function<bool()>& goesOn = {});

}  // namespace graphize
