#pragma once

#include <cstdint>
#include <optional>

#include "raster/plot_image.h"

namespace graphize {

struct SnappedPosition {
  float X = 0, Y = 0;
};

/// The centre of the black pixels near (x, y): within `distance` pixels along the row (Mode 1
/// "Snap to X"), along the column (2 "Snap to Y"), or in the square around it (3 "Snap Center",
/// which gives (x, y) back when there is no ink). Nothing where the cursor is not to be moved.
/// Centres between two pixels go to the left or upper one.
std::optional<SnappedPosition> SnapToXY(const PlotImage& image, float x, float y, std::int16_t Mode,
                                        std::int16_t distance);

}  // namespace graphize
