#pragma once

#include <vector>

#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/symbol_shape.h"

namespace graphize {

/// A place where a symbol's shape lies on the picture.
struct SymbolMatch {
  double X = 0, Y = 0;    // of the shape's middle
  double Sigma = 0;       // standard uncertainty of either, pixels
  double Missing = 0;     // of the ink that should be seen, the part that is not there
  double Excess = 0;      // ink that hangs on to it and ends nearby, in parts of the shape's
  double Visible = 1;     // part of the shape that nothing hides
  double Overlapped = 0;  // part of its ink that is other matches', too

  double Mismatch() const { return Missing + Excess; }
};

/// All places of the shape, where they overlap, too, best first; `worst` is the largest mismatch.
std::vector<SymbolMatch> SearchSymbol(const InkMap& map, const SymbolShape& shape, double worst,
                                      PictureOperation& operation);

/// The shape as the best of its places show it in the middle: what covers one of them, or hangs on
/// to it, is not in the others.
SymbolShape Averaged(const InkMap& map, const SymbolShape& shape,
                     const std::vector<SymbolMatch>& matches);

}  // namespace graphize
