#pragma once

#include <optional>
#include <string>

#include "base/translation.h"
#include "calibration/axis_calibration.h"
#include "capture/cursor.h"
#include "capture/point_store.h"
#include "desktop/command_states.h"
#include "desktop/desktop.h"
#include "desktop/status_bar.h"
#include "raster/plot_image.h"
#include "raster/viewport.h"
#include "settings/settings.h"
#include "tracing/plot_box.h"
#include "tracing/tracer_control.h"

namespace graphize {

/// The records that the tracers and the scan read and change.
struct ExtractionContext {
  PlotImage& Image;
  Viewport& View;
  ReadOut& Cursor;
  AxisPanel& Panel;
  PointStore& Store;
  CommandStates& Commands;
  StatusBar& Status;
  TracerControl& Control;
  const AxisCalibration& Calibration;
  const Settings& Options;
  const Desktop& Callbacks;
  bool CapturePressed = false;  // the toolbar's "graphize": what is found is also captured

  /// Points are worth capturing only when they have values.
  bool Adds() const { return CapturePressed && Calibration.IsComplete(); }
};

/// False, after one message, when positions cannot be turned into values.
bool HasValues(const ExtractionContext& context);
/// Moves the cursor, without its texts, to a picture position (row downward).
void MoveCursor(const ExtractionContext& context, float x, float y);
/// Shows where the operation is, cursor and count, and lets pending events run.
void PumpProgress(const ExtractionContext& context);
/// What is looked at with "Inside the axes only" and complete axes.
std::optional<PlotBox> BoxToStayIn(const ExtractionContext& context);
inline constexpr const char* kOnlyInside =
    Marked("This lies outside of the axes, and \"Inside the axes only\" is checked");
/// "1 point", "12 points".
std::string PointCount(long long points);
std::string CapturedCount(long long points);  // "3 points captured"
/// The end of an operation: read-out and data list show the newest.
void ShowResult(const ExtractionContext& context);

/// What a tracer has to tell beside its points.
struct TraceEnd {
  bool HiddenByMarks = false;  // marks of an earlier trace or scan cover ink of the curve
};

}  // namespace graphize
