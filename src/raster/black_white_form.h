#pragma once

#include <array>

#include "base/raster.h"
#include "raster/black_white.h"

namespace graphize {

/// The window FRM_BlackWhite: how a picture in colours or greys becomes black and white, seen live
/// on a part of it.
struct BlackWhiteForm {
  bool Local = false;            // OPT_Threshold_1: by the paper around each pixel; else _0, fixed
  int Threshold = kMiddleLevel;  // SCRL_Threshold, 1 to 255: what is darker becomes black
  bool CanReduce = true;         // a picture that is black and white already stays as it is
  std::array<int, 256> Histogram{};  // of the picture's luminances, of evenly spread pixels
  int Left = 0, Top = 0;             // of the part on the picture
  Raster Preview;                    // the part as it would be
  int Changes = 0;                   // of the preview

  static constexpr int kPartWidth = 460, kPartHeight = 300;  // pixels, at most
};

}  // namespace graphize
