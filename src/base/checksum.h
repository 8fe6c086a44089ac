#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace graphize {

/// The CRC-32 of ISO 3309 (polynomial 0xEDB88320, as in PNG and ZIP): tells files apart, proves
/// nothing against intent.
std::uint32_t Crc32(std::string_view bytes);
/// That of bytes whose beginning has the checksum `before`.
std::uint32_t Crc32(std::uint32_t before, std::string_view bytes);

/// Eight small hexadecimal digits.
std::string HexText(std::uint32_t number);
/// The number of such a text; nothing for any other.
std::optional<std::uint32_t> NumberOfHexText(std::string_view text);

}  // namespace graphize
