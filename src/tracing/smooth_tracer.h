#pragma once

#include "tracing/extraction_context.h"

namespace graphize {

/// Follows the black curve like TraceNew, but each column's centre is the mean row of all black
/// pixels of the stroke, rounded half to even. A column whose stroke does not touch the last one is
/// searched up to twice the Y increment from the current row.
///
/// Where more ink is black than the curve's course by the last columns explains, something else
/// crosses it, or it turns steep itself. When its own ink goes straight on and soon stands alone
/// again, the trace keeps its course (and captures it where the mean is off by more than the Y
/// increment); else it goes on from the end that the stroke leaps to. Ink that does not touch the
/// curve and lies off its course is passed over when the curve goes on within the X increment.
void TraceSmooth(const ExtractionContext& context, float x, float y);

}  // namespace graphize
