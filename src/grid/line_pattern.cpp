#include "grid/line_pattern.h"

#include <algorithm>
#include <cmath>

#include "base/median.h"

namespace graphize {

namespace {

bool IsBlackOnLine(const GridLine& line, int x) {
  const BlackRun& run = line.Runs[x];
  const double half = 0.5 * line.Thickness + 0.5;
  return !run.IsEmpty() && run.Top <= line.RowAt(x) + half && run.Bottom >= line.RowAt(x) - half;
}

/// The black stretches of the line's course over the whole map, those left out in which only
/// something else is seen, such as an upright line.
std::vector<Span> Dashes(const GridLine& line) {
  std::vector<Span> dashes;
  bool clean = false;
  for (int x = 0; x < static_cast<int>(line.Runs.size()); ++x) {
    if (!IsBlackOnLine(line, x)) continue;
    if (!dashes.empty() && dashes.back().Last == x - 1) {
      dashes.back().Last = x;
    } else {
      if (!dashes.empty() && !clean) dashes.pop_back();
      dashes.push_back({x, x});
      clean = false;
    }
    clean = clean || line.IsClean(x);
  }
  if (!dashes.empty() && !clean) dashes.pop_back();
  return dashes;
}

/// How long a break may be: to count as the line's pattern, and for the line to go on behind it.
struct BreakLimits {
  int Pattern = 4, Piece = 4;
};

/// From the breaks inside the plot. The line goes on where one dash is missing: one whose pixels
/// happen to lie thicker than usual looks like something else's.
BreakLimits LongestBreaks(const std::vector<Span>& dashes, Span plot) {
  std::vector<double> breaks, lengths;
  for (std::size_t i = 1; i < dashes.size(); ++i) {
    if (dashes[i - 1].Last >= plot.First && dashes[i].First <= plot.Last) {
      breaks.push_back(dashes[i].First - dashes[i - 1].Last - 1);
      lengths.push_back(dashes[i].Length());
    }
  }
  if (breaks.size() < 4) return {};
  std::sort(breaks.begin(), breaks.end());
  const double usual = breaks[breaks.size() * 3 / 4];
  const int pattern = std::clamp(static_cast<int>(2 * usual), 4, 64);
  return {pattern, pattern + static_cast<int>(std::min(Median(lengths), usual))};
}

}  // namespace

void FindPieces(GridLine& line) {
  const Span plot = line.Plot;
  const std::vector<Span> dashes = Dashes(line);
  const auto [longest, longestInPiece] = LongestBreaks(dashes, plot);
  for (const Span& dash : dashes) {
    if (!line.Pieces.empty() && dash.First - line.Pieces.back().Last - 1 <= longestInPiece)
      line.Pieces.back().Last = dash.Last;
    else
      line.Pieces.push_back(dash);
  }
  line.LongestBreak = longest;
  std::erase_if(line.Pieces, [&, longest = longest](const Span& piece) {
    return piece.Length() < std::max(12, 2 * longest) || piece.Last < plot.First ||
           piece.First > plot.Last;
  });
  if (line.Pieces.empty()) return;
  line.Columns = {line.Pieces.front().First, line.Pieces.back().Last};

  int drawn = 0, black = 0, clean = 0;
  for (const Span& piece : line.Pieces) drawn += piece.Length();
  std::vector<double> periods;
  for (std::size_t i = 0; i < dashes.size(); ++i) {
    const auto inPiece = [&](const Span& piece) { return piece.Contains(dashes[i].First); };
    if (std::none_of(line.Pieces.begin(), line.Pieces.end(), inPiece)) continue;
    black += dashes[i].Length();
    for (int x = dashes[i].First; x <= dashes[i].Last; ++x) clean += line.IsClean(x) ? 1 : 0;
    if (i > 0 && dashes[i].First - dashes[i - 1].Last - 1 <= longest)
      periods.push_back(dashes[i].First - dashes[i - 1].First);
  }
  line.Coverage = static_cast<double>(black) / drawn;
  line.CleanPart = black == 0 ? 0 : static_cast<double>(clean) / black;
  line.Periods = static_cast<int>(periods.size());
  if (periods.empty()) return;
  const double usual = Median(periods);
  const auto alike = std::count_if(periods.begin(), periods.end(), [&](double period) {
    return std::abs(period - usual) <= std::max(1.0, 0.15 * usual);
  });
  line.Regularity = static_cast<double>(alike) / static_cast<double>(periods.size());
}

}  // namespace graphize
