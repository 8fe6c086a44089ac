#include "scanner/sane/library.h"

#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

int users = 0;  // of the library, all on one thread

/// What a status of the scanner library means, a sentence.
std::string Words(SANE_Status status) {
  switch (static_cast<int>(status)) {
    case SANE_STATUS_UNSUPPORTED:
      return Tr("The scanner cannot do that.");
    case SANE_STATUS_CANCELLED:
      return Tr("The scan was cancelled at the scanner.");
    case SANE_STATUS_DEVICE_BUSY:
      return Tr("The scanner is busy. Another program may be using it; try again later.");
    case SANE_STATUS_INVAL:
      return Tr("The scanner does not accept these settings.");
    case SANE_STATUS_EOF:
      return Tr("The scanner sent no picture.");
    case SANE_STATUS_JAMMED:
      return Tr("The paper is jammed in the document feeder.");
    case SANE_STATUS_NO_DOCS:
      return Tr("There are no documents in the document feeder.");
    case SANE_STATUS_COVER_OPEN:
      return Tr("The scanner's cover is open.");
    case SANE_STATUS_IO_ERROR:
      return Tr("The connection to the scanner failed. Is it switched on and connected?");
    case SANE_STATUS_NO_MEM:
      return Tr("The scanner has not enough memory.");
    case SANE_STATUS_ACCESS_DENIED:
      return Tr("The system does not allow the use of the scanner.");
    case 12:
      return Tr("The scanner is warming up; try again in a moment.");
    case 13:
      return Tr("The scanner's transport lock is on.");
    default:
      return Tr("The scanner reports: %1.", std::string(sane_strstatus(status)));
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
      throw RunTimeError(
          Tr("The scanner library does not start: %1.", std::string(sane_strstatus(status))));
  }
  ++users;
}

LibraryInUse::~LibraryInUse() {
  if (--users == 0) sane_exit();
}

}  // namespace graphize
