#pragma once

#include "capture/point_store.h"
#include "desktop/desktop.h"

namespace graphize {

/// The X values of a new list, and how their Y is found between the captured points.
struct SamplePlan {
  int Count = 2;             // 2 to MaxPoints
  float MinX = 0, MaxX = 0;  // of the first and the last point
  bool XLog = false;         // even steps of log10(X) instead of X
  bool YLog = false;         // interpolates log10(Y) instead of Y
};

/// From one point to the next: of X or, with XLog, of log10(X), which is taken in single precision.
/// Not finite where a logarithm has no limit to start or end at.
double StepOf(const SamplePlan& plan);
/// How many points that step gives, not rounded: (MaxX - MinX) / step + 1.
double CountOfStep(const SamplePlan& plan, double step);

enum class SampleEnd { Done, Stopped, BadPoint };

/// Replaces the list with Count points at even steps, Y by Interpolation between the captured
/// points in order of capture. X beyond them all extends the segment at the nearer end. With
/// RefreshList every point is shown at once.
///
/// Stopped by Escape, or where a point has no value (a segment without length, a logarithm of 0 or
/// less, what is not finite), the list keeps the points made until then.
SampleEnd ReSampleList(PointStore& store, const SamplePlan& plan, bool RefreshList,
                       const Desktop& desktop);

}  // namespace graphize
