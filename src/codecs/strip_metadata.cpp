#include "codecs/strip_metadata.h"

#include <algorithm>
#include <initializer_list>

#include "base/run_time_error.h"
#include "codecs/byte_order.h"
#include "codecs/tiff_directory.h"

namespace graphize {

namespace {

using namespace std::string_view_literals;

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

// ---- PNG: chunks of length, name, data and checksum ---------------------------------------------

StrippedPicture StripPng(std::string_view file) {
  constexpr std::size_t kSignature = 8, kFrame = 12;
  StrippedPicture stripped;
  stripped.Bytes = file.substr(0, kSignature);
  for (std::size_t at = kSignature; at + kSignature <= file.size();) {
    const std::size_t length = DoubleWordHighFirst(file, at);
    const std::string_view name = file.substr(at + 4, 4);
    if (IsOneOf(name, {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"}))
      stripped.Bytes += file.substr(at, length + kFrame);
    else if (name == "eXIf")
      stripped.Orientation = TiffOrientation(file.substr(at + 8, length));
    at += length + kFrame;
  }
  return stripped;
}

// ---- JPEG: segments of mark and length, and coded data without ----------------------------------

/// The end of coded data that start at `at`: the next mark that is no part of them.
std::size_t EndOfScan(std::string_view file, std::size_t at) {
  while ((at = file.find('\xff', at)) != std::string_view::npos && at + 1 < file.size()) {
    const std::uint32_t mark = Byte(file, at + 1);
    if (mark != 0 && mark != 0xff && (mark < 0xd0 || mark > 0xd7)) return at;
    ++at;
  }
  return file.size();
}

StrippedPicture StripJpg(std::string_view file) {
  constexpr std::uint32_t kFirstWithLength = 0xc0, kEnd = 0xd9, kScan = 0xda, kApp0 = 0xe0,
                          kApp1 = 0xe1, kApp14 = 0xee, kApp15 = 0xef, kComment = 0xfe;
  StrippedPicture stripped;
  stripped.Bytes = file.substr(0, 2);
  bool hasJfif = false, hasAdobe = false;
  std::size_t at = 2;
  while (at + 4 <= file.size()) {
    const std::uint32_t mark = Byte(file, at) == 0xff ? Byte(file, at + 1) : 0;
    if (mark == kEnd) break;
    if (mark < kFirstWithLength || mark == 0xff) {  // nothing known, or a byte of filling
      const std::size_t end = EndOfScan(file, at + 1);
      stripped.Bytes += file.substr(at, end - at);
      at = end;
      continue;
    }
    const std::size_t length = 2 + WordHighFirst(file, at + 2);
    const std::string_view data = file.substr(at + 4, length - std::min<std::size_t>(length, 4));
    // Both tell what the colours are.
    const bool isJfif = mark == kApp0 && data.starts_with("JFIF\0"sv) && !hasJfif;
    const bool isAdobe = mark == kApp14 && data.starts_with("Adobe") && !hasAdobe;
    const bool isExtra = (mark >= kApp0 && mark <= kApp15) || mark == kComment;
    hasJfif = hasJfif || isJfif;
    hasAdobe = hasAdobe || isAdobe;
    if (mark == kApp1 && data.starts_with("Exif\0\0"sv))
      stripped.Orientation = TiffOrientation(data);
    const std::size_t start = at;
    at = std::min(at + length, file.size());
    if (mark == kScan) at = EndOfScan(file, at);
    if (!isExtra || isJfif || isAdobe) stripped.Bytes += file.substr(start, at - start);
  }
  // The end's mark, or what a decoder may make of the rest.
  const bool ends = file.substr(at).starts_with("\xff\xd9");
  stripped.Bytes += file.substr(at, ends ? 2 : std::string_view::npos);
  return stripped;
}

// ---- GIF: blocks, each of pieces that are led by their length -----------------------------------

/// The end of the pieces that start at `at`.
std::size_t EndOfPieces(std::string_view file, std::size_t at) {
  while (at < file.size() && file[at] != 0) at += 1 + Byte(file, at);
  return std::min(at + 1, file.size());
}

std::size_t GifColourBytes(std::uint32_t flags) {
  return (flags & 0x80) != 0 ? std::size_t{6} << (flags & 7) : 0;
}

StrippedPicture StripGif(std::string_view file) {
  constexpr std::size_t kHeader = 13, kFrame = 10;
  if (file.size() < kHeader) return {};
  StrippedPicture stripped;
  std::size_t at = std::min(kHeader + GifColourBytes(Byte(file, 10)), file.size());
  stripped.Bytes = file.substr(0, at);
  std::string_view control;  // of the frame that follows: which colour is clear
  while (at + 1 < file.size() && file[at] == '\x21') {
    const std::size_t end = EndOfPieces(file, at + 2);
    if (file[at + 1] == '\xf9') control = file.substr(at, end - at);
    at = end;
  }
  stripped.Bytes += control;
  if (at + kFrame > file.size() || file[at] != '\x2c') {
    stripped.Bytes += file.substr(at);
    return stripped;
  }
  stripped.FrameLeft = Word(file, at + 1);
  stripped.FrameTop = Word(file, at + 3);
  stripped.ScreenWidth =
      std::max<std::int64_t>(Word(file, 6), stripped.FrameLeft + Word(file, at + 5));
  stripped.ScreenHeight =
      std::max<std::int64_t>(Word(file, 8), stripped.FrameTop + Word(file, at + 7));
  const std::size_t pieces = at + kFrame + GifColourBytes(Byte(file, at + 9)) + 1;
  const std::size_t end = EndOfPieces(file, pieces);
  stripped.Bytes += file.substr(at, end - at);
  if (end < file.size()) stripped.Bytes += '\x3b';
  return stripped;
}

// ---- WebP: chunks of name, length and data, filled up to an even length -------------------------

struct WebPChunk {
  std::string_view Name, Data, Whole;
};

/// The chunk that `rest` starts with, which is taken away.
WebPChunk TakeChunk(std::string_view& rest) {
  constexpr std::size_t kHead = 8;
  const std::size_t length = DoubleWord(rest, 4), padded = kHead + length + length % 2;
  const WebPChunk chunk{rest.substr(0, 4), rest.substr(kHead, length), rest.substr(0, padded)};
  rest.remove_prefix(std::min(padded, rest.size()));
  return chunk;
}

std::int64_t ThreeBytes(std::string_view bytes, std::size_t offset) {
  return Word(bytes, offset) | Byte(bytes, offset + 2) << 16;
}

StrippedPicture StripWebP(std::string_view file) {
  constexpr std::size_t kHead = 12, kScreenAt = 4, kFrameHead = 16;
  constexpr char kOpacity = 0x10;
  StrippedPicture stripped;
  std::string extended, pixels;
  const auto keep = [&](const WebPChunk& chunk) {
    if (!IsOneOf(chunk.Name, {"ALPH", "VP8 ", "VP8L"})) return;
    if (!extended.empty() && chunk.Name == "ALPH") extended[8] = kOpacity;
    pixels += chunk.Whole;
  };
  for (std::string_view rest = file.substr(kHead); rest.size() >= 8;) {
    const WebPChunk chunk = TakeChunk(rest);
    if (chunk.Name == "VP8X" && chunk.Data.size() >= 10 && extended.empty()) {
      extended = chunk.Whole;
      extended[8] = static_cast<char>(extended[8] & kOpacity);
    } else if (chunk.Name == "EXIF") {
      stripped.Orientation = TiffOrientation(chunk.Data);
    } else if (chunk.Name == "ANMF" && chunk.Data.size() >= kFrameHead && !extended.empty()) {
      if (!pixels.empty()) continue;  // a later frame
      stripped.FrameLeft = 2 * ThreeBytes(chunk.Data, 0);
      stripped.FrameTop = 2 * ThreeBytes(chunk.Data, 3);
      stripped.ScreenWidth = 1 + std::max(ThreeBytes(extended, 8 + kScreenAt),
                                          stripped.FrameLeft + ThreeBytes(chunk.Data, 6));
      stripped.ScreenHeight = 1 + std::max(ThreeBytes(extended, 8 + kScreenAt + 3),
                                           stripped.FrameTop + ThreeBytes(chunk.Data, 9));
      extended.replace(8 + kScreenAt, 6, chunk.Data.substr(6, 6));
      for (std::string_view parts = chunk.Data.substr(kFrameHead); parts.size() >= 8;)
        keep(TakeChunk(parts));
    } else {
      keep(chunk);
    }
  }
  stripped.Bytes = "RIFF" + LowFirst(4 + extended.size() + pixels.size(), 4) + "WEBP" + extended;
  stripped.Bytes += pixels;
  return stripped;
}

// ---- TIFF: tags that point anywhere in the file -------------------------------------------------

bool MakesPixels(const TiffTag& tag) {
  constexpr std::uint32_t kTags[] = {254, 256, 257, 258, 259, 262, 266, 273, 274, 277, 278,
                                     279, 284, 292, 293, 317, 320, 322, 323, 324, 325, 332,
                                     334, 338, 339, 340, 341, 347, 529, 530, 531, 532};
  return std::ranges::binary_search(kTags, tag.Tag) || (tag.Tag >= 512 && tag.Tag <= 521);
}

/// The file with those tags alone that make the first picture's pixels.
std::string TiffOfPixels(std::string_view file, const TiffDirectory& directory) {
  std::string bytes(file);
  const std::size_t size = directory.EntrySize();
  std::size_t kept = 0;
  for (std::size_t i = 0; i < directory.Tags.size(); ++i)
    if (MakesPixels(directory.Tags[i]))
      bytes.replace(directory.Entries + size * kept++, size,
                    file.substr(directory.Entries + size * i, size));
  const auto count = static_cast<std::size_t>(directory.CountSize());
  std::string number = LowFirst(kept, directory.CountSize());
  if (directory.HighFirst) std::ranges::reverse(number);
  bytes.replace(directory.Entries - count, count, number);
  // Behind the entries is where the next directory would be.
  const std::size_t end = directory.Entries + size * kept;
  const std::size_t offset = std::min<std::size_t>(directory.Is64Bit ? 8 : 4, bytes.size() - end);
  bytes.replace(end, offset, offset, '\0');
  return bytes;
}

StrippedPicture StripTif(std::string_view file) {
  constexpr std::uint32_t kPhotometric = 262, kCieLab = 8, kItuLab = 10;
  constexpr std::uint64_t kMuch = 1 << 20;  // most files have some tags of text and resolution
  StrippedPicture stripped;
  const auto directory = ReadTiffDirectory(file);
  if (!directory) return stripped;
  const std::uint32_t colours = TiffNumber(file, *directory, kPhotometric, 0);
  if (colours >= kCieLab && colours <= kItuLab)
    throw RunTimeError(
        "Its colours are stored as CIE L*a*b*, which cannot be shown. Please save it in RGB "
        "colours.");
  stripped.Orientation = static_cast<int>(TiffNumber(file, *directory, 274, 1));
  std::uint64_t extra = 0;
  for (const TiffTag& tag : directory->Tags) {
    if (MakesPixels(tag))
      stripped.IsDamaged = stripped.IsDamaged || !tag.IsWhole;
    else
      extra += std::min<std::uint64_t>(tag.ValueBytes, kMuch);
  }
  if (extra >= kMuch) stripped.Bytes = TiffOfPixels(file, *directory);
  return stripped;
}

}  // namespace

StrippedPicture StripMetadata(PictureType type, std::string_view file) {
  switch (type) {
    case PictureType::Png:
      return StripPng(file);
    case PictureType::Jpg:
      return StripJpg(file);
    case PictureType::Gif:
      return StripGif(file);
    case PictureType::WebP:
      return StripWebP(file);
    case PictureType::Tif:
      return StripTif(file);
    default:
      return {};  // the others have no room for more than pixels
  }
}

}  // namespace graphize
