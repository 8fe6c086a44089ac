#pragma once

#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Halfway between black and white.
inline constexpr double kMiddleOfRange = 127.5;

/// A threshold as users choose it: a whole number from 1 to 255, and what is darker becomes black.
inline constexpr int kMiddleLevel = 128;
inline constexpr double ThresholdOf(int level) {
  return level - 0.5;
}

/// Whether the picture holds exact black and exact white alone. Stops at the first other colour.
bool IsBlackAndWhite(const Raster& picture);

/// Makes each pixel black or white by its luminance, 0.299 red + 0.587 green + 0.114 blue (ITU-R
/// BT.601), from 0 to 255: below `threshold` it becomes black. No dithering. Raster::Faint keeps
/// what becomes white but is darker than the paper around it, by more than two fifths of what would
/// make it black: where a grey line was drawn that comes out in specks. False when the operation
/// was stopped: the picture is then half done.
bool ReduceToBlackAndWhite(Raster& picture, double threshold, PictureOperation& operation);
inline void ReduceToBlackAndWhite(Raster& picture, double threshold = kMiddleOfRange) {
  PictureOperation unwatched;
  ReduceToBlackAndWhite(picture, threshold, unwatched);
}

}  // namespace graphize
