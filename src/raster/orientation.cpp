#include "raster/orientation.h"

#include <algorithm>
#include <cstddef>

namespace graphize {

namespace {

/// Where the upright picture's pixels lie in the stored one: the index of its first pixel, and how
/// far its next pixel and its next row are.
struct Walk {
  std::ptrdiff_t Start = 0, NextPixel = 1, NextRow = 0;
};

Walk WalkOf(int orientation, std::ptrdiff_t width, std::ptrdiff_t height) {
  const std::ptrdiff_t lastRow = (height - 1) * width, last = width * height - 1;
  switch (orientation) {
    case 2:
      return {width - 1, -1, width};
    case 3:
      return {last, -1, -width};
    case 4:
      return {lastRow, 1, -width};
    case 5:
      return {0, width, 1};
    case 6:
      return {lastRow, -width, 1};
    case 7:
      return {last, -width, -1};
    case 8:
      return {width - 1, width, -1};
    default:
      return {0, 1, width};
  }
}

}  // namespace

void OrientRows(const Raster& picture, int orientation, Raster& upright, int first, int end) {
  const Walk walk = WalkOf(orientation, picture.Width(), picture.Height());
  // In squares, or a picture on its side would miss the cache at every pixel.
  constexpr int kSquare = 32;
  for (int top = first; top < end; top += kSquare)
    for (int left = 0; left < upright.Width(); left += kSquare)
      for (int y = top; y < std::min(top + kSquare, end); ++y) {
        const std::uint32_t* row = picture.Pixels() + walk.Start + y * walk.NextRow;
        for (int x = left; x < std::min(left + kSquare, upright.Width()); ++x)
          upright.Row(y)[x] = row[x * walk.NextPixel];
      }
}

Raster ApplyOrientation(Raster picture, int orientation) {
  if (orientation < 2 || orientation > 8 || picture.IsEmpty()) return picture;
  const bool onItsSide = orientation >= 5;
  Raster upright(onItsSide ? picture.Height() : picture.Width(),
                 onItsSide ? picture.Width() : picture.Height());
  OrientRows(picture, orientation, upright, 0, upright.Height());
  return upright;
}

}  // namespace graphize
