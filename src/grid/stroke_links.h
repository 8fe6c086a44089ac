#pragma once

#include <cstddef>
#include <vector>

#include "grid/stroke_ends.h"

namespace graphize {

/// Two ends of one stroke, indices into the list of ends, `Left` the one farther left: on opposite
/// sides of the line the stroke crosses it, on one side it dips into it.
struct StrokeLink {
  std::size_t Left = 0, Right = 0;
};

struct StrokeLinks {
  std::vector<StrokeLink> Links;
  std::vector<bool> IsLinked;  // per end
};

/// Which ends, of both sides, belong together: a greedy matching by a cost made of their distance,
/// their lean and what is black between them, the cheapest pair first; then what is left over, each
/// with its nearest neighbour.
/// `thickness` is the line's.
StrokeLinks LinkStrokeEnds(const BitMap& map, const LineBand& band, int thickness,
                           const std::vector<StrokeEnd>& ends);

}  // namespace graphize
