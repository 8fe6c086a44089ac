#include "tracing/running_trace.h"

#include <algorithm>
#include <string>

#include "base/numbers.h"

namespace graphize {

namespace {

/// Columns between two looks at the window: a small part of the time between two repaints, however
/// tall the strokes are, and so many that looking costs nothing beside the work.
constexpr int kColumnsPerPump = 256;

void Scroll(RunningTrace& trace, int x, int y) {
  Viewport& view = trace.Context.View;
  const int oldX = view.X, oldY = view.Y;
  ScrollTo(view, x, y);
  if (view.X != oldX || view.Y != oldY) PumpProgress(trace.Context);
}

bool EmitPoint(RunningTrace& trace, int column, float row) {
  const ExtractionContext& context = trace.Context;
  SetPixel(context.Image, column, ToInt32(row), trace.MarkColour);
  MoveCursor(context, static_cast<float>(column), row);
  if (trace.Adds) {
    if (AddPoint(context.Store, context.Commands, context.Callbacks, trace.RefreshList))
      return false;
    if (trace.RefreshList) PumpProgress(context);
  }
  ++trace.Points;
  return true;
}

std::string ResultText(const RunningTrace& trace) {
  const std::string points = PointCount(trace.Points) + (trace.Adds ? " captured" : " marked");
  if (trace.Stopped) return "Stopped: " + points;
  if (trace.OnCurve == 0) return "No curve here: the tracers follow only black pixels";
  if (!trace.Center && !trace.Above && !trace.Below)
    return "Nothing to capture: no point of the curve is checked";
  return points;
}

}  // namespace

RunningTrace::RunningTrace(const ExtractionContext& context)
    : Context(context),
      XIncrement(IncrementAtLeast(context.Control.Xrange, 0)),
      YIncrement(IncrementAtLeast(context.Control.Yrange, 0)),
      Center(context.Control.Center.Checked),
      Below(context.Control.Below.Checked),
      Above(context.Control.Above.Checked),
      Adds(context.Adds()),
      RefreshList(context.Options.RefreshList != 0),
      MarkColour(PaletteColour(context.Options.TraceColor)),
      XJump(std::max<int>(context.Options.XJump, 1)),
      YJump(std::max<int>(context.Options.YJump, 1)) {}

bool GoesOn(RunningTrace& trace, int column) {
  if (column >= trace.Context.Image.Width()) return false;
  trace.Stopped = trace.Context.Callbacks.EscapeHeld();
  if (trace.Stopped) return false;
  if (++trace.Columns % kColumnsPerPump == 0) PumpProgress(trace.Context);
  return true;
}

void ScrollToColumn(RunningTrace& trace, int column) {
  const Viewport& view = trace.Context.View;
  const int distance = view.X + view.Width - column;
  if (2 * distance < trace.XJump) Scroll(trace, column - view.Width + trace.XJump, view.Y);
}

void ScrollToRows(RunningTrace& trace, int top, int bottom) {
  const Viewport& view = trace.Context.View;
  const auto endsBelow = [&](int y) { return 2 * (y + view.Height - bottom) < trace.YJump; };
  if (endsBelow(view.Y)) {
    Scroll(trace, view.X, bottom - view.Height + trace.YJump);
  } else if (2 * (top - view.Y) < trace.YJump) {
    // A run taller than the view would otherwise scroll up and down at every column.
    const int y = top - trace.YJump;
    if (!endsBelow(y)) Scroll(trace, view.X, y);
  }
}

bool EmitPoints(RunningTrace& trace, const ColumnPoints& points) {
  ++trace.OnCurve;
  return (!trace.Center || EmitPoint(trace, points.Column, points.Center)) &&
         (!trace.Below || EmitPoint(trace, points.Column, static_cast<float>(points.Below))) &&
         (!trace.Above || EmitPoint(trace, points.Column, static_cast<float>(points.Above)));
}

void EndTrace(const RunningTrace& trace) {
  ShowResult(trace.Context);
  trace.Context.Status.Status = ResultText(trace);
}

}  // namespace graphize
