#include "support/picture_bytes.h"

#include <algorithm>
#include <cctype>

#include "base/checksum.h"
#include "codecs/byte_order.h"

namespace graphize::test {

namespace {

char ByteOf(std::uint32_t pixel, int shift) {
  return static_cast<char>(pixel >> shift);
}

/// One row of a DIB, filled up to four bytes.
std::string DibRow(const BitmapKind& kind, const Raster& picture, int y) {
  std::string row;
  int used = 8;  // bits of the last byte that are taken
  for (int x = 0; x < picture.Width(); ++x) {
    const std::uint32_t pixel = picture.Row(y)[x];
    if (kind.Bits <= 8) {
      if (used == 8) row += '\0';
      used = used % 8 + kind.Bits;
      const int index = IsBlackPixel(pixel) ? 0 : 1;
      row.back() = static_cast<char>(row.back() | index << (8 - used));
    } else if (kind.Bits == 16) {
      const std::uint32_t red = (pixel >> 19) & 31, green = (pixel >> 10) & 63,
                          blue = (pixel >> 3) & 31;
      row += LowFirst(kind.Compression == 3 ? red << 11 | green << 5 | blue
                                            : red << 10 | green >> 1 << 5 | blue,
                      2);
    } else {
      row += {ByteOf(pixel, 0), ByteOf(pixel, 8), ByteOf(pixel, 16)};
      if (kind.Bits == 32) row += '\0';
    }
  }
  row.resize((row.size() + 3) / 4 * 4, '\0');
  return row;
}

std::string DibHead(const BitmapKind& kind, const Raster& picture) {
  const auto width = static_cast<std::uint32_t>(picture.Width());
  const auto height =
      static_cast<std::uint32_t>(kind.TopDown ? -picture.Height() : picture.Height());
  const bool core = kind.InfoSize == 12;
  std::string head = LowFirst(kind.InfoSize, 4) + LowFirst(width, core ? 2 : 4) +
                     LowFirst(height, core ? 2 : 4) + LowFirst(1, 2) +
                     LowFirst(static_cast<std::uint32_t>(kind.Bits), 2);
  if (!core) head += LowFirst(kind.Compression, 4) + std::string(20, '\0');
  if (kind.Compression == 3)
    head += kind.Bits == 16 ? LowFirst(0xf800, 4) + LowFirst(0x07e0, 4) + LowFirst(0x001f, 4)
                            : LowFirst(0xff0000, 4) + LowFirst(0xff00, 4) + LowFirst(0xff, 4);
  head.resize(std::max<std::size_t>(head.size(), kind.InfoSize), '\0');
  if (kind.Bits > 8) return head;
  const std::size_t entry = core ? 3 : 4, colours = std::size_t{1} << kind.Bits;
  std::string table(entry * colours, '\0');
  table.replace(entry, 3, "\xff\xff\xff");
  return head + table;
}

}  // namespace

std::string FromHex(std::string_view digits) {
  std::string bytes, pair;
  for (char c : digits) {
    if (std::isxdigit(static_cast<unsigned char>(c))) pair += c;
    if (pair.size() < 2) continue;
    bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    pair.clear();
  }
  return bytes;
}

std::string LowFirst(std::uint32_t value, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += ByteOf(value, 8 * i);
  return bytes;
}

std::string MakeDib(const BitmapKind& kind, const Raster& picture) {
  std::string bytes = DibHead(kind, picture);
  for (int i = 0; i < picture.Height(); ++i)
    bytes += DibRow(kind, picture, kind.TopDown ? i : picture.Height() - 1 - i);
  return bytes;
}

std::string MakeBmp(const BitmapKind& kind, const Raster& picture) {
  const std::string dib = MakeDib(kind, picture);
  const auto pixels = static_cast<std::uint32_t>(14 + DibHead(kind, picture).size());
  return "BM" + LowFirst(static_cast<std::uint32_t>(14 + dib.size()), 4) + LowFirst(0, 4) +
         LowFirst(pixels, 4) + dib;
}

std::string MakeTga(const Raster& picture, int bits, int descriptor, int opacity) {
  std::string bytes = FromHex("00 00 02 00 00 00 00 00 00 00 00 00") +
                      LowFirst(static_cast<std::uint32_t>(picture.Width()), 2) +
                      LowFirst(static_cast<std::uint32_t>(picture.Height()), 2) +
                      LowFirst(static_cast<std::uint32_t>(bits | descriptor << 8), 2);
  for (int i = 0; i < picture.Height(); ++i)
    for (int j = 0; j < picture.Width(); ++j) {
      const int y = (descriptor & 0x20) != 0 ? i : picture.Height() - 1 - i;
      const int x = (descriptor & 0x10) != 0 ? picture.Width() - 1 - j : j;
      bytes += LowFirst(picture.Row(y)[x], 3);
      if (bits == 32) bytes += static_cast<char>(opacity);
    }
  return bytes;
}

std::string MakeTif(int width, int height, int photometric, int orientation,
                    const std::string& samples, const std::string& palette) {
  const auto number = [](std::size_t n) { return static_cast<std::uint32_t>(n); };
  const std::uint32_t perPixel = photometric == 5 ? 4 : photometric == 3 ? 1 : 3;
  const std::uint32_t w = number(width), h = number(height), count = number(samples.size());
  std::vector<std::pair<std::uint32_t, std::uint32_t>> tags = {{256, w},
                                                               {257, h},
                                                               {258, 8},
                                                               {259, 1},
                                                               {262, number(photometric)},
                                                               {273, 8},
                                                               {274, number(orientation)},
                                                               {277, perPixel},
                                                               {278, h},
                                                               {279, count}};
  const std::size_t end = 8 + samples.size() + 2 + 12 * 11 + 4;
  if (!palette.empty()) tags.emplace_back(320, number(end));
  std::string bytes = "II" + LowFirst(42, 2) + LowFirst(number(8 + samples.size()), 4) + samples +
                      LowFirst(number(std::size(tags)), 2);
  for (const auto& [tag, value] : tags)
    bytes += LowFirst(tag, 2) + LowFirst(tag == 279 ? 4 : 3, 2) +
             LowFirst(tag == 320 ? 768 : 1, 4) + LowFirst(value, 4);
  return bytes + LowFirst(0, 4) + palette;
}

std::string BigTif() {
  const std::pair<std::uint32_t, std::uint32_t> tags[] = {
      {256, 4}, {257, 1}, {258, 8}, {259, 1}, {262, 1}, {273, 16}, {277, 1}, {278, 1}, {279, 4}};
  std::string bytes = FromHex("49492b00 08000000 14000000 00000000 004080ff 0900000000000000");
  for (const auto& [tag, value] : tags)
    bytes += LowFirst(tag, 2) + LowFirst(3, 2) + LowFirst(1, 4) + LowFirst(0, 4) +
             LowFirst(value, 4) + LowFirst(0, 4);
  return bytes + std::string(8, '\0');
}

std::string Exif(int orientation) {
  return FromHex("4d4d002a 00000008 0001 0112 0003 00000001 00") + static_cast<char>(orientation) +
         std::string(6, '\0');
}

std::string PngChunk(const std::string& name, const std::string& data) {
  const auto number = [](std::size_t n) {
    const std::string bytes = LowFirst(static_cast<std::uint32_t>(n), 4);
    return std::string(bytes.rbegin(), bytes.rend());
  };
  return number(data.size()) + name + data + number(Crc32(name + data));
}

std::string WithChunk(const std::string& png, const std::string& name, const std::string& data) {
  constexpr std::size_t kHead = 33;
  return png.substr(0, kHead) + PngChunk(name, data) + png.substr(kHead);
}

std::string WithChecksums(const std::string& png) {
  std::size_t at = std::min<std::size_t>(png.size(), 8);
  std::string sound = png.substr(0, at);
  while (png.size() - at >= 12) {
    const std::size_t size = DoubleWordHighFirst(png, at);
    if (png.size() - at - 12 < size) break;
    sound += PngChunk(png.substr(at + 4, 4), png.substr(at + 8, size));
    at += 12 + size;
  }
  return sound + png.substr(at);
}

std::string WebPChunk(const std::string& name, std::string data) {
  const std::string head = name + LowFirst(static_cast<std::uint32_t>(data.size()), 4);
  if (data.size() % 2 != 0) data += '\0';
  return head + data;
}

std::string WebPOf(const std::string& chunks) {
  return "RIFF" + LowFirst(static_cast<std::uint32_t>(4 + chunks.size()), 4) + "WEBP" + chunks;
}

std::string AnimatedWebP() {
  const std::string frame = FromHex("010000 010000 0f0000 070000 640000 00") + WebP().substr(12);
  return WebPOf(WebPChunk("VP8X", FromHex("02000000 130000 090000")) +
                WebPChunk("ANIM", std::string(6, '\0')) + WebPChunk("ANMF", frame) +
                WebPChunk("ANMF", frame));
}

std::string GifOnScreen() {
  const std::string frame = FromHex("2c 0100 0000 0200 0100 00 02 02 440a 00");
  return "GIF89a" + FromHex("0400 0100 80 01 00 000000 ff0000 21fe 03 616263 00") + frame + frame +
         "\x3b";
}

std::string PngWithOpacity() {
  return FromHex(
      "89504e470d0a1a0a0000000d49484452000000030000000108060000001be014b40000001349444154789c63"
      "600082ff0c0c0d8c4cccff010b940285756fd60c0000000049454e44ae426082");
}

std::string PngWithClearColour() {
  return FromHex(
      "89504e470d0a1a0a0000000d49484452000000030000000108030000002c3ee48600000009504c5445000000"
      "090909ffffffd4cab3e10000000274524e5300809b2b4e180000000c49444154789c63606064020000080004"
      "36e0b0a60000000049454e44ae426082");
}

std::string PngOf16Bits() {
  return FromHex(
      "89504e470d0a1a0a0000000d49484452000000030000000110000000006e1b972b0000000f49444154789c63"
      "606068686064000003890102726d5d790000000049454e44ae426082");
}

std::string WebP() {
  return FromHex(
      "5249464626000000574542505650384c1a0000002f0fc001000f30fff33ffff31f5a100b26f397ee4c21a2ff"
      "a103");
}

std::string CmykJpg() {
  return FromHex(
      "ffd8ffe000104a46494600010101004800480000ffee000e41646f626500640000000000ffdb004300100b0c"
      "0e0c0a100e0d0e1211101318281a181616183123251d283a333d3c3933383740485c4e404457453738506d51"
      "575f626768673e4d71797064785c656763ffc000140800080010044311004d11005911004b1100ffc4001600"
      "01010100000000000000000000000000070008ffc40014100100000000000000000000000000000000ffda00"
      "0e0443004d0059004b00003f00401f8fc809a01a013fffd9");
}

std::vector<std::uint32_t> PixelsOf(const Raster& picture) {
  return {picture.Pixels(), picture.Pixels() + picture.PixelCount()};
}

Raster MakeRaster(int width, int height, const std::vector<std::uint32_t>& pixels) {
  Raster picture(width, height);
  std::copy_n(pixels.begin(), picture.PixelCount(), picture.Pixels());
  return picture;
}

}  // namespace graphize::test
