#pragma once

#include <cstdint>
#include <vector>

#include "grid/keep_going.h"
#include "grid/sheared_map.h"
#include "grid/span.h"

namespace graphize {

/// Paths go from strip to strip, each this many columns wide.
inline constexpr int kStripColumns = 32;

inline double MiddleOfStrip(int strip) {
  return strip * kStripColumns + 0.5 * (kStripColumns - 1);
}

/// A nearly level way across a sheared map on which much is black: where a grid line may be.
struct LinePath {
  std::vector<int> Rows;            // per strip, at its middle
  std::vector<std::uint8_t> Black;  // per strip, black columns on the path
};

/// By dynamic programming over the strips, forward and backward: the best way through every row of
/// `rows` at the middle of `plot` (columns), best first, those only that have black in at least
/// `presence` (0..1) of the strips of the plot. From strip to strip a path moves by one row at
/// most: 1.8 degrees. `thin` holds only what may belong to a line. Empty when stopped.
std::vector<LinePath> FindLinePaths(const ShearedMap& thin, Span plot, Span rows, double presence,
                                    const KeepGoing& keepGoing);

}  // namespace graphize
