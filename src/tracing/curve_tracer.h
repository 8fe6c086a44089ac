#pragma once

#include "tracing/extraction_context.h"

namespace graphize {

/// Follows the black curve at the picture position (x, y) column by column to the right: marks the
/// checked points of every column (centre of the stroke, the rows just below and above it) and
/// captures them. A column is left for the next where ink of the stroke touches ink there, also
/// diagonally; gaps of up to the Y increment within a column and breaks of fewer columns than the
/// X increment are stepped over. Ends where the curve ends, on Escape or when the store is full.
///
/// Increments and positions beyond 16 bits are the run-time error "Overflow".
TraceEnd TraceNew(const ExtractionContext& context, float x, float y);

}  // namespace graphize
