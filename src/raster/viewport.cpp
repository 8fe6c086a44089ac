#include "raster/viewport.h"

#include <algorithm>

namespace graphize {

void ResetScrBars(Viewport& view, int pictureWidth, int pictureHeight) {
  view.MaximumX = std::max(pictureWidth - view.Width, 0);
  view.MaximumY = std::max(pictureHeight - view.Height, 0);
  ScrollTo(view, view.X, view.Y);
}

void ScrollTo(Viewport& view, int x, int y) {
  view.X = std::clamp(x, 0, view.MaximumX);
  view.Y = std::clamp(y, 0, view.MaximumY);
}

}  // namespace graphize
