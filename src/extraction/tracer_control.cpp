#include "extraction/tracer_control.h"

#include "base/numbers.h"

namespace graphize {

void SetTraceType(TracerControl& control, int trace) {
  control.Center.Caption = "Y-Down";
  control.Above.Caption = "Y-Up";
  control.Below.Caption = "Repeat";
  if (trace < 0 || trace > 2) return;
  control.Xrange = "2";
  if (trace == 2) {
    control.IncrementsEnabled = true;
    control.Yrange = "2";
    return;
  }
  control.Yrange = "3";
  control.Above.Caption = "Edge Above";
  control.Center.Caption = "Center";
  control.Below.Caption = "Edge Below";
}

std::int16_t IncrementOf(const std::string& text) {
  return ToInt16(LeadingNumber(text));
}

}  // namespace graphize
