#include "session/journal_frame.h"

#include <algorithm>
#include <charconv>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr std::string_view kFirstWords = "graphize journal ";
constexpr std::string_view kFrame = "event ";

}  // namespace

void FailJournal(const std::string& problem) {
  throw RunTimeError(Tr("The journal cannot be read: %1.", problem));
}

std::string JournalStart() {
  return std::string(kFirstWords) + std::to_string(kJournalVersion) + "\n";
}

void TakeStart(std::string_view& bytes) {
  const std::size_t end = bytes.find('\n');
  if (!bytes.starts_with(kFirstWords) || end == bytes.npos) FailJournal("it has no beginning");
  const std::string version(bytes.substr(kFirstWords.size(), end - kFirstWords.size()));
  const auto number = IntegerText(version, 1, 1000000);
  if (!number) FailJournal("its version is no number");
  if (*number > kJournalVersion)
    FailJournal(Tr("it is of version %1, from a newer program; this one reads version %2", version,
                   kJournalVersion));
  bytes.remove_prefix(end + 1);
}

std::string Framed(const std::string& payload) {
  return std::string(kFrame) + std::to_string(payload.size()) + " " + HexText(Crc32(payload)) +
         "\n" + payload;
}

std::optional<std::string_view> TakeFrame(std::string_view& bytes) {
  const std::string_view line = bytes.substr(0, std::min<std::size_t>(bytes.find('\n'), 64));
  if (!line.starts_with(kFrame) || line.size() == bytes.size()) return std::nullopt;
  const std::size_t blank = line.find(' ', kFrame.size());
  if (blank == line.npos) return std::nullopt;
  const std::string_view digits = line.substr(kFrame.size(), blank - kFrame.size());
  std::size_t size = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
  const std::string_view rest = bytes.substr(line.size() + 1);
  if (fault != std::errc() || end != digits.data() + digits.size() || size > rest.size())
    return std::nullopt;
  const std::string_view payload = rest.substr(0, size);
  if (line.substr(blank + 1) != HexText(Crc32(payload))) return std::nullopt;
  bytes = rest.substr(size);
  return payload;
}

bool HasFrame(std::string_view bytes) {
  for (std::size_t at = 0; (at = bytes.find(kFrame, at)) != bytes.npos; ++at) {
    std::string_view rest = bytes.substr(at);
    if (TakeFrame(rest)) return true;
  }
  return false;
}

}  // namespace graphize
