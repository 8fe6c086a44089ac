#pragma once

#include <optional>
#include <vector>

#include "finding_axes/long_lines.h"

namespace graphize {

/// Along the rows or along the columns.
enum class AxisCourse { Level, Upright };

/// A mark on an axis: where it lies along it, and how far it reaches from the axis line.
struct Tick {
  double Position = 0;
  double Length = 0;
};

/// The short strokes that stand on an axis line, on its right or lower side (1) or on the other
/// (-1), looked at for `reach` pixels, with their middles to a part of a pixel.
std::vector<Tick> TicksOn(const InkImage& upright, AxisCourse course, const LongLine& line,
                          int side, double reach);

/// The lines of the grid, or of the frame, that cross the axis or end near it: `near` pixels from
/// `across`.
std::vector<Tick> LinesAcross(const LineSet& lines, AxisCourse course, double across, double near);

/// The tick that a label at `position` belongs to, the longest within `tolerance` or the nearest of
/// equal ones.
std::optional<Tick> TickAt(const std::vector<Tick>& ticks, double position, double tolerance);

}  // namespace graphize
