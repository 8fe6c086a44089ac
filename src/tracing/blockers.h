#pragma once

#include <array>
#include <cstdint>

#include "desktop/command_states.h"
#include "raster/plot_image.h"
#include "settings/settings.h"

namespace graphize {

inline constexpr std::int16_t kMaxBlockers = 100;

/// A dot painted on the picture that no tracer passes.
struct Blocker {
  std::int16_t X = 0, Y = 0;  // picture pixel of its centre, row downward
  std::int32_t Size = 0;      // width in pixels

  bool operator==(const Blocker&) const = default;
};

/// The blockers in the order in which they were painted, entries 1 to Count. They outlive a refresh
/// of the picture and a new picture.
struct BlockerList {
  std::int16_t Count = 0;
  std::array<Blocker, kMaxBlockers + 1> Blockers;  // entry 0 is not used

  bool operator==(const BlockerList&) const = default;
};

/// What blockers are painted in: never black, which would be a curve.
Colour BlockerColour(const Settings& settings);

/// Paints a blocker `Size` pixels wide at the picture pixel (x, row), row downward, and remembers
/// it; the first one makes the commands that clear blockers available. A full list takes no more,
/// silently.
void PaintBlocker(BlockerList& list, PlotImage& image, CommandStates& commands,
                  const Settings& settings, std::int16_t x, std::int16_t row, std::int32_t Size);

/// Takes back the last one, or all; the picture keeps no marks but the blockers that are left.
void ClearLastBlocker(BlockerList& list, PlotImage& image, CommandStates& commands,
                      const Settings& settings);
void ClearBlockers(BlockerList& list, PlotImage& image, CommandStates& commands);

/// Draws all blockers again: after the marks were cleared and on a new picture.
void RedrawBlockers(const BlockerList& list, PlotImage& image, const Settings& settings);

}  // namespace graphize
