#include "commands/view_commands.h"

#include <cmath>

#include "base/numbers.h"

namespace graphize {

void ResizeView(Workspace& ws, int width, int height) {
  ws.view.Width = width;
  ws.view.Height = height;
  ResetScrBars(ws.view, ws.plot.Width(), ws.plot.Height());
}

bool CanZoom(const Workspace& ws) {
  return ws.plot.IsPresent();
}

bool CanZoomIn(const Workspace& ws) {
  return CanZoom(ws) && ws.view.Zoom < kLargestZoom;
}

bool CanZoomOut(const Workspace& ws) {
  return CanZoom(ws) && ws.view.Zoom > kSmallestZoom;
}

bool IsFitted(const Workspace& ws) {
  return CanZoom(ws) && ws.view.Fits;
}

void ZoomBy(Workspace& ws, int steps, double x, double y) {
  if (steps != 0) ZoomTo(ws, NextZoom(ws.view.Zoom, steps), x, y);
}

void ZoomTo(Workspace& ws, double zoom, double x, double y) {
  if (CanZoom(ws)) SetZoom(ws.view, zoom, x, y);
}

void FitPicture(Workspace& ws) {
  if (CanZoom(ws)) ZoomToFit(ws.view);
}

void ShowPlace(Workspace& ws, double x, double y) {
  Viewport& view = ws.view;
  const auto start = [&](double at, int length) {
    return static_cast<int>(std::lround(at * view.Zoom - length / 2.0));
  };
  ScrollTo(view, start(x, view.Width), start(y, view.Height));
}

void BringIntoSight(Workspace& ws, double x, double y) {
  const Viewport& view = ws.view;
  const int column = PlaceOfMark(view.Zoom, static_cast<float>(x));
  const int row = PlaceOfMark(view.Zoom, static_cast<float>(y));
  if (column < view.X || column >= view.X + view.Width || row < view.Y ||
      row >= view.Y + view.Height)
    ScrollTo(ws.view, column - view.Width / 2, row - view.Height / 2);
}

std::string ZoomText(double zoom) {
  constexpr double kTenths = 1000;  // of a percent
  const auto tenths = static_cast<int>(std::lround(zoom * kTenths));
  std::string text = std::to_string(tenths / 10);
  if (tenths % 10 != 0) text += "." + std::to_string(tenths % 10);
  return text + "%";
}

}  // namespace graphize
