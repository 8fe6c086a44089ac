#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "codecs/picture_probe.h"

namespace graphize {

/// A picture file cut down to its pixels, and what the rest of it says about them.
struct StrippedPicture {
  /// What the decoder is given instead of the file; empty: the file itself.
  std::string Bytes;
  int Orientation = 1;  // as in ApplyOrientation
  /// The screen of an animation, which its first frame may fill in part only; 0 without one.
  std::int64_t ScreenWidth = 0, ScreenHeight = 0;
  std::int64_t FrameLeft = 0, FrameTop = 0;
  /// A part without which the pixels are wrong is missing.
  bool IsDamaged = false;
};

/// Leaves to the decoder what makes the first picture's pixels: comments, profiles, previews, text
/// and further frames can take any amount of memory there, a thousand times their size in the file.
/// Throws RunTimeError when the pixels could only be shown wrong.
StrippedPicture StripMetadata(PictureType type, std::string_view file);

}  // namespace graphize
