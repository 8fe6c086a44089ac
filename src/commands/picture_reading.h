#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/translation.h"
#include "commands/shown_picture.h"
#include "desktop/desktop.h"
#include "raster/picture_operation.h"
#include "reading/read_curve.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace graphize {

/// Whether curves and symbols can be read: there is a picture. Without axes the points keep their
/// places, and their values come when the axes are defined.
bool CanRead(const Workspace& ws);
/// Why they cannot: there is no picture, or its axes contradict themselves.
std::optional<Outcome> ReadingRefused(const Workspace& ws);
/// Why so many points more cannot be captured.
std::optional<Outcome> RoomRefused(const PointStore& store, std::size_t count);

/// The blockers, which no reading passes.
std::vector<ReadingWall> WallsOf(const BlockerList& blockers);

/// Runs `work(PictureOperation&)` beside the window, on the picture without marks, which it only
/// reads. Shows what it does, marked for translation, and how far it is; Escape stops it.
template <class Work>
auto ReadBeside(Workspace& ws, const Desktop& desktop, const char* what, const Work& work) {
  ws.window.Hourglass = true;
  ws.status.Status = Tr(what);
  const BasePictureShown base(ws.plot);
  auto result = RunBeside(ShowProgress(ws, desktop), work);
  ws.window.Hourglass = false;
  ws.status.ProgressVisible = false;
  ws.status.Status.clear();
  return result;
}

/// A place that was read, and how well it is known.
struct ReadPlace {
  double X = 0, Y = 0;  // picture pixels, rows downward
  Certainty Sure;
};
/// Captures the places into the active curve, with their values where there are axes.
void CaptureRead(Workspace& ws, const Desktop& desktop, const std::vector<ReadPlace>& places);

}  // namespace graphize
