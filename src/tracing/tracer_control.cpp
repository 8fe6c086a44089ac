#include "tracing/tracer_control.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

void SetTraceType(TracerControl& control, int trace) {
  control.Center.Caption = Marked("Y-Down");
  control.Above.Caption = Marked("Y-Up");
  control.Below.Caption = Marked("Repeat");
  control.PointsEnabled = trace != 2;
  if (trace < 0 || trace > 2) return;
  control.Xrange = "2";
  if (trace == 2) {
    control.IncrementsEnabled = true;
    control.Yrange = "2";
    return;
  }
  control.Yrange = "3";
  control.Above.Caption = Marked("Edge Above");
  control.Center.Caption = Marked("Center");
  control.Below.Caption = Marked("Edge Below");
}

int IncrementAtLeast(std::string& text, int least) {
  const std::optional<double> number = FindLeadingNumber(text);
  const double rounded = std::nearbyint(number.value_or(0));
  if (std::abs(rounded) > 32767)
    throw RunTimeError("Overflow: an increment must be a number from 0 to 32767");
  const int value = std::max(static_cast<int>(rounded), least);
  text = std::to_string(value);
  return value;
}

}  // namespace graphize
