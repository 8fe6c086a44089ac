#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "session/history.h"
#include "session/kept_document.h"

namespace graphize {

// A journal is the line "graphize journal 1" and behind it events. An event is the line "event",
// the number of its bytes and their Crc32, and then these bytes: lines of words, and the points'
// arrays as they lie in memory. The first event, and every one that begins with the line "state",
// tells all of the document; any other tells what has become different.

inline constexpr int kJournalVersion = 1;

/// The first line.
std::string JournalStart();

/// The curves that a journal has told in full: those that are not active never change.
using ToldCurves = std::vector<std::pair<std::weak_ptr<const PointStore>, int>>;

/// What of the document is to be told.
struct JournalEntry {
  int Number = 0;         // of the event in its journal, from 1
  std::int64_t Time = 0;  // seconds since 1970
  bool Whole = false;     // all of it, whatever the delta says
};
std::string EventText(Workspace& ws, const DocumentDelta& delta, const JournalEntry& entry,
                      ToldCurves& told);
/// The event of a session that the user has ended.
std::string ClosedEvent(const JournalEntry& entry);

/// The document after a journal's last event.
struct JournalledDocument {
  KeptDocument Document;
  std::optional<std::uint64_t> Picture;  // its PictureNumber; nothing: there was no picture
  std::string PictureCopy;               // file in the journal's folder (PictureSource::KeptCopy)
  int CopySteps = 0;
  int Events = 0;
  std::int64_t Time = 0;  // of the last event
  bool Closed = false;
  std::string Damage;  // what is lost, in plain words; an event that was cut off at the end is not
};

/// Reads a journal up to the first event that is not whole: what comes behind that is lost. A
/// journal without one whole event, or from a newer program, is a RunTimeError.
JournalledDocument ReadJournal(std::string_view bytes);

}  // namespace graphize
