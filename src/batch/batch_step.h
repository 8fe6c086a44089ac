#pragma once

#include <optional>
#include <string>

#include "finding_axes/propose_axes.h"
#include "workspace/step.h"

namespace graphize {

/// Where a trace or reading begins on alike pages instead of at its own place: in a column of the
/// calibrated page, between two of its rows or anywhere in the plot.
struct StartOption {
  int Column = 0;
  std::optional<int> Top, Bottom;
};

/// A step, and where it comes from: "line 12" or "--trace 70,430".
struct BatchStep {
  Step Do;
  std::string Origin;
  int Width = 0, Height = 0;                // an OpenStep's picture then, 0 when that is not known
  std::optional<AxesChoice> LooksFor = {};  // axes, before it, on the picture as it is then
  bool TakesAxes = false;  // an AxisStep, or the SetStep of a log axis: with what was found
  std::optional<StartOption> Start = {};
};

}  // namespace graphize
