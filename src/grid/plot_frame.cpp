#include "grid/plot_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "grid/grid_evidence.h"

namespace graphize {

namespace {

/// How far tick marks may stand out of the frame.
int LongestTick(const PlotPlace& place) {
  return std::max(15, place.Columns.Length() / 25);
}

/// From how many rows on an upright stroke is a frame or axis line.
int ShortestFrame(const PlotPlace& place) {
  return std::max(30, place.Rows.Length() / 4);
}

int RowOf(const GridLine& line, int column) {
  return static_cast<int>(std::lround(line.RowAt(column)));
}

/// The outermost upright line within a tick's length of the line's end; `step` points outward.
std::optional<int> FrameAtEnd(const BlackMap& map, const PlotPlace& place, const GridLine& line,
                              int end, int step) {
  const int shortest = ShortestFrame(place);
  const int half = line.Thickness / 2 + 1;
  for (int inward = 0; inward <= LongestTick(place); ++inward) {
    const int column = end - step * inward;
    if (!line.Columns.Contains(column)) break;
    const int row = RowOf(line, column);
    if (UprightReach(map, column, row - half, -1, shortest) +
            UprightReach(map, column, row + half, 1, shortest) >=
        shortest)
      return column;
  }
  return std::nullopt;
}

/// Drops what of the line lies outside `columns`.
void Clip(Span columns, GridLine& line) {
  for (Span& piece : line.Pieces)
    piece = {std::max(piece.First, columns.First), std::min(piece.Last, columns.Last)};
  std::erase_if(line.Pieces, [](const Span& piece) { return piece.Length() < 1; });
  if (!line.Pieces.empty())
    line.Columns = {line.Pieces.front().First, line.Pieces.back().Last};
  else
    line.Columns = {};
}

/// Where most of the lines end, for those that found no frame themselves.
std::optional<int> Consensus(std::vector<int> ends, std::size_t lines) {
  if (ends.empty() || 2 * ends.size() < lines) return std::nullopt;
  std::nth_element(ends.begin(), ends.begin() + static_cast<std::ptrdiff_t>(ends.size() / 2),
                   ends.end());
  return ends[ends.size() / 2];
}

/// Whether an upright line meets the line's end `column` and stops there on the outer side.
bool IsCorner(const BlackMap& map, const PlotPlace& place, const GridLine& line, int column,
              int inward) {
  const int shortest = ShortestFrame(place);
  const int half = line.Thickness / 2 + 1;
  for (int aside = -2; aside <= 2; ++aside) {
    const int row = RowOf(line, std::clamp(column + aside, line.Columns.First, line.Columns.Last));
    if (UprightReach(map, column + aside, row + inward * half, inward, shortest) < shortest)
      continue;
    if (UprightReach(map, column + aside, row - inward * half, -inward, shortest) <=
        LongestTick(place))
      return true;
  }
  return false;
}

/// Whether no upright line meets the line's end `column`.
bool IsFree(const BlackMap& map, const PlotPlace& place, const GridLine& line, int column) {
  const int shortest = ShortestFrame(place);
  const int half = line.Thickness / 2 + 1;
  for (int aside = -2; aside <= 2; ++aside) {
    const int row = RowOf(line, std::clamp(column + aside, line.Columns.First, line.Columns.Last));
    for (const int step : {-1, 1})
      if (UprightReach(map, column + aside, row + step * half, step, shortest) >= shortest)
        return false;
  }
  return true;
}

/// How far an axis may go on beyond the last line across it.
int LongestTip(const PlotPlace& place) {
  return std::max(15, place.Columns.Length() / 12);
}

/// By how many columns a line that reaches the plot's end may seem to miss it: its last break, and
/// what clicks and scans are off.
int Rounding(const PlotPlace& place, const GridLine& line) {
  return 2 + line.LongestBreak + place.Columns.Length() / 200;
}

/// Whether an upright line crosses the line's course between its end and the plot's; `step` points
/// outward.
bool IsCrossedBeyond(const BlackMap& map, const PlotPlace& place, const GridLine& line, int step) {
  const int shortest = ShortestFrame(place);
  const int margin = Rounding(place, line);
  const int end = step > 0 ? line.Columns.Last : line.Columns.First;
  const int plotEnd = step > 0 ? line.Plot.Last : line.Plot.First;
  for (int column = end + step * margin; step * (plotEnd + step * margin - column) >= 0;
       column += step) {
    if (column < 0 || column >= map.Bits.Width()) break;
    const int row = RowOf(line, column);
    if (UprightReach(map, column, row + 1, -1, shortest) +
            UprightReach(map, column, row, 1, shortest) >=
        shortest)
      return true;
  }
  return false;
}

constexpr double kUnbroken = 0.97;  // coverage

/// A frame is solid, or a solid line that came out broken; a grid may be dashed.
bool IsSolid(const GridLine& line) {
  return line.Coverage >= 0.9 || (line.Coverage >= 0.5 && line.Regularity < 0.6);
}

bool IsThrough(const MapPixel& point, const GridLine& line) {
  return std::abs(line.RowAt(point.Column) - point.Row) <= 2.5 + 0.5 * line.Thickness;
}

/// Whether the line runs between the two reference points across it: where the plot goes on beyond
/// it on both sides it is no frame, whatever is left of the sides that meet it.
bool IsInside(const PlotPlace& place, const GridLine& line) {
  if (IsThrough(place.Origin, line) || IsThrough(place.Across, line)) return false;
  return (line.RowAt(place.Origin.Column) < place.Origin.Row) !=
         (line.RowAt(place.Across.Column) < place.Across.Row);
}

/// A side of the frame has a corner at either end; of two axes alone, at one.
bool IsFrameSide(const BlackMap& map, const PlotPlace& place, const GridLine& line, int inward) {
  if (!IsSolid(line)) return false;
  const bool first = IsCorner(map, place, line, line.Columns.First, inward);
  const bool last = IsCorner(map, place, line, line.Columns.Last, inward);
  return (first && last) || (first && IsFree(map, place, line, line.Columns.Last)) ||
         (last && IsFree(map, place, line, line.Columns.First));
}

}  // namespace

void EndAtFrame(const BlackMap& map, const PlotPlace& place, std::vector<GridLine>& lines) {
  // Relative to the plot: the frame of a turned plot leans.
  std::vector<int> firsts, lasts;
  for (GridLine& line : lines) {
    Span columns = line.Columns;
    if (const auto first = FrameAtEnd(map, place, line, line.Columns.First, -1)) {
      columns.First = *first;
      firsts.push_back(*first - line.Plot.First);
    }
    if (const auto last = FrameAtEnd(map, place, line, line.Columns.Last, 1)) {
      columns.Last = *last;
      lasts.push_back(*last - line.Plot.First);
    }
    Clip(columns, line);
  }
  const auto first = Consensus(firsts, lines.size()), last = Consensus(lasts, lines.size());
  const int tick = LongestTick(place);
  for (GridLine& line : lines) {
    Span columns = line.Columns;
    const int left = line.Plot.First;
    if (first && columns.First >= left + *first - tick)
      columns.First = std::max(columns.First, left + *first);
    if (last && columns.Last <= left + *last + tick)
      columns.Last = std::min(columns.Last, left + *last);
    Clip(columns, line);
  }
  std::erase_if(lines, [](const GridLine& line) { return line.Pieces.empty(); });
}

std::vector<bool> ReachBothEnds(const BlackMap& map, const PlotPlace& place,
                                const std::vector<GridLine>& lines) {
  std::vector<bool> reach(lines.size(), true);
  for (const int step : {-1, 1}) {
    std::vector<int> missing;  // columns to the plot's end
    for (const GridLine& line : lines)
      missing.push_back(step > 0 ? line.Plot.Last - line.Columns.Last
                                 : line.Columns.First - line.Plot.First);
    const int beyondReferences = step > 0 ? place.Columns.Last - place.ReferenceColumns.Last
                                          : place.ReferenceColumns.First - place.Columns.First;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const int rounding = Rounding(place, lines[i]);
      if (missing[i] <= rounding) continue;
      const auto alike = std::count_if(missing.begin(), missing.end(), [&](int other) {
        return std::abs(other - missing[i]) <= rounding;
      });
      const bool isGridsEnd = missing[i] - beyondReferences <= LongestTip(place) &&
                              2 * static_cast<std::size_t>(alike) >= lines.size() &&
                              !IsCrossedBeyond(map, place, lines[i], step);
      if (!isGridsEnd) reach[i] = false;
    }
  }
  return reach;
}

bool IsAxis(const PlotPlace& place, const GridLine& line) {
  return IsSolid(line) && IsThrough(place.Origin, line);
}

std::vector<bool> FindFrame(const BlackMap& map, const PlotPlace& place,
                            const std::vector<GridLine>& lines) {
  std::vector<bool> frame;
  for (const GridLine& line : lines) frame.push_back(IsAxis(place, line));
  const auto first = std::find_if(lines.begin(), lines.end(), IsSolid);
  if (first == lines.end()) return frame;
  const auto last = std::find_if(lines.rbegin(), lines.rend(), IsSolid).base() - 1;
  for (const auto& [side, inward] : {std::pair{first, 1}, std::pair{last, -1}}) {
    if (IsInside(place, *side)) continue;
    if (IsFrameSide(map, place, *side, inward) ||
        (side->Coverage < kUnbroken && IsThrough(place.Across, *side)))
      frame[static_cast<std::size_t>(side - lines.begin())] = true;
  }
  return frame;
}

}  // namespace graphize
