// The picture library, shut in: what the files of this folder share.
#pragma once

#include <Magick++.h>

#include <memory>
#include <string>

#include "codecs/decode_file.h"
#include "raster/picture_operation.h"

namespace graphize {

namespace lib = MagickLib;

// ---- The library's records, each freed by its own function -------------------------------------

struct Freeing {
  void operator()(lib::Image* image) const { lib::DestroyImage(image); }
  void operator()(lib::ImageInfo* info) const { lib::DestroyImageInfo(info); }
};
using ImagePtr = std::unique_ptr<lib::Image, Freeing>;
using ImageInfoPtr = std::unique_ptr<lib::ImageInfo, Freeing>;

class Report {
 public:
  Report() { lib::GetExceptionInfo(&info_); }
  ~Report() { lib::DestroyExceptionInfo(&info_); }
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  operator lib::ExceptionInfo*() { return &info_; }  // NOLINT: reads as what it holds
  lib::ExceptionType Severity() const { return info_.severity; }
  /// The library's own words, as a detail in parentheses.
  std::string Detail() const {
    const char* words = info_.reason != nullptr ? info_.reason : info_.description;
    return words != nullptr ? " (" + std::string(words) + ")" : std::string();
  }

 private:
  lib::ExceptionInfo info_{};
};

// ---- Use ----------------------------------------------------------------------------------------

/// Before the library is used; only the first call costs anything.
void StartLibrary();

/// ReadStored for all types: it leaves nothing to others.
ReadStored ReadByLibrary;

/// While it lives the library tells this thread's progress to `operation` and is stopped by it.
class CurrentOperation {
 public:
  explicit CurrentOperation(PictureOperation& operation);
  ~CurrentOperation();
  CurrentOperation(const CurrentOperation&) = delete;
  CurrentOperation& operator=(const CurrentOperation&) = delete;
};

ImageInfoPtr InfoFor(const char* coder);

}  // namespace graphize
