// The scanner library, shut in: what the files of this folder share.
#pragma once

#include <sane/sane.h>

#include <string>

namespace graphize {

/// A RunTimeError with what the status means, a sentence, unless it is good.
void Require(SANE_Status status);

/// A text of the library's, which may leave it out.
std::string TextOf(SANE_String_Const text);

/// While one of these lives the library is initialised. It is not kept: a new start reads the
/// configuration and sees the devices that were plugged in since. On the scanner's thread only.
class LibraryInUse {
 public:
  LibraryInUse();
  ~LibraryInUse();
  LibraryInUse(const LibraryInUse&) = delete;
  LibraryInUse& operator=(const LibraryInUse&) = delete;
};

}  // namespace graphize
