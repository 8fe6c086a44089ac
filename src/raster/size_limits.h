#pragma once

#include <cstdint>
#include <string>

namespace graphize {

/// Width and height of a picture, in pixels: positions are 16-bit numbers.
inline constexpr std::int64_t kMaxPictureSide = 32767;
/// The same for opening, image tools and saving, so that what was made and saved can be opened
/// again: an A4 page of 1200 dpi, enlarged by half.
inline constexpr std::int64_t kMaxPicturePixels = 320'000'000;
/// And of a file that is decoded, of which then a part is taken or that is scaled.
inline constexpr std::int64_t kMaxDecodedSide = 1'000'000;

/// Why a picture of this size is not opened, a sentence in plain words; empty when it is.
std::string SizeRefusal(std::int64_t width, std::int64_t height);

/// Why a file of this size is not decoded.
std::string DecodeRefusal(std::int64_t width, std::int64_t height);

/// The limits in a sentence.
std::string SizeRule();

}  // namespace graphize
