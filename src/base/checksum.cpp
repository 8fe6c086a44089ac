#include "base/checksum.h"

#include <zlib.h>

namespace graphize {

std::uint32_t Crc32(std::string_view bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

std::string HexText(std::uint32_t number) {
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 0xfu];
  return text;
}

}  // namespace graphize
