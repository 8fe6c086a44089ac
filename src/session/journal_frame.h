#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace graphize {

// A journal is the line "graphize journal 1" and behind it events. An event is the line "event",
// the number of its bytes and their Crc32, and then these bytes: lines of words, and the points'
// arrays as they lie in memory. The first event, and every one that begins with the line "state",
// tells all of the document; any other tells what has become different.

inline constexpr int kJournalVersion = 1;

/// The first line, and the way past it; RunTimeError where there is none, or a newer one.
std::string JournalStart();
void TakeStart(std::string_view& bytes);

/// An event's bytes with the line in front of them.
std::string Framed(const std::string& payload);
/// The payload of the event at the start of `bytes`, which are then what is behind it; nothing when
/// it is not whole.
std::optional<std::string_view> TakeFrame(std::string_view& bytes);
/// Whether a whole event lies somewhere in the bytes.
bool HasFrame(std::string_view bytes);

/// RunTimeError: a journal that cannot be read, and why.
[[noreturn]] void FailJournal(const std::string& problem);

}  // namespace graphize
