#pragma once

#include <cstdlib>

namespace graphize {

/// Visits the pixels of the line from (x1, y1) to (x2, y2), both included, in this order, each
/// touching the one before (Bresenham's line).
template <typename Visit>
void WalkLine(int x1, int y1, int x2, int y2, Visit visit) {
  // 64-bit because ends may be far outside the picture.
  const long long dx = std::abs(static_cast<long long>(x2) - x1);
  const long long dy = -std::abs(static_cast<long long>(y2) - y1);
  const int stepX = x1 < x2 ? 1 : -1, stepY = y1 < y2 ? 1 : -1;
  long long error = dx + dy;
  int x = x1, y = y1;
  while (true) {
    visit(x, y);
    if (x == x2 && y == y2) return;
    const long long twice = 2 * error;
    if (twice >= dy) {
      error += dy;
      x += stepX;
    }
    if (twice <= dx) {
      error += dx;
      y += stepY;
    }
  }
}

}  // namespace graphize
