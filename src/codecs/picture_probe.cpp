#include "codecs/picture_probe.h"

#include <algorithm>
#include <cstdlib>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/bitmap_header.h"
#include "codecs/byte_order.h"
#include "codecs/foreign_files.h"
#include "raster/picture_operation.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

using namespace std::string_view_literals;

bool IsPcx(std::string_view head) {
  if (head.size() < 128 || Byte(head, 0) != 10 || Byte(head, 2) > 1) return false;
  const std::uint32_t version = Byte(head, 1), bits = Byte(head, 3);
  return (version == 0 || (version >= 2 && version <= 5)) &&
         (bits == 1 || bits == 2 || bits == 4 || bits == 8);
}

bool CanBeTga(std::string_view head) {
  if (head.size() < 18) return false;
  const std::uint32_t map = Byte(head, 1), type = Byte(head, 2), mapBits = Byte(head, 7);
  const std::uint32_t bits = Byte(head, 16), descriptor = Byte(head, 17);
  if (map > 1 || (descriptor & 0xc0) != 0 || (descriptor & 15) > 8) return false;
  if (Word(head, 12) == 0 || Word(head, 14) == 0) return false;
  const auto isColour = [](std::uint32_t n) { return n == 15 || n == 16 || n == 24 || n == 32; };
  switch (type) {
    case 1:
    case 9:
      return map == 1 && isColour(mapBits) && (bits == 8 || bits == 16);
    case 2:
    case 10:
      return isColour(bits);
    case 3:
    case 11:
      return bits == 8 || bits == 16;
    default:
      return false;
  }
}

/// A header as nearly all programs write it, which hardly any other file has: no colour map left
/// undescribed or described in vain, and no position on a screen.
bool IsUsualTga(std::string_view head) {
  if (!CanBeTga(head) || DoubleWord(head, 8) != 0) return false;
  const bool describesMap = Word(head, 5) != 0 && Byte(head, 7) != 0;
  return Byte(head, 1) == 1 ? describesMap : Word(head, 3) == 0 && !describesMap;
}

PictureType TypeOf(std::string_view fileName, std::string_view head) {
  if (head.starts_with("\xff\xd8\xff")) return PictureType::Jpg;
  if (head.starts_with("\x89PNG\r\n\x1a\n")) return PictureType::Png;
  if (head.starts_with("GIF87a") || head.starts_with("GIF89a")) return PictureType::Gif;
  for (std::string_view mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv})
    if (head.starts_with(mark)) return PictureType::Tif;
  if (head.starts_with("RIFF") && head.size() >= 12 && head.substr(8, 4) == "WEBP")
    return PictureType::WebP;
  if (const auto bitmap = ReadBitmapHeader(head))
    return bitmap->InfoOffset == 0 ? PictureType::Dib : PictureType::Bmp;
  if (IsPcx(head)) return PictureType::Pcx;
  const bool isNamedTga = LowerCase(fileName).ends_with(".tga");
  if (isNamedTga ? CanBeTga(head) : IsUsualTga(head)) return PictureType::Tga;
  return PictureType::None;
}

/// What stands at a fixed place of its type's header.
void ReadHeader(std::string_view head, ProbeResult& verdict) {
  switch (verdict.Type) {
    case PictureType::Bmp:
    case PictureType::Dib: {
      const auto bitmap = ReadBitmapHeader(head);
      verdict.Width = bitmap->Width;
      verdict.Height = std::abs(bitmap->Height);
      verdict.Opaque = !bitmap->HasOpacity;
      break;
    }
    case PictureType::Gif:
      if (head.size() < 10) break;
      verdict.Width = Word(head, 6);
      verdict.Height = Word(head, 8);
      break;
    case PictureType::Pcx:
      verdict.Width = std::int64_t{Word(head, 8)} - Word(head, 4) + 1;
      verdict.Height = std::int64_t{Word(head, 10)} - Word(head, 6) + 1;
      break;
    case PictureType::Tga:
      verdict.Width = Word(head, 12);
      verdict.Height = Word(head, 14);
      verdict.Mirrored = (Byte(head, 17) & 0x10) != 0;
      verdict.Opaque = (Byte(head, 17) & 15) == 0;
      break;
    case PictureType::Png:
      if (head.size() < 24) break;
      verdict.Width = DoubleWordHighFirst(head, 16);
      verdict.Height = DoubleWordHighFirst(head, 20);
      break;
    default:
      break;
  }
}

bool HasFixedSize(PictureType type) {
  return type != PictureType::Tif && type != PictureType::Jpg && type != PictureType::WebP;
}

}  // namespace

ProbeResult ProbePicture(std::string_view fileName, std::string_view head) {
  ProbeResult verdict;
  if (head.empty()) {
    verdict.Refusal = Tr("The file is empty.");
    return verdict;
  }
  verdict.Type = TypeOf(fileName, head);
  if (verdict.Type == PictureType::None) {
    static constexpr const char* kTypes = "tif, tga, bmp, gif, dib, pcx, jpg, png, webp";
    const std::string_view kind = ForeignFileKind(head);
    verdict.Refusal = kind.empty()
                          ? Tr("It is not a picture of a type that can be opened (%1).", kTypes)
                          : Tr("It is %1, not a picture of a type that can be opened (%2).",
                               Tr(std::string(kind).c_str()), kTypes);
    return verdict;
  }
  ReadHeader(head, verdict);
  if (HasFixedSize(verdict.Type)) verdict.Refusal = DecodeRefusal(verdict.Width, verdict.Height);
  return verdict;
}

std::string ReadPictureFile(const std::filesystem::path& path, ProbeResult& verdict) {
  constexpr std::size_t kLargestFile = std::size_t{2} << 30;
  const std::string name = path.filename().string();
  const auto inspect = [&](std::string_view bytes) {
    verdict = ProbePicture(name, bytes.substr(0, kProbeSize));
    if (!verdict.Refusal.empty()) throw RunTimeError(verdict.Refusal);
  };
  std::string bytes;
  ThrowSystemError(ReadFileStart(path, kProbeSize, bytes));
  inspect(bytes);
  ThrowSystemError(ReadWholeFile(path, kLargestFile, bytes));
  inspect(bytes);
  return bytes;
}

}  // namespace graphize
