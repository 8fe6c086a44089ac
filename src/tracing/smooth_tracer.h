#pragma once

#include "tracing/extraction_context.h"

namespace graphize {

/// Follows the black curve like TraceNew, but each column's centre is the mean row of all black
/// pixels of the stroke, rounded half to even. Of several strokes that touch the last one, those
/// that soon end are left aside while others go on. A column whose strokes do not touch it is
/// searched within the Y increment of it, behind a break up to twice the Y increment from the
/// curve's course.
///
/// Where more ink is black than the curve's course by the last columns explains, something else
/// crosses it, or it turns steep itself. When its own ink goes straight on and soon stands alone
/// again, the trace keeps its course (and captures it where the mean is off by more than the Y
/// increment); else it goes on from the end that the stroke leaps to. Ink that does not touch the
/// curve is passed over when it comes from farther left, or lies off the curve's course and the
/// curve goes on within the X increment. The trace ends at an upright line, such as a frame, that
/// exceeds the curve by far on both sides, or on one side with nothing behind it.
TraceEnd TraceSmooth(const ExtractionContext& context, float x, float y);

}  // namespace graphize
