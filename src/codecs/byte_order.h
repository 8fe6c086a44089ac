#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace graphize {

/// Unsigned integers of a picture file's header, low byte first. `bytes` must reach that far.
inline std::uint32_t Byte(std::string_view bytes, std::size_t offset) {
  return static_cast<unsigned char>(bytes[offset]);
}
inline std::uint32_t Word(std::string_view bytes, std::size_t offset) {
  return Byte(bytes, offset) | Byte(bytes, offset + 1) << 8;
}
inline std::uint32_t DoubleWord(std::string_view bytes, std::size_t offset) {
  return Word(bytes, offset) | Word(bytes, offset + 2) << 16;
}

}  // namespace graphize
