#include "codecs/foreign_files.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "base/numbers.h"

namespace graphize {

namespace {

using namespace std::string_view_literals;

struct Mark {
  std::size_t Offset;
  std::string_view Bytes;
  std::string_view Kind;
};

constexpr Mark kMarks[] = {
    {0, "%PDF"sv, "a PDF document"},
    {0, "%!"sv, "a PostScript document"},
    {0, "\xc5\xd0\xd3\xc6"sv, "a PostScript document"},
    {0, "PK\3\4"sv, "a ZIP archive or an office document"},
    {0, "\xd0\xcf\x11\xe0"sv, "an office document"},
    {0, "\x1f\x8b"sv, "a compressed file (gzip)"},
    {0, "BZh"sv, "a compressed file (bzip2)"},
    {0,
     "\xfd"
     "7zXZ\0"sv,
     "a compressed file (xz)"},
    {0, "\x28\xb5\x2f\xfd"sv, "a compressed file (zstd)"},
    {0, "7z\xbc\xaf"sv, "a 7-Zip archive"},
    {0, "8BPS"sv, "a Photoshop document"},
    {0, "gimp xcf"sv, "a GIMP document"},
    {0, "\0\0\0\x0cjP  "sv, "a JPEG 2000 picture"},
    {0, "\xff\x4f\xff\x51"sv, "a JPEG 2000 picture"},
    {0, "\0\0\0\x0cJXL "sv, "a JPEG XL picture"},
    {0, "\xff\x0a"sv, "a JPEG XL picture"},
    {4, "ftypavi"sv, "an AVIF picture"},
    {4, "ftyphei"sv, "a HEIC picture"},
    {4, "ftypmif1"sv, "a HEIC picture"},
    {4, "ftyp"sv, "a film"},
    {0, "\x8aMNG"sv, "an MNG animation"},
    {0, "\x8bJNG"sv, "a JNG picture"},
    {0, "\0\0\1\0"sv, "an icon"},
    {0, "\xd7\xcd\xc6\x9a"sv, "a Windows metafile"},
    {40, " EMF"sv, "a Windows metafile"},
    {0, "AT&TFORM"sv, "a DjVu document"},
    {0, "RIFF"sv, "a sound or a film"},
    {0, "{\\rtf"sv, "a text document"},
    {0,
     "\x7f"
     "ELF"sv,
     "a program"},
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
  if (has("<svg")) return "an SVG drawing";
  if (has("<html") || has("<!doctype html")) return "a web page";
  if (text.size() > 2 && text[0] == 'p' && text[1] >= '1' && text[1] <= '7' && text[2] <= ' ')
    return "a portable anymap (PNM) picture";
  if (has("/* xpm */")) return "an XPM picture";
  return "a text file";
}

}  // namespace

std::string_view ForeignFileKind(std::string_view head) {
  for (const Mark& mark : kMarks)
    if (head.size() > mark.Offset && head.substr(mark.Offset).starts_with(mark.Bytes))
      return mark.Kind;
  if (head.starts_with("P4") || head.starts_with("P5") || head.starts_with("P6"))
    return "a portable anymap (PNM) picture";
  return IsText(head) ? TextKind(head) : std::string_view();
}

}  // namespace graphize
