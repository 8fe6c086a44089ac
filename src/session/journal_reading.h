#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "session/kept_document.h"

namespace graphize {

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
