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

/// Called for every column that is looked at: false at the right edge or when Escape is held. Lets
/// the window live now and then.
bool GoesOn(RunningTrace& trace, int column);
/// Keep the trace in sight; the events pending after a scroll run.
void ScrollToColumn(RunningTrace& trace, int column);
void ScrollToRows(RunningTrace& trace, int top, int bottom);
/// Takes the checked points to be marked and captured: centre, below, above. They wait to be done
/// together, but not beyond the next look at the window: whatever is shown, also when there is an
/// error at one of them, is as if each had been captured where it was found. With `RefreshList` the
/// window may show the list after each. False when the store is full.
bool EmitPoints(RunningTrace& trace, const ColumnPoints& points);
/// Marks and captures the points that wait. Needed before pixels left of here are read again, which
/// the marks change. False when the store is full.
bool CaptureFound(RunningTrace& trace);
/// Shows the newest point, and says in the status panel what has come out, and when marks of an
/// earlier trace or scan hide ink where the trace started, went or ended.
TraceEnd EndTrace(RunningTrace& trace);

}  // namespace graphize
