#include "base/checksum.h"

#include <zlib.h>

namespace graphize {

std::uint32_t Crc32(std::string_view bytes) {
  return Crc32(0, bytes);
}

std::uint32_t Crc32(std::uint32_t before, std::string_view bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

std::string HexText(std::uint32_t number) {
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 0xfu];
  return text;
}

std::optional<std::uint32_t> NumberOfHexText(std::string_view text) {
  if (text.size() != 8) return std::nullopt;
  std::uint32_t number = 0;
  for (const char digit : text) {
    const std::size_t value = std::string_view("0123456789abcdef").find(digit);
    if (value == std::string_view::npos) return std::nullopt;
    number = number << 4 | static_cast<std::uint32_t>(value);
  }
  return number;
}

}  // namespace graphize
