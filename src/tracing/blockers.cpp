#include "tracing/blockers.h"

#include "capture/point_store.h"

namespace graphize {

namespace {

void Draw(const Blocker& blocker, PlotImage& image, Colour colour) {
  DrawDot(image, blocker.X, blocker.Y, blocker.Size, colour);
}

}  // namespace

Colour BlockerColour(const Settings& settings) {
  const Colour colour = PaletteColour(settings.BlockColor);
  return colour == kBlack ? 0x000001 : colour;
}

void PaintBlocker(BlockerList& list, PlotImage& image, CommandStates& commands,
                  const Settings& settings, std::int16_t x, std::int16_t row, std::int32_t Size) {
  if (list.Count >= kMaxBlockers) return;
  ++list.Count;
  list.Blockers[list.Count] = {x, row, Size};
  Draw(list.Blockers[list.Count], image, BlockerColour(settings));
  if (list.Count == 1) EnableBlockerCommands(commands, true);
}

void ClearLastBlocker(BlockerList& list, PlotImage& image, CommandStates& commands,
                      const Settings& settings) {
  if (list.Count > 0) --list.Count;
  if (list.Count == 0) EnableBlockerCommands(commands, false);
  ClearMarks(image);
  RedrawBlockers(list, image, settings);
}

void ClearBlockers(BlockerList& list, PlotImage& image, CommandStates& commands) {
  list.Count = 0;
  EnableBlockerCommands(commands, false);
  ClearMarks(image);
}

void RedrawBlockers(const BlockerList& list, PlotImage& image, const Settings& settings) {
  const Colour colour = BlockerColour(settings);
  for (int i = 1; i <= list.Count; ++i) Draw(list.Blockers[i], image, colour);
}

}  // namespace graphize
