#pragma once

#include <cstddef>
#include <vector>

#include "base/palette.h"
#include "tracing/extraction_context.h"
#include "tracing/ink_column.h"

namespace graphize {

/// The points of one column; the edges lie one row outside the ink.
struct ColumnPoints {
  int Column;
  float Center;
  int Below, Above;
};

/// What all tracers share: where they start, their options, read once, and how they stop, scroll
/// and emit points. Positions beyond 16 bits are the run-time error "Overflow".
struct RunningTrace {
  RunningTrace(const ExtractionContext& context, float x, float y);

  const ExtractionContext& Context;
  TracedInk Ink;
  int XIncrement, YIncrement;  // at least 0
  bool Center, Below, Above;   // which points a step emits
  bool Adds, RefreshList;
  Colour MarkColour;
  int XJump, YJump;  // scroll margins in pixels, at least 1
  int StartColumn, StartRow;
  std::size_t MarksBefore;  // of the picture's marks, those that were there

  // So far:
  int Columns = 0;                 // looked at
  int OnCurve = 0;                 // of them, those with points
  int Points = 0;                  // marked, and captured when it adds
  FoundPoints Found;               // waiting for that
  std::size_t MostFound;           // so many wait at most
  bool Stopped = false;            // by Escape
  std::vector<ColumnPoints> Seen;  // the columns on the curve, while there are marks to run into
};

/// Marks and captures the points that wait. Needed before pixels left of here are read again, which
/// the marks change. False when the store is full.
bool CaptureFound(RunningTrace& trace);
/// The same, and lets the window live.
void LookAtWindow(RunningTrace& trace);
/// Moves the view; the events pending after that run.
void Scroll(RunningTrace& trace, int x, int y);

// What each column asks for is inline: a call takes as long as reading its ink. A tracer calls
// GoesOn, ScrollToColumn, ScrollToRows and EmitPoints alone.

/// Called for every column that is looked at: false at the right edge or when Escape is held. Lets
/// the window live now and then.
inline bool GoesOn(RunningTrace& trace, int column) {
  // A small part of the time between two repaints, however tall the strokes are, and so many
  // columns that looking costs nothing beside the work.
  constexpr int kColumnsPerLook = 256;
  if (column >= trace.Context.Image.Width()) return false;
  trace.Stopped = trace.Context.Callbacks.EscapeHeld();
  if (trace.Stopped) return false;
  if (++trace.Columns % kColumnsPerLook == 0) LookAtWindow(trace);
  return true;
}

/// Keep the trace in sight.
inline void ScrollToColumn(RunningTrace& trace, int column) {
  const Viewport& view = trace.Context.View;
  const int place = FirstPlaceOf(view.Zoom, column);
  const int distance = view.X + view.Width - place;
  if (2 * distance < trace.XJump) Scroll(trace, place - view.Width + trace.XJump, view.Y);
}
inline void ScrollToRows(RunningTrace& trace, int top, int bottom) {
  const Viewport& view = trace.Context.View;
  top = FirstPlaceOf(view.Zoom, top);
  bottom = FirstPlaceOf(view.Zoom, bottom);
  const auto endsBelow = [&](int y) { return 2 * (y + view.Height - bottom) < trace.YJump; };
  if (endsBelow(view.Y)) {
    Scroll(trace, view.X, bottom - view.Height + trace.YJump);
  } else if (2 * (top - view.Y) < trace.YJump) {
    // A run taller than the view would otherwise scroll up and down at every column.
    const int y = top - trace.YJump;
    if (!endsBelow(y)) Scroll(trace, view.X, y);
  }
}

/// Takes a point to be marked and captured. It waits to be done together with others, but not
/// beyond the next look at the window: whatever is shown, also when there is an error at one of
/// them, is as if each had been captured where it was found. With `RefreshList` the window may show
/// the list after each. False when the store is full.
inline bool EmitPoint(RunningTrace& trace, float column, float row) {
  trace.Found.Places.push_back({column, row});
  return trace.Found.Places.size() < trace.MostFound || CaptureFound(trace);
}
/// The same for the checked points of a column: centre, below, above.
inline bool EmitPoints(RunningTrace& trace, const ColumnPoints& points) {
  ++trace.OnCurve;
  if (trace.MarksBefore > 0) trace.Seen.push_back(points);
  const auto column = static_cast<float>(points.Column);
  return (!trace.Center || EmitPoint(trace, column, points.Center)) &&
         (!trace.Below || EmitPoint(trace, column, static_cast<float>(points.Below))) &&
         (!trace.Above || EmitPoint(trace, column, static_cast<float>(points.Above)));
}

/// Shows the newest point, and says in the status panel what has come out, and when marks of an
/// earlier trace or scan hide ink where the trace started, went or ended.
TraceEnd EndTrace(RunningTrace& trace);

}  // namespace graphize
