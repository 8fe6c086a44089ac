#include "grid/line_paths.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace graphize {

namespace {

// Black columns of one strip that count: beyond it a strip is simply dense, so that a curve passing
// by does not draw the path of a dotted line to itself.
constexpr int kDense = 16;
constexpr int kMoveCost = 4;  // in black columns

/// How much is black, per strip and row, and the best sums of it along paths.
struct PathSearch {
  int Strips = 0, Rows = 0;
  std::vector<std::uint8_t> Black;  // [strip * Rows + row], 0..32
  std::vector<std::int8_t> Move;    // to the row of the next strip farther from the reference

  std::size_t At(int strip, int row) const { return static_cast<std::size_t>(strip) * Rows + row; }
};

/// The shifts of a sheared map make a line alternate between two rows: with `jitter` both count.
PathSearch CountBlack(const BitMap& thin, bool jitter) {
  PathSearch search;
  search.Strips = (thin.Width() + kStripColumns - 1) / kStripColumns;
  search.Rows = thin.Height();
  search.Black.resize(search.At(search.Strips, 0));
  search.Move.resize(search.Black.size());
  for (int y = 0; y < thin.Height(); ++y) {
    const std::uint64_t* row = thin.Row(y);
    const std::uint64_t* next = thin.Row(jitter && y + 1 < thin.Height() ? y + 1 : y);
    for (int strip = 0; strip < search.Strips; ++strip) {
      const std::uint64_t word = row[strip / 2] | next[strip / 2];
      const auto half = static_cast<std::uint32_t>(strip % 2 == 0 ? word : word >> 32);
      search.Black[search.At(strip, y)] = static_cast<std::uint8_t>(std::popcount(half));
    }
  }
  return search;
}

/// Sums from the strip `from` (an end of the map) to `to`, one value per row; fills Move on the
/// way.
std::vector<int> SumTowards(PathSearch& search, int from, int to, const KeepGoing& keepGoing) {
  const int step = from < to ? 1 : -1;
  const auto rows = static_cast<std::size_t>(search.Rows);
  // A border row on either side that no path enters.
  constexpr int kNever = -1000000;
  std::vector<int> sums(rows + 2, kNever), before(rows + 2, kNever);
  std::fill(before.begin() + 1, before.end() - 1, 0);
  for (int strip = from;; strip += step) {
    if (!keepGoing()) return {};
    const std::uint8_t* black = search.Black.data() + search.At(strip, 0);
    std::int8_t* move = search.Move.data() + search.At(strip, 0);
    for (std::size_t i = 1; i <= rows; ++i) {
      const int up = before[i - 1] - kMoveCost, down = before[i + 1] - kMoveCost;
      const int aside = std::max(up, down);
      const bool stays = before[i] >= aside;
      sums[i] = (stays ? before[i] : aside) + std::min<int>(black[i - 1], kDense);
      move[i - 1] = static_cast<std::int8_t>(stays ? 0 : up >= down ? -1 : 1);
    }
    std::swap(sums, before);
    if (strip == to) break;
  }
  return {before.begin() + 1, before.end() - 1};
}

LinePath Backtrack(const PathSearch& search, int reference, int row,
                   const std::vector<std::int8_t>& movesAtReference) {
  LinePath path;
  path.Rows.assign(static_cast<std::size_t>(search.Strips), row);
  path.Black.resize(path.Rows.size());
  int at = row;
  for (int strip = reference; strip >= 0; --strip) {
    path.Rows[strip] = at;
    at += strip == reference ? movesAtReference[row] : search.Move[search.At(strip, at)];
  }
  at = row;
  for (int strip = reference; strip < search.Strips; ++strip) {
    path.Rows[strip] = at;
    at += search.Move[search.At(strip, at)];
  }
  for (int strip = 0; strip < search.Strips; ++strip)
    path.Black[strip] = search.Black[search.At(strip, path.Rows[strip])];
  return path;
}

}  // namespace

std::vector<LinePath> FindLinePaths(const ShearedMap& thin, Span plot, Span rows, double presence,
                                    const KeepGoing& keepGoing) {
  if (thin.Bits.Width() == 0 || thin.Bits.Height() == 0) return {};
  PathSearch search = CountBlack(thin.Bits, thin.IsShifted());
  const int last = search.Strips - 1;
  const int reference = std::clamp((plot.First + plot.Last) / 2 / kStripColumns, 0, last);

  // The moves at the reference are written by both sums: the first is kept apart.
  const std::vector<int> left = SumTowards(search, 0, reference, keepGoing);
  if (left.empty()) return {};
  const auto atReference =
      search.Move.begin() + static_cast<std::ptrdiff_t>(search.At(reference, 0));
  const std::vector<std::int8_t> leftMoves(atReference, atReference + search.Rows);
  const std::vector<int> right = SumTowards(search, last, reference, keepGoing);
  if (right.empty()) return {};

  const auto score = [&](int row) {
    return row < 0 || row >= search.Rows
               ? -1
               : left[row] + right[row] -
                     std::min<int>(search.Black[search.At(reference, row)], kDense);
  };
  std::vector<int> peaks;
  for (int row = std::max(rows.First, 0); row <= std::min(rows.Last, search.Rows - 1); ++row)
    if (score(row) > score(row - 1) && score(row) >= score(row + 1)) peaks.push_back(row);
  std::stable_sort(peaks.begin(), peaks.end(), [&](int a, int b) { return score(a) > score(b); });

  const Span strips{std::clamp(plot.First / kStripColumns, 0, last),
                    std::clamp(plot.Last / kStripColumns, 0, last)};
  std::vector<LinePath> paths;
  for (const int row : peaks) {
    LinePath path = Backtrack(search, reference, row, leftMoves);
    const auto present =
        std::count_if(path.Black.begin() + strips.First, path.Black.begin() + strips.Last + 1,
                      [](std::uint8_t black) { return black > 0; });
    if (static_cast<double>(present) >= presence * strips.Length())
      paths.push_back(std::move(path));
  }
  return paths;
}

}  // namespace graphize
