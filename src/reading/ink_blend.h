#pragma once

#include <optional>
#include <vector>

#include "base/raster.h"
#include "reading/ink_map.h"

namespace graphize {

/// How much of a pixel is the map's ink where another ink is seen beside or below it. The map has
/// such pixels hidden.
class InkBlends {
 public:
  /// Keeps the picture and the paper.
  InkBlends(const Raster& picture, const Paper& paper, const std::vector<Rgb>& directions,
            const Ink& ink);

  /// The ink's share, 0 to 1, of a pixel that `map` hides: as the blend of it and one other ink on
  /// the paper that comes nearest. Absent where the pixel is none, or a line of the ink's own
  /// colour lies there.
  std::optional<double> ShareAt(const InkMap& map, int x, int y) const;

 private:
  struct Other {
    Rgb Direction;
    float Cosine = 0;  // to the own one
  };
  const Raster& picture_;
  const Paper& paper_;
  Ink ink_;
  std::vector<Other> others_;
};

}  // namespace graphize
