#pragma once

#include <vector>

#include "base/bit_map.h"
#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/symbol_matcher.h"
#include "reading/symbol_shape.h"

namespace graphize {

/// Pixels with ink, or where some may be hidden, and those beside them.
BitMap PossibleInk(const InkMap& map, PictureOperation& operation);

/// All places of the shape, where they overlap, too, best first; `worst` is the largest mismatch.
/// `ink` is the map's PossibleInk.
std::vector<SymbolMatch> SearchSymbol(const InkMap& map, const BitMap& ink,
                                      const SymbolShape& shape, double worst,
                                      PictureOperation& operation);

/// The shape as the best of its places show it in the middle: what covers one of them, or hangs on
/// to it, is not in the others.
SymbolShape Averaged(const InkMap& map, const SymbolShape& shape,
                     const std::vector<SymbolMatch>& matches);

}  // namespace graphize
