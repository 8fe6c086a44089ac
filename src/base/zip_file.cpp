#include "base/zip_file.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr std::uint32_t kFileSignature = 0x04034b50, kEntrySignature = 0x02014b50,
                        kEndSignature = 0x06054b50;
constexpr std::size_t kFileHeader = 30, kEntryHeader = 46, kEndHeader = 22;  // bytes
constexpr std::size_t kLongestComment = 65535;
constexpr unsigned kStored = 0, kDeflated = 8;
constexpr unsigned kEncrypted = 1;  // flag
constexpr unsigned kVersion = 10;   // needed to read what is stored
constexpr unsigned kDate = 0x0021;  // 1 January 1980, the earliest there is
constexpr std::size_t kTooLarge = std::numeric_limits<std::uint32_t>::max();

[[noreturn]] void DamagedSo(const std::string& detail) {
  throw RunTimeError(Tr("The file is damaged or incomplete (%1).", detail));
}

[[noreturn]] void Damaged(const char* english) {
  DamagedSo(Tr(english));
}

void Put(std::string& to, std::uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i, value >>= 8) to += static_cast<char>(value & 0xffu);
}

/// The fields that a file's own header and its entry in the directory share.
void PutCommon(std::string& to, const ZipMember& member, std::uint32_t checksum) {
  Put(to, kVersion, 2);
  Put(to, 0, 2);  // flags
  Put(to, kStored, 2);
  Put(to, 0, 2);  // time
  Put(to, kDate, 2);
  Put(to, checksum, 4);
  Put(to, member.Bytes.size(), 4);
  Put(to, member.Bytes.size(), 4);
  Put(to, member.Name.size(), 2);
  Put(to, 0, 2);  // no more fields
}

std::uint32_t Get(std::string_view bytes, std::size_t at, int count) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i)
    value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  return value;
}

/// Where the record at the archive's end begins, behind which there is only its comment.
std::size_t FindEnd(std::string_view bytes) {
  if (bytes.size() < kEndHeader) Damaged("it is too short");
  const std::size_t last = bytes.size() - kEndHeader;
  for (std::size_t at = last + 1; at-- > last - std::min(last, kLongestComment);)
    if (Get(bytes, at, 4) == kEndSignature &&
        at + kEndHeader + Get(bytes, at + 20, 2) == bytes.size())
      return at;
  Damaged("its end is missing");
}

std::string Inflated(std::string_view packed, std::size_t size) {
  // No byte of it can stand for more.
  constexpr std::size_t kMostPerByte = 1032;
  if (size / kMostPerByte > packed.size() + 1) Damaged("a size that cannot be");
  std::string bytes(size, '\0');
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) throw RunTimeError("There is not enough memory.");
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  Bytef none = 0;
  stream.next_out = size == 0 ? &none : reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(size);
  const int result = inflate(&stream, Z_FINISH);
  const bool good = result == Z_STREAM_END && stream.total_out == size && stream.avail_in == 0;
  inflateEnd(&stream);
  if (!good) Damaged("a file in it cannot be unpacked");
  return bytes;
}

}  // namespace

std::string ZipBytes(const std::vector<ZipMember>& members) {
  std::size_t size = kEndHeader;
  for (const ZipMember& member : members)
    size += kFileHeader + kEntryHeader + 2 * member.Name.size() + member.Bytes.size();
  if (size >= kTooLarge) throw RunTimeError("It would be 4 GB or more.");
  std::string bytes, directory;
  bytes.reserve(size);
  for (const ZipMember& member : members) {
    const std::uint32_t checksum = Crc32(member.Bytes);
    Put(directory, kEntrySignature, 4);
    Put(directory, kVersion, 2);
    PutCommon(directory, member, checksum);
    Put(directory, 0, 2 + 2 + 2 + 4);  // comment, disk, attributes
    Put(directory, bytes.size(), 4);
    directory += member.Name;
    Put(bytes, kFileSignature, 4);
    PutCommon(bytes, member, checksum);
    bytes += member.Name;
    bytes += member.Bytes;
  }
  const std::size_t start = bytes.size();
  bytes += directory;
  Put(bytes, kEndSignature, 4);
  Put(bytes, 0, 4);  // disks
  Put(bytes, members.size(), 2);
  Put(bytes, members.size(), 2);
  Put(bytes, directory.size(), 4);
  Put(bytes, start, 4);
  Put(bytes, 0, 2);  // no comment
  return bytes;
}

ZipReader::ZipReader(std::string_view bytes, std::size_t mostEntries) : bytes_(bytes) {
  if (bytes.size() >= kTooLarge) throw RunTimeError("The file is too large.");
  const std::size_t end = FindEnd(bytes);
  const std::size_t count = Get(bytes, end + 10, 2), size = Get(bytes, end + 12, 4);
  std::size_t at = Get(bytes, end + 16, 4);
  const std::size_t directory = at;
  if (Get(bytes, end + 4, 4) != 0 || Get(bytes, end + 8, 2) != count || at + size != end)
    Damaged("its directory is not where it has to be");
  if (count > mostEntries) throw RunTimeError("There are too many files in it.");
  for (std::size_t i = 0; i < count; ++i) {
    Entry entry = ReadEntry(at, end);
    if (entry.Offset + entry.Held > directory) Damaged("a file in it is cut off");
    if (Find(entry.Name) != nullptr) Damaged("two files of one name");
    entries_.push_back(std::move(entry));
  }
  if (at != end) Damaged("its directory is longer than it says");
  CheckOverlaps();
}

ZipReader::Entry ZipReader::ReadEntry(std::size_t& at, std::size_t end) const {
  if (end - at < kEntryHeader || Get(bytes_, at, 4) != kEntrySignature)
    Damaged("its directory is cut off");
  const unsigned flags = Get(bytes_, at + 8, 2), method = Get(bytes_, at + 10, 2);
  const std::size_t nameSize = Get(bytes_, at + 28, 2);
  const std::size_t behind = nameSize + Get(bytes_, at + 30, 2) + Get(bytes_, at + 32, 2);
  if (end - at - kEntryHeader < behind) Damaged("its directory is cut off");
  Entry entry{.Name = std::string(bytes_.substr(at + kEntryHeader, nameSize)),
              .Deflated = method == kDeflated,
              .Checksum = Get(bytes_, at + 16, 4),
              .Size = Get(bytes_, at + 24, 4),
              .Held = Get(bytes_, at + 20, 4)};
  const std::size_t header = Get(bytes_, at + 42, 4);
  at += kEntryHeader + behind;

  if ((flags & kEncrypted) != 0 || (method != kStored && method != kDeflated))
    throw RunTimeError("A file in it is encrypted, or packed in a way that is not known here.");
  if (entry.Size >= kTooLarge || (!entry.Deflated && entry.Size != entry.Held))
    Damaged("a size that cannot be");
  if (header > end || end - header < kFileHeader || Get(bytes_, header, 4) != kFileSignature ||
      Get(bytes_, header + 8, 2) != method || Get(bytes_, header + 26, 2) != nameSize ||
      end - header - kFileHeader < nameSize ||
      bytes_.substr(header + kFileHeader, nameSize) != entry.Name)
    Damaged("a file in it is not where it has to be");
  entry.Offset = header + kFileHeader + nameSize + Get(bytes_, header + 28, 2);
  return entry;
}

const ZipReader::Entry* ZipReader::Find(std::string_view name) const {
  const auto found = std::ranges::find(entries_, name, &Entry::Name);
  return found == entries_.end() ? nullptr : &*found;
}

void ZipReader::CheckOverlaps() const {
  std::vector<std::pair<std::size_t, std::size_t>> ranges;
  for (const Entry& entry : entries_)
    ranges.emplace_back(entry.Offset - kFileHeader - entry.Name.size(), entry.Offset + entry.Held);
  std::ranges::sort(ranges);
  for (std::size_t i = 1; i < ranges.size(); ++i)
    if (ranges[i].first < ranges[i - 1].second) Damaged("two files in one place");
}

std::string ZipReader::Read(const Entry& entry, std::size_t limit) const {
  if (entry.Size > limit) throw RunTimeError(Tr("\"%1\" in it is too large.", entry.Name));
  const std::string_view held = bytes_.substr(entry.Offset, entry.Held);
  std::string bytes = entry.Deflated ? Inflated(held, entry.Size) : std::string(held);
  if (Crc32(bytes) != entry.Checksum) DamagedSo(Tr("the checksum of \"%1\" is wrong", entry.Name));
  return bytes;
}

}  // namespace graphize
