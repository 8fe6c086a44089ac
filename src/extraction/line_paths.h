#pragma once

#include <cstdint>
#include <vector>

#include "extraction/bit_map.h"
#include "extraction/upright_map.h"

namespace graphize {

/// Whole numbers First..Last, both included; empty when First > Last.
struct Span {
  int First = 0, Last = -1;

  int Length() const { return Last - First + 1; }
  bool Contains(int i) const { return i >= First && i <= Last; }
};

/// Paths go from strip to strip, each this many columns wide.
inline constexpr int kStripColumns = 32;

/// A nearly level way across the map on which much is black: where a grid line may be.
struct LinePath {
  std::vector<int> Rows;            // per strip, at its middle
  std::vector<std::uint8_t> Black;  // per strip, black columns on the path
};

/// The best way through every row of `rows` at the middle of `plot` (columns), best first, those
/// only that have black in at least `presence` (0..1) of the strips of the plot. From strip to
/// strip a path moves by one row at most: 1.8 degrees.
///
/// `thin` holds only what may belong to a line. `jitter` says that the map was sheared, which
/// makes a level line alternate between two rows. Empty when stopped.
std::vector<LinePath> FindLinePaths(const BitMap& thin, bool jitter, Span plot, Span rows,
                                    double presence, const KeepGoing& keepGoing);

}  // namespace graphize
