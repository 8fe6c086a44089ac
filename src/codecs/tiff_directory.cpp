#include "codecs/tiff_directory.h"

#include <algorithm>
#include <iterator>

#include "codecs/byte_order.h"

namespace graphize {

namespace {

using namespace std::string_view_literals;

/// Numbers of either order; those beyond the end are 0.
struct Reader {
  std::string_view Bytes;
  bool HighFirst;

  std::uint64_t At(std::uint64_t offset, int size) const {
    std::uint64_t number = 0;
    if (offset > Bytes.size() || Bytes.size() - offset < static_cast<std::size_t>(size)) return 0;
    for (int i = 0; i < size; ++i)
      number = number << 8 |
               Byte(Bytes, offset + static_cast<std::size_t>(HighFirst ? i : size - 1 - i));
    return number;
  }
};

std::uint64_t BytesOfType(std::uint32_t type) {
  constexpr std::uint64_t kSizes[] = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  return type < std::size(kSizes) ? kSizes[type] : 8;
}

/// The product, or the largest number where it is larger.
std::uint64_t Times(std::uint64_t a, std::uint64_t b) {
  return a > UINT64_MAX / b ? UINT64_MAX : a * b;
}

}  // namespace

std::optional<TiffDirectory> ReadTiffDirectory(std::string_view bytes) {
  TiffDirectory directory;
  directory.HighFirst = bytes.starts_with("MM");
  const Reader read{bytes, directory.HighFirst};
  const std::uint64_t version = read.At(2, 2);
  if ((!directory.HighFirst && !bytes.starts_with("II")) || (version != 42 && version != 43))
    return {};
  directory.Is64Bit = version == 43;
  const int size = directory.Is64Bit ? 8 : 4;  // of offsets and counts
  const std::uint64_t start = read.At(directory.Is64Bit ? 8 : 4, size);
  const std::uint64_t count = read.At(start, directory.CountSize());
  directory.Entries = start + static_cast<std::size_t>(directory.CountSize());
  for (std::uint64_t i = 0; i < std::min<std::uint64_t>(count, 65535); ++i) {
    const std::uint64_t entry = directory.Entries + directory.EntrySize() * i;
    if (entry + directory.EntrySize() > bytes.size()) break;
    TiffTag tag;
    tag.Tag = static_cast<std::uint32_t>(read.At(entry, 2));
    tag.Type = static_cast<std::uint32_t>(read.At(entry + 2, 2));
    tag.ValueBytes = Times(read.At(entry + 4, size), BytesOfType(tag.Type));
    const std::uint64_t value = entry + 4 + static_cast<std::uint64_t>(size);
    tag.ValueOffset =
        tag.ValueBytes <= static_cast<std::uint64_t>(size) ? value : read.At(value, size);
    tag.IsWhole =
        tag.ValueOffset <= bytes.size() && tag.ValueBytes <= bytes.size() - tag.ValueOffset;
    directory.Tags.push_back(tag);
  }
  return directory;
}

std::uint32_t TiffNumber(std::string_view bytes, const TiffDirectory& directory, std::uint32_t tag,
                         std::uint32_t fallback) {
  const auto place = std::ranges::find(directory.Tags, tag, &TiffTag::Tag);
  if (place == directory.Tags.end() || (place->Type != 3 && place->Type != 4)) return fallback;
  if (place->ValueBytes == 0 || !place->IsWhole) return fallback;
  return static_cast<std::uint32_t>(
      Reader{bytes, directory.HighFirst}.At(place->ValueOffset, place->Type == 3 ? 2 : 4));
}

int TiffOrientation(std::string_view bytes) {
  constexpr std::string_view kMark = "Exif\0\0"sv;
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  const auto directory = ReadTiffDirectory(bytes);
  return directory ? static_cast<int>(TiffNumber(bytes, *directory, 274, 1)) : 1;
}

}  // namespace graphize
