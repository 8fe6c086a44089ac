#pragma once

namespace graphize {

/// Which part of the picture is seen: the scroll bars' values and the size of the opening, in
/// picture pixels.
struct Viewport {
  int X = 0;  // HPScroll: picture column at the left edge
  int Y = 0;  // VpScroll: picture row at the top edge
  int Width = 0;
  int Height = 0;
  int MaximumX = 0;
  int MaximumY = 0;
};

/// Fits the scroll bars to a picture of this size, keeping the position where it is possible.
void ResetScrBars(Viewport& view, int pictureWidth, int pictureHeight);
/// Moves the view, held within the scroll bars' ranges.
void ScrollTo(Viewport& view, int x, int y);

}  // namespace graphize
