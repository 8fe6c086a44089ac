#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
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

/// The lowest `size` bytes of a number, lowest first.
inline std::string LowFirst(std::uint64_t number, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i);
  return bytes;
}

/// Numbers with the high byte first.
inline std::uint32_t WordHighFirst(std::string_view bytes, std::size_t offset) {
  return Byte(bytes, offset) << 8 | Byte(bytes, offset + 1);
}
inline std::uint32_t DoubleWordHighFirst(std::string_view bytes, std::size_t offset) {
  return WordHighFirst(bytes, offset) << 16 | WordHighFirst(bytes, offset + 2);
}

}  // namespace graphize
