#pragma once

#include <string>

#include "workspace/workspace.h"

namespace graphize {

/// The opening over the picture has a new size, in logical pixels.
void ResizeView(Workspace& ws, int width, int height);

bool CanZoom(const Workspace& ws);
bool CanZoomIn(const Workspace& ws);
bool CanZoomOut(const Workspace& ws);
bool IsFitted(const Workspace& ws);
/// So many steps up or, below 0, down; the picture stays where it is at (x, y) of the opening.
void ZoomBy(Workspace& ws, int steps, double x, double y);
void ZoomTo(Workspace& ws, double zoom, double x, double y);
void FitPicture(Workspace& ws);
/// A place of the picture, in its pixels, comes into the middle of the opening.
void ShowPlace(Workspace& ws, double x, double y);
/// The same where it is out of sight.
void BringIntoSight(Workspace& ws, double x, double y);

/// A zoom in words: "100%", "12.5%".
std::string ZoomText(double zoom);

}  // namespace graphize
