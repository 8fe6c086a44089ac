#include "tracing/running_trace.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

#include "base/numbers.h"
#include "base/translation.h"
#include "tracing/blockers.h"

namespace graphize {

namespace {

/// Columns between two looks at the window: a small part of the time between two repaints, however
/// tall the strokes are, and so many that looking costs nothing beside the work.
constexpr int kColumnsPerPump = 256;

void Scroll(RunningTrace& trace, int x, int y) {
  Viewport& view = trace.Context.View;
  Viewport scrolled = view;
  ScrollTo(scrolled, x, y);
  if (scrolled.X == view.X && scrolled.Y == view.Y) return;
  CaptureFound(trace);
  view = scrolled;
  PumpProgress(trace.Context);
}

/// As many as there is room for: so it is only the point that fills the store which EmitPoint is
/// told of, and whoever else captures what waits need not ask. When there is none, a point is
/// refused as soon as it is found.
std::size_t RoomForFound(const RunningTrace& trace) {
  if (!trace.Adds) return std::numeric_limits<std::size_t>::max();
  if (trace.RefreshList) return 1;
  return static_cast<std::size_t>(std::max(RoomFor(trace.Context.Store), 1));
}

bool EmitPoint(RunningTrace& trace, float column, float row) {
  trace.Found.Places.push_back({column, row});
  return trace.Found.Places.size() < trace.MostFound || CaptureFound(trace);
}

/// Marks the first `count` of the points that wait.
void MarkFound(const RunningTrace& trace, std::size_t count) {
  std::vector<MarkedPixel> pixels(count);
  std::transform(trace.Found.Places.begin(),
                 trace.Found.Places.begin() + static_cast<std::ptrdiff_t>(count), pixels.begin(),
                 [](const Place& place) {
                   return MarkedPixel{static_cast<int>(place.Column), ToInt32(place.Row)};
                 });
  SetPixels(trace.Context.Image, pixels, trace.MarkColour);
}

/// Whether black in this column, in these rows, is or touches the curve.
bool LiesOnTheWay(const RunningTrace& trace, int column, int row) {
  if (column == trace.StartColumn && std::abs(row - trace.StartRow) <= 1) return true;
  const auto next = std::upper_bound(
      trace.Seen.begin(), trace.Seen.end(), column,
      [](int wanted, const ColumnPoints& points) { return wanted < points.Column; });
  const bool found = next != trace.Seen.begin();
  const ColumnPoints start{trace.StartColumn - 1, 0, trace.StartRow, trace.StartRow};
  const ColumnPoints& last = found ? *(next - 1) : start;
  if (column < trace.StartColumn || column > last.Column + 1 + trace.XIncrement) return false;
  // Behind the last column the curve is looked for; it may have changed its row.
  const int reach = column > last.Column ? trace.YIncrement + 1 : 0;
  return row >= last.Above - reach && row <= last.Below + reach;
}

/// Whether marks of an earlier trace or scan hide ink of the curve; blockers are meant to.
bool MarksHideTheCurve(const RunningTrace& trace) {
  const PlotImage& image = trace.Context.Image;
  const auto width = static_cast<std::uint32_t>(image.Width());
  const std::uint32_t blocker = PixelOfColour(BlockerColour(trace.Context.Options));
  const auto hides = [&](const OverdrawnPixel& mark) {
    return IsBlackPixel(mark.Pixel) && image.Pixels.Pixels()[mark.Index] != blocker &&
           LiesOnTheWay(trace, static_cast<int>(mark.Index % width),
                        static_cast<int>(mark.Index / width));
  };
  const auto first = image.Marks.begin();
  return std::any_of(first, first + static_cast<std::ptrdiff_t>(trace.MarksBefore), hides);
}

std::string MarkedCount(long long points) {
  return TrCount("%1 point marked", "%1 points marked", points);
}

std::string ResultText(const RunningTrace& trace, bool hidden) {
  if (hidden && trace.OnCurve == 0 && !trace.Stopped)
    return Tr("Marks of an earlier trace cover the curve: Refresh takes them away");
  std::string points = trace.Adds ? CapturedCount(trace.Points) : MarkedCount(trace.Points);
  if (hidden)
    points = Tr("%1; marks of an earlier trace cover the curve: Refresh takes them away", points);
  if (trace.Stopped) return Tr("Stopped: %1", points);
  if (trace.OnCurve == 0 && trace.Ink.Inside &&
      !trace.Ink.Inside->Contains(trace.StartColumn, trace.StartRow))
    return Tr(kOnlyInside);
  if (trace.OnCurve == 0) return Tr("No curve here: the tracers follow only black pixels");
  if (!trace.Center && !trace.Above && !trace.Below)
    return Tr("Nothing to capture: no point of the curve is checked");
  return points;
}

}  // namespace

RunningTrace::RunningTrace(const ExtractionContext& context, float x, float y)
    : Context(context),
      Ink{context.Image, BoxToStayIn(context)},
      XIncrement(IncrementAtLeast(context.Control.Xrange, 0)),
      YIncrement(IncrementAtLeast(context.Control.Yrange, 0)),
      Center(context.Control.Center.Checked),
      Below(context.Control.Below.Checked),
      Above(context.Control.Above.Checked),
      Adds(context.Adds()),
      RefreshList(context.Options.RefreshList != 0),
      MarkColour(PaletteColour(context.Options.TraceColor)),
      XJump(std::max<int>(context.Options.XJump, 1)),
      YJump(std::max<int>(context.Options.YJump, 1)),
      StartColumn(ToInt16(x)),
      StartRow(ToInt16(y)),
      MarksBefore(context.Image.Marks.size()),
      MostFound(RoomForFound(*this)) {}

bool GoesOn(RunningTrace& trace, int column) {
  if (column >= trace.Context.Image.Width()) return false;
  trace.Stopped = trace.Context.Callbacks.EscapeHeld();
  if (trace.Stopped) return false;
  if (++trace.Columns % kColumnsPerPump == 0) {
    CaptureFound(trace);
    PumpProgress(trace.Context);
  }
  return true;
}

void ScrollToColumn(RunningTrace& trace, int column) {
  const Viewport& view = trace.Context.View;
  const int place = FirstPlaceOf(view.Zoom, column);
  const int distance = view.X + view.Width - place;
  if (2 * distance < trace.XJump) Scroll(trace, place - view.Width + trace.XJump, view.Y);
}

void ScrollToRows(RunningTrace& trace, int top, int bottom) {
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

bool EmitPoints(RunningTrace& trace, const ColumnPoints& points) {
  ++trace.OnCurve;
  if (trace.MarksBefore > 0) trace.Seen.push_back(points);
  const auto column = static_cast<float>(points.Column);
  return (!trace.Center || EmitPoint(trace, column, points.Center)) &&
         (!trace.Below || EmitPoint(trace, column, static_cast<float>(points.Below))) &&
         (!trace.Above || EmitPoint(trace, column, static_cast<float>(points.Above)));
}

bool CaptureFound(RunningTrace& trace) {
  const ExtractionContext& context = trace.Context;
  const std::vector<Place>& places = trace.Found.Places;
  const std::size_t count = MoveCursor(context.Cursor, context.Store, context.Calibration,
                                       context.Image.Height(), trace.Found);
  MarkFound(trace, std::min(count + 1, places.size()));
  if (trace.Adds && AddPoints(context.Store, context.Commands, context.Callbacks, trace.RefreshList,
                              trace.Found, count)) {
    trace.Found.Places.clear();
    return false;
  }
  trace.Points += static_cast<int>(count);
  if (count < places.size())
    // Tells why it cannot. A trace on axes that refuse without a word has not begun.
    MoveCursor(context, places[count].Column, places[count].Row);
  trace.Found.Places.clear();
  trace.MostFound = RoomForFound(trace);
  if (trace.Adds && trace.RefreshList && count > 0) PumpProgress(context);
  return true;
}

TraceEnd EndTrace(RunningTrace& trace) {
  CaptureFound(trace);
  ShowResult(trace.Context);
  const TraceEnd end{.HiddenByMarks = MarksHideTheCurve(trace)};
  trace.Context.Status.Status = ResultText(trace, end.HiddenByMarks);
  return end;
}

}  // namespace graphize
