#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace graphize {

/// A file to be stored in an archive.
struct ZipMember {
  std::string Name;
  std::string_view Bytes;
};

/// A ZIP archive (APPNOTE 6.3) of these files in this order, stored as they are, with fixed dates:
/// equal files give equal bytes. RunTimeError for 4 GiB and more.
std::string ZipBytes(const std::vector<ZipMember>& members);

/// An archive that is read from memory. Whatever does not fit together, also what lies over
/// something else, is a RunTimeError in plain words.
class ZipReader {
 public:
  struct Entry {
    std::string Name;
    bool Deflated = false;
    std::uint32_t Checksum = 0;        // Crc32 of the file
    std::size_t Size = 0;              // of the file, bytes
    std::size_t Offset = 0, Held = 0;  // where and how long it is in the archive
  };

  /// `bytes` have to outlive it. At most `mostEntries` files.
  ZipReader(std::string_view bytes, std::size_t mostEntries);

  const std::vector<Entry>& Entries() const { return entries_; }
  const Entry* Find(std::string_view name) const;
  /// A file, stored or deflated, of at most `limit` bytes, that has its checksum.
  std::string Read(const Entry& entry, std::size_t limit) const;

 private:
  Entry ReadEntry(std::size_t& at, std::size_t end) const;
  void CheckOverlaps() const;

  std::string_view bytes_;
  std::vector<Entry> entries_;
};

}  // namespace graphize
