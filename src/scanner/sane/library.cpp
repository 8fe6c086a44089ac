#include "scanner/sane/library.h"

#include "base/run_time_error.h"

namespace graphize {

namespace {

int users = 0;  // of the library, all on one thread

/// What a status of the scanner library means, a sentence.
std::string Words(SANE_Status status) {
  switch (static_cast<int>(status)) {
    case SANE_STATUS_UNSUPPORTED:
      return "The scanner cannot do that.";
    case SANE_STATUS_CANCELLED:
      return "The scan was cancelled at the scanner.";
    case SANE_STATUS_DEVICE_BUSY:
      return "The scanner is busy. Another program may be using it; try again later.";
    case SANE_STATUS_INVAL:
      return "The scanner does not accept these settings.";
    case SANE_STATUS_EOF:
      return "The scanner sent no picture.";
    case SANE_STATUS_JAMMED:
      return "The paper is jammed in the document feeder.";
    case SANE_STATUS_NO_DOCS:
      return "There are no documents in the document feeder.";
    case SANE_STATUS_COVER_OPEN:
      return "The scanner's cover is open.";
    case SANE_STATUS_IO_ERROR:
      return "The connection to the scanner failed. Is it switched on and connected?";
    case SANE_STATUS_NO_MEM:
      return "The scanner has not enough memory.";
    case SANE_STATUS_ACCESS_DENIED:
      return "The system does not allow the use of the scanner.";
    case 12:
      return "The scanner is warming up; try again in a moment.";
    case 13:
      return "The scanner's transport lock is on.";
    default:
      return std::string("The scanner reports: ") + sane_strstatus(status) + ".";
  }
}

}  // namespace

void Require(SANE_Status status) {
  if (status != SANE_STATUS_GOOD) throw RunTimeError(Words(status));
}

std::string TextOf(SANE_String_Const text) {
  return text == nullptr ? std::string() : text;
}

LibraryInUse::LibraryInUse() {
  if (users == 0) {
    const SANE_Status status = sane_init(nullptr, nullptr);
    if (status != SANE_STATUS_GOOD)
      throw RunTimeError(std::string("The scanner library does not start: ") +
                         sane_strstatus(status) + ".");
  }
  ++users;
}

LibraryInUse::~LibraryInUse() {
  if (--users == 0) sane_exit();
}

}  // namespace graphize
