#include "raster/viewport.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace graphize {

namespace {

constexpr std::array<double, 16> kZooms = {
    1.0 / 64, 1.0 / 32, 1.0 / 16, 1.0 / 8, 1.0 / 4, 1.0 / 2, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32};
/// Products of a zoom or a screen's scaling are not exact where a pixel begins.
constexpr double kInexact = 1e-6;

int Floor(double value) {
  return static_cast<int>(std::floor(value + kInexact));
}

int Ceil(double value) {
  return static_cast<int>(std::ceil(value - kInexact));
}

double FittingZoom(const Viewport& view) {
  if (view.PictureWidth <= 0 || view.PictureHeight <= 0) return 1;
  return std::clamp(std::min(static_cast<double>(view.Width) / view.PictureWidth,
                             static_cast<double>(view.Height) / view.PictureHeight),
                    kSmallestZoom, kLargestZoom);
}

/// The scroll position at which a picture position lies at `at` of the opening, and with it the
/// pixel: it may begin just there.
int Scrolled(double position, double at, double zoom) {
  const int result = Floor(position * zoom - at);
  return PixelAt(zoom, result + at) < Floor(position) ? result + 1 : result;
}

bool IsHeld(const Viewport& view, double x, double y) {
  const Viewport::Anchor& held = view.Held;
  return held.Zoom == view.Zoom && held.X == x && held.Y == y && held.ScrolledX == view.X &&
         held.ScrolledY == view.Y;
}

}  // namespace

void ResetScrBars(Viewport& view, int pictureWidth, int pictureHeight) {
  view.PictureWidth = pictureWidth;
  view.PictureHeight = pictureHeight;
  if (view.Fits) view.Zoom = FittingZoom(view);
  view.MaximumX = std::max(ZoomedLength(view.Zoom, pictureWidth) - view.Width, 0);
  view.MaximumY = std::max(ZoomedLength(view.Zoom, pictureHeight) - view.Height, 0);
  ScrollTo(view, view.X, view.Y);
}

void ShowFromCorner(Viewport& view, int pictureWidth, int pictureHeight) {
  view.X = view.Y = 0;
  view.Zoom = 1;
  view.Fits = false;
  ResetScrBars(view, pictureWidth, pictureHeight);
}

void ScrollTo(Viewport& view, int x, int y) {
  view.X = std::clamp(x, 0, view.MaximumX);
  view.Y = std::clamp(y, 0, view.MaximumY);
}

int ZoomedLength(double zoom, int pixels) {
  return pixels > 0 ? std::max(Ceil(pixels * zoom), 1) : 0;
}

int FirstZoomedPlaceOf(double zoom, int pixel) {
  return Floor(pixel * zoom);
}

int LastPlaceOf(double zoom, int pixel) {
  return std::max(Ceil((pixel + 1.0) * zoom) - 1, FirstPlaceOf(zoom, pixel));
}

int PlaceOfMark(double zoom, float position) {
  return static_cast<int>(
      std::lrint((static_cast<double>(position) + 0.5) * zoom - 0.5));  // half to even
}

int PixelAt(double zoom, double place) {
  return Floor(place / zoom);
}

void SetZoom(Viewport& view, double zoom, double x, double y) {
  zoom = std::clamp(zoom, kSmallestZoom, kLargestZoom);
  view.Fits = false;
  const double column = IsHeld(view, x, y) ? view.Held.Column : (view.X + x) / view.Zoom;
  const double row = IsHeld(view, x, y) ? view.Held.Row : (view.Y + y) / view.Zoom;
  view.Zoom = zoom;
  ResetScrBars(view, view.PictureWidth, view.PictureHeight);
  ScrollTo(view, Scrolled(column, x, zoom), Scrolled(row, y, zoom));
  view.Held = {x, y, column, row, view.X, view.Y, zoom};
}

double NextZoom(double zoom, int steps) {
  // One of the list, or between two.
  const auto above = std::upper_bound(kZooms.begin(), kZooms.end(), zoom * (1 + kInexact));
  const auto atOrAbove = std::lower_bound(kZooms.begin(), kZooms.end(), zoom * (1 - kInexact));
  const auto from = steps > 0 ? above - kZooms.begin() - 1 : atOrAbove - kZooms.begin();
  return kZooms[static_cast<std::size_t>(
      std::clamp<std::ptrdiff_t>(from + steps, 0, std::ssize(kZooms) - 1))];
}

void ZoomToFit(Viewport& view) {
  view.Fits = true;
  ResetScrBars(view, view.PictureWidth, view.PictureHeight);
}

bool IsCutOff(const Viewport& view) {
  return view.MaximumX > 0 || view.MaximumY > 0;
}

}  // namespace graphize
