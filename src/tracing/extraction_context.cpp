#include "tracing/extraction_context.h"

#include "base/translation.h"
#include "calibration/transform.h"

namespace graphize {

bool HasValues(const ExtractionContext& context) {
  if (!context.Calibration.IsComplete()) return true;  // values are not asked for
  const char* fault = LogOriginFault(context.Calibration);
  if (fault) Tell(context.Callbacks, fault, MessageIcon::Critical);
  return !fault;
}

void MoveCursor(const ExtractionContext& context, float x, float y) {
  MoveCursor(context.Cursor, context.Store, context.Calibration, context.Callbacks,
             context.Image.Height(), x, y);
}

void PumpProgress(const ExtractionContext& context) {
  ShowCursor(context.Cursor, context.Panel, context.Store, context.Calibration);
  context.Store.NPoints = context.Store.ListCount;
  context.Callbacks.Pump();
}

std::optional<PlotBox> BoxToStayIn(const ExtractionContext& context) {
  if (!context.Control.InsideAxes || !context.Calibration.IsComplete()) return std::nullopt;
  return FindPlotBox(context.Image, context.Calibration);
}

std::string PointCount(long long points) {
  return TrCount("%1 point", "%1 points", points);
}

std::string CapturedCount(long long points) {
  return TrCount("%1 point captured", "%1 points captured", points);
}

void ShowResult(const ExtractionContext& context) {
  ShowCursor(context.Cursor, context.Panel, context.Store, context.Calibration);
  if (context.Adds()) ShowNewest(context.Store);
}

}  // namespace graphize
