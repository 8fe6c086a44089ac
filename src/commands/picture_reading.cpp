#include "commands/picture_reading.h"

#include <algorithm>

#include "commands/extraction_commands.h"
#include "data/waiting_points.h"
#include "tracing/extraction_context.h"

namespace graphize {

bool CanRead(const Workspace& ws) {
  return ws.plot.IsPresent();
}

std::optional<Outcome> ReadingRefused(const Workspace& ws) {
  if (!CanRead(ws)) return Refused("there is no picture to read");
  if (!ws.calibration.IsComplete()) return std::nullopt;
  for (const char* fault : {LogOriginFault(ws.calibration), LogPointFault(ws.calibration)})
    if (fault != nullptr) return Refused(fault);
  return std::nullopt;
}

std::optional<Outcome> RoomRefused(const PointStore& store, std::size_t count) {
  const int room = store.MaxPoints - std::max(store.CaptureCount, store.ListCount);
  if (static_cast<int>(count) <= room) return std::nullopt;
  return Refused(Tr("there are %1, and the list takes only %2 more",
                    PointCount(static_cast<long long>(count)), room));
}

std::vector<ReadingWall> WallsOf(const BlockerList& blockers) {
  std::vector<ReadingWall> walls;
  for (int i = 1; i <= blockers.Count; ++i) {
    const Blocker& blocker = blockers.Blockers[static_cast<std::size_t>(i)];
    walls.push_back({blocker.X, blocker.Y, blocker.Size});
  }
  return walls;
}

void CaptureRead(Workspace& ws, const Desktop& desktop, const std::vector<ReadPlace>& places) {
  const ExtractionContext context = ExtractionOf(ws, desktop);
  for (const ReadPlace& place : places) {
    MoveCursor(context, static_cast<float>(place.X), static_cast<float>(place.Y));
    if (ws.calibration.IsComplete())
      AddPoint(ws.store, ws.commands, desktop, false);
    else
      AddValuePoint(ws.store, ws.commands, desktop, false, kNoValueYet, kNoValueYet);
    const PointId id = ws.store.CaptureId[ws.store.CaptureCount];
    SetPlace(ws.store, id, {place.X, place.Y});
    NoteCertainty(ws.store, id, place.Sure);
  }
  ShowCursor(ws.readOut, ws.axisPanel, ws.store, ws.calibration);
  ShowNewest(ws.store);
}

}  // namespace graphize
