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

/// As many as there is room for: so it is only the point that fills the store which EmitPoint is
/// told of, and whoever else captures what waits need not ask. When there is none, a point is
/// refused as soon as it is found.
std::size_t RoomForFound(const RunningTrace& trace) {
  if (!trace.Adds) return std::numeric_limits<std::size_t>::max();
  if (trace.RefreshList) return 1;
  return static_cast<std::size_t>(std::max(RoomFor(trace.Context.Store), 1));
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

void LookAtWindow(RunningTrace& trace) {
  CaptureFound(trace);
  PumpProgress(trace.Context);
}

void Scroll(RunningTrace& trace, int x, int y) {
  Viewport& view = trace.Context.View;
  Viewport scrolled = view;
  ScrollTo(scrolled, x, y);
  if (scrolled.X == view.X && scrolled.Y == view.Y) return;
  CaptureFound(trace);
  view = scrolled;
  PumpProgress(trace.Context);
}

TraceEnd EndTrace(RunningTrace& trace) {
  CaptureFound(trace);
  ShowResult(trace.Context);
  const TraceEnd end{.HiddenByMarks = MarksHideTheCurve(trace)};
  trace.Context.Status.Status = ResultText(trace, end.HiddenByMarks);
  return end;
}

}  // namespace graphize
