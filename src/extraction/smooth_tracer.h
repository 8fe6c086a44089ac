#pragma once

#include "extraction/extraction_context.h"

namespace graphize {

/// Follows the black curve like TraceNew, but each column's centre is the mean row of all black
/// pixels of the stroke, rounded half to even. A column whose stroke does not touch the last one is
/// searched up to twice the Y increment from the current row.
///
/// Where the mean leaps by more than that, the stroke is steep: the trace goes on from the end that
/// it leaped to, or, when ink only crosses the curve there, from where it was.
void TraceSmooth(const ExtractionContext& context, float x, float y);

}  // namespace graphize
