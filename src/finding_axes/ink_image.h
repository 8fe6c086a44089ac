#pragma once

#include <cstdint>
#include <vector>

#include "base/affine_map.h"
#include "base/raster.h"
#include "raster/picture_operation.h"

namespace graphize {

/// How much each pixel differs from the paper (the largest of its channels' differences, levels of
/// 255), whatever the colours: of the whole picture, reduced by a whole factor where it is large,
/// or turned upright. Centres of pixels lie at whole positions.
struct InkImage {
  int Width = 0, Height = 0;
  std::vector<std::uint8_t> Values;
  AffineMap ToPicture;  // positions here to positions on the picture
  double Scale = 1;     // picture pixels to one here
  int Weak = 24;        // from here on a pixel is no paper
  int Full = 255;       // what full ink has
  int Enlarged = 1;     // times; Scale is less by that

  /// 0 outside.
  int At(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(Width) &&
                   static_cast<unsigned>(y) < static_cast<unsigned>(Height)
               ? Values[static_cast<std::size_t>(y) * Width + x]
               : 0;
  }
  const std::uint8_t* Row(int y) const {
    return Values.data() + static_cast<std::size_t>(y) * Width;
  }
  /// Bilinear; 0 outside.
  double Sample(double x, double y) const;
};

/// The ink of a picture, reduced to at most 2,600 pixels across: means keep the middles of thin
/// lines. Empty when stopped.
InkImage InkOf(const Raster& picture, PictureOperation& operation);

/// The image turned about its middle by an angle (radians, clockwise as seen) and sheared (radians
/// that its upright lines lean more), so that what leans so stands upright.
InkImage Upright(const InkImage& ink, double angle, double skew);

/// Twice as large by cubic interpolation (Keys 1981): thin strokes of small letters hold together.
InkImage Enlarged(const InkImage& ink);

/// Rows become columns, and the top comes to the left's bottom: what was read upward reads to the
/// right.
InkImage QuarterTurned(const InkImage& ink);

}  // namespace graphize
