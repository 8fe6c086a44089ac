#include "codecs/foreign_files.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "base/numbers.h"
#include "base/translation.h"

namespace graphize {

namespace {

using namespace std::string_view_literals;

struct Mark {
  std::size_t Offset;
  std::string_view Bytes;
  std::string_view Kind;
};

constexpr Mark kMarks[] = {
    {0, "%PDF"sv, Marked("a PDF document")},
    {0, "%!"sv, Marked("a PostScript document")},
    {0, "\xc5\xd0\xd3\xc6"sv, Marked("a PostScript document")},
    {0, "PK\3\4"sv, Marked("a ZIP archive or an office document")},
    {0, "\xd0\xcf\x11\xe0"sv, Marked("an office document")},
    {0, "\x1f\x8b"sv, Marked("a compressed file (gzip)")},
    {0, "BZh"sv, Marked("a compressed file (bzip2)")},
    {0,
     "\xfd"
     "7zXZ\0"sv,
     Marked("a compressed file (xz)")},
    {0, "\x28\xb5\x2f\xfd"sv, Marked("a compressed file (zstd)")},
    {0, "7z\xbc\xaf"sv, Marked("a 7-Zip archive")},
    {0, "8BPS"sv, Marked("a Photoshop document")},
    {0, "gimp xcf"sv, Marked("a GIMP document")},
    {0, "\0\0\0\x0cjP  "sv, Marked("a JPEG 2000 picture")},
    {0, "\xff\x4f\xff\x51"sv, Marked("a JPEG 2000 picture")},
    {0, "\0\0\0\x0cJXL "sv, Marked("a JPEG XL picture")},
    {0, "\xff\x0a"sv, Marked("a JPEG XL picture")},
    {4, "ftypavi"sv, Marked("an AVIF picture")},
    {4, "ftyphei"sv, Marked("a HEIC picture")},
    {4, "ftypmif1"sv, Marked("a HEIC picture")},
    {4, "ftyp"sv, Marked("a film")},
    {0, "\x8aMNG"sv, Marked("an MNG animation")},
    {0, "\x8bJNG"sv, Marked("a JNG picture")},
    {0, "\0\0\1\0"sv, Marked("an icon")},
    {0, "\xd7\xcd\xc6\x9a"sv, Marked("a Windows metafile")},
    {40, " EMF"sv, Marked("a Windows metafile")},
    {0, "AT&TFORM"sv, Marked("a DjVu document")},
    {0, "RIFF"sv, Marked("a sound or a film")},
    {0, "{\\rtf"sv, Marked("a text document")},
    {0,
     "\x7f"
     "ELF"sv,
     Marked("a program")},
};

/// Mostly printable ASCII: other letters are allowed, control characters but the usual are not.
bool IsText(std::string_view head) {
  const auto isControl = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == 0x7f || (byte < 0x20 && (byte < 9 || byte > 13));
  };
  const auto isForeign = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
  return std::ranges::none_of(head, isControl) &&
         std::ranges::count_if(head, isForeign) * 3 <= std::ssize(head);
}

std::string_view TextKind(std::string_view head) {
  const std::string text = LowerCase(head);
  const auto has = [&](std::string_view word) { return text.find(word) != std::string::npos; };
  if (has("<svg")) return Marked("an SVG drawing");
  if (has("<html") || has("<!doctype html")) return Marked("a web page");
  if (text.size() > 2 && text[0] == 'p' && text[1] >= '1' && text[1] <= '7' && text[2] <= ' ')
    return Marked("a portable anymap (PNM) picture");
  if (has("/* xpm */")) return Marked("an XPM picture");
  return Marked("a text file");
}

}  // namespace

std::string_view ForeignFileKind(std::string_view head) {
  for (const Mark& mark : kMarks)
    if (head.size() > mark.Offset && head.substr(mark.Offset).starts_with(mark.Bytes))
      return mark.Kind;
  if (head.starts_with("P4") || head.starts_with("P5") || head.starts_with("P6"))
    return Marked("a portable anymap (PNM) picture");
  return IsText(head) ? TextKind(head) : std::string_view();
}

}  // namespace graphize
