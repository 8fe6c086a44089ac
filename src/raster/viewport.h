#pragma once

namespace graphize {

/// Logical pixels of the screen per picture pixel: powers of two below 1:1, whole numbers above.
inline constexpr double kSmallestZoom = 1.0 / 64, kLargestZoom = 32;

/// Which part of the picture is seen, and how large. Lengths and places are logical pixels of the
/// zoomed picture, whose upper left corner is (0, 0): at 1:1 they are picture pixels.
struct Viewport {
  int X = 0;  // HPScroll: what lies left of the opening
  int Y = 0;  // VpScroll: what lies above it
  int Width = 0;
  int Height = 0;
  int MaximumX = 0;
  int MaximumY = 0;
  double Zoom = 1;
  bool Fits = false;  // the zoom follows the opening, which shows the whole picture
  int PictureWidth = 0, PictureHeight = 0;  // picture pixels
  /// What the last zoom was to keep under the pointer. Where the edge of the picture did not let
  /// it, the next zooms at that place still do, as long as nothing has scrolled meanwhile.
  struct Anchor {
    double X = 0, Y = 0;         // of the opening
    double Column = 0, Row = 0;  // picture pixels
    int ScrolledX = 0, ScrolledY = 0;
    double Zoom = 0;  // 0: there is none
  } Held;
};

/// Fits the scroll bars to a picture of this size, keeping the position where it is possible.
void ResetScrBars(Viewport& view, int pictureWidth, int pictureHeight);
/// A picture that has come is shown from its upper left corner, 1:1.
void ShowFromCorner(Viewport& view, int pictureWidth, int pictureHeight);
/// Moves the view, held within the scroll bars' ranges.
void ScrollTo(Viewport& view, int x, int y);

/// What a zoomed length of picture pixels takes, at least one.
int ZoomedLength(double zoom, int pixels);
/// What FirstPlaceOf does but at 1:1, where inner loops call it.
int FirstZoomedPlaceOf(double zoom, int pixel);
/// The places of a picture pixel: below 1:1 it may share one with its neighbours.
inline int FirstPlaceOf(double zoom, int pixel) {
  return zoom == 1 ? pixel : FirstZoomedPlaceOf(zoom, pixel);
}
int LastPlaceOf(double zoom, int pixel);
/// The place that a mark of a picture position stands on; whole positions are pixels' centres.
int PlaceOfMark(double zoom, float position);
/// The picture pixel at a place, which may lie between two screen pixels.
int PixelAt(double zoom, double place);

/// Any zoom, held within its range; the picture stays where it is at (x, y) of the opening.
void SetZoom(Viewport& view, double zoom, double x, double y);
/// The next zoom in a list without large jumps: so many up or, below 0, down.
double NextZoom(double zoom, int steps);
/// The whole picture as large as the opening shows it, also when the opening changes.
void ZoomToFit(Viewport& view);
/// Whether a part of the picture is out of sight.
bool IsCutOff(const Viewport& view);

}  // namespace graphize
