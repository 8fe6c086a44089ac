#pragma once

#include <cstdint>
#include <string_view>

namespace graphize {

/// Format codes of picture files: also the 1-based places of the types in the save dialog's
/// filters.
enum FileFormat : std::int16_t {
  kNoFormat = 0,
  kTifFormat = 1,
  kTgaFormat = 2,
  kBmpFormat = 3,
  kGifFormat = 4,
  kDibFormat = 5,
  kPcxFormat = 6,
  kJpgFormat = 7,
  kPngFormat = 8,
};

/// The format code and its option (JPEG quality in percent) by the last three characters of `name`,
/// which count only in small letters; anything else is kNoFormat with option 0.
void GetFileFormat(std::string_view name, std::int16_t& format, std::int16_t& option);

}  // namespace graphize
