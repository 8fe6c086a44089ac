#include "base/checksum.h"

#include <array>

namespace graphize {

namespace {

using Table = std::array<std::uint32_t, 256>;

constexpr Table kTable = [] {
  Table table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    table[byte] = crc;
  }
  return table;
}();

/// What a byte does to the sum when 0 to 7 others follow it: eight bytes are taken at a time.
constexpr std::array<Table, 8> kBehind = [] {
  std::array<Table, 8> tables{kTable};
  for (std::size_t i = 1; i < tables.size(); ++i)
    for (std::size_t byte = 0; byte < 256; ++byte)
      tables[i][byte] = kTable[tables[i - 1][byte] & 0xffu] ^ (tables[i - 1][byte] >> 8);
  return tables;
}();

}  // namespace

std::uint32_t Crc32(std::string_view bytes) {
  const auto byte = [&](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
  };
  std::uint32_t crc = 0xffffffffu;
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    crc ^= byte(i) | byte(i + 1) << 8 | byte(i + 2) << 16 | byte(i + 3) << 24;
    crc = kBehind[7][crc & 0xffu] ^ kBehind[6][crc >> 8 & 0xffu] ^ kBehind[5][crc >> 16 & 0xffu] ^
          kBehind[4][crc >> 24] ^ kBehind[3][byte(i + 4)] ^ kBehind[2][byte(i + 5)] ^
          kBehind[1][byte(i + 6)] ^ kBehind[0][byte(i + 7)];
  }
  for (; i < bytes.size(); ++i) crc = kTable[(crc ^ byte(i)) & 0xffu] ^ (crc >> 8);
  return crc ^ 0xffffffffu;
}

std::string HexText(std::uint32_t number) {
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 0xfu];
  return text;
}

}  // namespace graphize
