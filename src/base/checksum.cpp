#include "base/checksum.h"

#include <array>

namespace graphize {

namespace {

constexpr std::array<std::uint32_t, 256> kTable = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    table[byte] = crc;
  }
  return table;
}();

}  // namespace

std::uint32_t Crc32(std::string_view bytes) {
  std::uint32_t crc = 0xffffffffu;
  for (const char c : bytes)
    crc = kTable[(crc ^ static_cast<unsigned char>(c)) & 0xffu] ^ (crc >> 8);
  return crc ^ 0xffffffffu;
}

std::string HexText(std::uint32_t number) {
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 0xfu];
  return text;
}

}  // namespace graphize
