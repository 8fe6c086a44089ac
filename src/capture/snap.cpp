#include "capture/snap.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"

namespace graphize {

std::optional<SnappedPosition> SnapToXY(const PlotImage& image, float x, float y, std::int16_t Mode,
                                        std::int16_t distance) {
  if (Mode < 1 || Mode > 3) return std::nullopt;
  const int reachX = Mode == 2 ? 0 : distance;
  const int reachY = Mode == 1 ? 0 : distance;
  const int column = ToInt32(x), row = ToInt32(y);
  float sumX = 0, sumY = 0;
  std::int16_t count = 0;
  // Outside the picture nothing is black: the window is cut to it.
  const int firstX = std::max(-reachX, -column);
  const int lastX = std::min(reachX, image.Width() - 1 - column);
  const int firstY = std::max(-reachY, -row);
  const int lastY = std::min(reachY, image.Height() - 1 - row);
  for (int i = firstX; i <= lastX; ++i) {
    for (int j = firstY; j <= lastY; ++j) {
      if (!IsBlack(image, column + i, row + j)) continue;
      sumX += static_cast<float>(i);
      sumY += static_cast<float>(j);
      count = ToInt16(count + 1);
    }
  }
  if (count == 0) {
    if (Mode == 3) return SnappedPosition{x, y};
    return std::nullopt;
  }
  const auto n = static_cast<float>(count);
  return SnappedPosition{std::floor(sumX / n) + x, std::floor(sumY / n) + y};
}

}  // namespace graphize
