#pragma once

#include <cstdint>
#include <string>

namespace graphize {

/// Width and height of a picture that can be opened, in pixels: positions are 16-bit numbers.
inline constexpr std::int64_t kMaxPictureSide = 32767;
inline constexpr std::int64_t kMaxPicturePixels = 160'000'000;

/// Why a picture of this size is not opened, a sentence in plain words; empty when it is.
std::string SizeRefusal(std::int64_t width, std::int64_t height);

/// The limits in a sentence.
std::string SizeRule();

}  // namespace graphize
