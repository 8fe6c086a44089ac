#include "grid/grid_evidence.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace graphize {

namespace {

constexpr int kLooseBreak = 3;     // columns; shorter breaks are not looked at one by one
constexpr int kGoesOnColumns = 4;  // a stroke that is there for so many columns goes on

/// The columns of `span` that lie inside `plot`.
int Overlap(Span span, Span plot) {
  return std::max(0, std::min(span.Last, plot.Last) - std::max(span.First, plot.First) + 1);
}

/// The part of the plot where the line is drawn, 0..1.
double SpannedPart(const GridLine& line) {
  int spanned = 0;
  for (const Span& piece : line.Pieces) spanned += Overlap(piece, line.Plot);
  return static_cast<double>(spanned) / std::max(1, line.Plot.Length());
}

/// Text and symbols have breaks, too, but little of them is a line alone.
bool HasPattern(const GridLine& line) {
  if (line.Coverage >= 0.9) return line.CleanPart >= 0.2;
  if (line.CleanPart < 0.7) return false;
  if (line.Coverage >= 0.5) return true;
  // Symbols in a row are regular as well, but farther apart.
  return line.Regularity >= 0.6 && line.Periods >= 15 &&
         line.Periods * 1.5 >= line.Plot.Length() / 24.0;
}

/// Whether a stroke goes on beyond the line's black column `end` towards `step` (1 right, -1 left):
/// it turns off to one side there, or runs on beside the line's course.
bool GoesOn(const BitMap& map, const GridLine& line, int end, int step) {
  BlackRun run = line.Runs[end];
  const double half = 0.5 * line.Thickness;
  const double above = line.RowAt(end) - half - run.Top;
  const double below = run.Bottom - line.RowAt(end) - half;
  const double turn = 2 + line.Thickness;
  if (above > turn && below > turn) return false;  // it ends at an upright line
  if (above > turn || below > turn) return true;
  for (int column = 1; column <= kGoesOnColumns; ++column) {
    run = RunNear(map, end + step * column, run.Middle(), 0.5 * run.Thickness() + 1,
                  8 * line.Thickness);
    if (run.IsEmpty()) return false;
  }
  return true;
}

/// The line's ends, and those of its long breaks, that lie inside the plot.
struct Ends {
  int Breaks = 0, BreaksThatGoOn = 0;  // both ends of every long break
  bool LineGoesOn = false;
};
Ends LooseEnds(const BitMap& map, const GridLine& line) {
  const Span plot = line.Plot;
  const int margin = 4 + plot.Length() / 64;
  const auto goesOn = [&](int column, int step) {
    return column >= plot.First + margin && column <= plot.Last - margin &&
           GoesOn(map, line, column, step);
  };
  Ends ends;
  int last = -1;
  for (int x = line.Columns.First; x <= line.Columns.Last; ++x) {
    if (line.Runs[x].IsEmpty()) continue;
    if (last >= 0 && x - last > kLooseBreak) {
      ends.Breaks += 2;
      ends.BreaksThatGoOn += goesOn(last, 1) ? 1 : 0;
      ends.BreaksThatGoOn += goesOn(x, -1) ? 1 : 0;
    }
    last = x;
  }
  ends.LineGoesOn = goesOn(line.Columns.First, -1) || goesOn(line.Columns.Last, 1);
  return ends;
}

}  // namespace

bool IsGridLine(const BlackMap& map, const GridLine& line) {
  if (line.Pieces.empty() || !HasPattern(line)) return false;
  if (SpannedPart(line) < 0.55) return false;
  if (line.Bend > 2.5 + 0.002 * line.Plot.Length()) return false;
  constexpr double kTurn = 0.0105;  // 0.6 degrees off the calibrated angle
  if (std::abs(line.Slope - map.Slope) > kTurn + 2.0 / line.Plot.Length()) return false;
  const Ends ends = LooseEnds(map.Bits, line);
  return !ends.LineGoesOn && 2 * ends.BreaksThatGoOn <= ends.Breaks;
}

bool IsPlausibleLine(const GridLine& line) {
  return !line.Pieces.empty() && SpannedPart(line) >= 0.3 &&
         (line.Coverage >= 0.25 || HasPattern(line));
}

int UprightReach(const BlackMap& map, int column, int row, int step, int limit) {
  constexpr int kBreak = 3;
  constexpr double kWander = 0.02;  // columns per row: the paper may be bent
  int reach = 0, drift = 0;
  for (int rows = 1; rows <= limit + kBreak && rows - reach <= kBreak + 1; ++rows) {
    const int expected = column - static_cast<int>(std::lround(map.Slope * rows * step));
    for (const int aside : {drift, drift - 1, drift + 1}) {
      if (std::abs(aside) > 1 + kWander * rows) continue;
      if (!map.Bits.Get(expected + aside, row + step * rows)) continue;
      drift = aside;
      reach = rows;
      break;
    }
  }
  return std::min(reach, limit);
}

}  // namespace graphize
