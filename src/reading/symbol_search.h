#pragma once

#include <vector>

#include "raster/picture_operation.h"
#include "reading/ink_map.h"
#include "reading/symbol_matcher.h"
#include "reading/symbol_shape.h"

namespace graphize {

/// All places of the shape, where they overlap, too, best first; `worst` is the largest mismatch.
std::vector<SymbolMatch> SearchSymbol(const InkMap& map, const SymbolShape& shape, double worst,
                                      PictureOperation& operation);

/// The shape as the best of its places show it in the middle: what covers one of them, or hangs on
/// to it, is not in the others.
SymbolShape Averaged(const InkMap& map, const SymbolShape& shape,
                     const std::vector<SymbolMatch>& matches);

}  // namespace graphize
