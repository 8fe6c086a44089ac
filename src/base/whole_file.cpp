#include "base/whole_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

namespace graphize {

namespace {

namespace fs = std::filesystem;

std::error_code LastError() {
  // Some failures of the stdio functions leave no number; "no error" must not come of it.
  return {errno != 0 ? errno : EIO, std::generic_category()};
}

std::error_code OnlyRegular(const fs::file_status& status) {
  if (fs::is_regular_file(status)) return {};
  return std::make_error_code(fs::is_directory(status) ? std::errc::is_a_directory
                                                       : std::errc::not_supported);
}

/// A new file of its own beside `target`; null with errno set when there can be none.
std::FILE* CreateTemporary(const fs::path& target, fs::path& temporary) {
  // Not made of the target's name, which may be as long as names can be.
  for (int i = 0; i < 1000; ++i) {
    temporary = target.parent_path() / (".graphize-save-" + std::to_string(i));
    errno = 0;
    std::FILE* file = std::fopen(temporary.c_str(), "wbx");
    if (file != nullptr || errno != EEXIST) return file;
  }
  return nullptr;
}

std::error_code WriteAndClose(std::FILE* file, std::string_view bytes) {
  errno = 0;
  std::error_code failure;
  if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || std::fflush(file) != 0)
    failure = LastError();
  if (std::fclose(file) != 0 && !failure) failure = LastError();
  return failure;
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

std::error_code ReplaceWholeFile(const fs::path& path, std::string_view bytes) {
  std::error_code failure;
  // Through a link, so that it is the linked file that is replaced.
  const fs::path target = fs::weakly_canonical(path, failure);
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

  fs::path temporary;
  std::FILE* file = CreateTemporary(target, temporary);
  if (file == nullptr) return LastError();
  failure = WriteAndClose(file, bytes);
  if (!failure && exists) fs::permissions(temporary, old.permissions(), failure);
  if (!failure) fs::rename(temporary, target, failure);
  std::error_code ignored;
  if (failure) fs::remove(temporary, ignored);
  return failure;
}

}  // namespace graphize
