#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace graphize {

/// One entry of a TIFF's directory (TIFF 6.0, section 2; BigTIFF).
struct TiffTag {
  std::uint32_t Tag = 0;
  std::uint32_t Type = 0;        // 3 is a 16-bit number, 4 a 32-bit one
  std::uint64_t ValueBytes = 0;  // of all its values
  std::uint64_t ValueOffset = 0;
  bool IsWhole = false;  // all its values lie within the file
};

/// The directory of a TIFF's first picture. EXIF data are a TIFF without a picture.
struct TiffDirectory {
  bool HighFirst = false;     // of a number's bytes
  bool Is64Bit = false;       // a BigTIFF
  std::uint64_t Entries = 0;  // offset of the first one, behind their count
  std::vector<TiffTag> Tags;  // those that lie within the file

  int CountSize() const { return Is64Bit ? 8 : 2; }
  std::uint64_t EntrySize() const { return Is64Bit ? 20 : 12; }
};

/// Nothing when `bytes` do not start a TIFF.
std::optional<TiffDirectory> ReadTiffDirectory(std::string_view bytes);

/// The first value of a tag that holds 16-bit or 32-bit numbers, else `fallback`.
std::uint32_t TiffNumber(std::string_view bytes, const TiffDirectory& directory, std::uint32_t tag,
                         std::uint32_t fallback);

/// Tag 274 of TIFF or EXIF data, which may begin with the mark "Exif": 1 to 8 as in
/// ApplyOrientation, 1 when they do not say.
int TiffOrientation(std::string_view bytes);

}  // namespace graphize
