#pragma once

#include <optional>
#include <string>

#include "capture/point_store.h"
#include "data/resampling.h"
#include "desktop/desktop.h"

namespace graphize {

/// The window Sample. The boxes hold texts as typed; they are read by the leading-number rule.
struct SampleForm {
  std::string MinXBox, MaxXBox;  // first and last X of the new list
  std::string MinYBox, MaxYBox;  // of the captured points, for information
  std::string Steps;             // n, the number of points of the new list
  std::string dXBox;             // a number, or "Log " and the step of log10(X); empty: none
  bool SampleXLog = false, SampleYLog = false;
  std::string Hint;       // one line on what will not work well, or nothing
  std::string StepShown;  // what was last written into dXBox: another text there was typed
};

/// The window as it opens. Without captured points a message instead.
std::optional<SampleForm> OpenSample(const PointStore& store, const Desktop& desktop);

/// Steps is being typed: dXBox follows. What is no count yet is not told before StepsChanged.
void StepsTyped(SampleForm& form);
/// Steps is left: fewer than two is told and becomes 2; dXBox follows unless it was typed since.
void StepsChanged(SampleForm& form, const Desktop& desktop);
/// The limits or a log switch were changed: dXBox follows unless it was typed.
void RangeChanged(SampleForm& form, const PointStore& store);

/// "Calculate dX": a typed step gives the count, else the count gives the step. False when the step
/// cannot be used, which is told: one for more points than there can be changes nothing, one that
/// leads nowhere becomes the step of two points.
bool CalculateStep(SampleForm& form, const PointStore& store, const Desktop& desktop);

/// Replaces the list by the resampled points and tells how that ended: a point without a value
/// comes with a message. Nothing, after a message, when the boxes ask for what cannot be done.
std::optional<SampleEnd> ReSample(SampleForm& form, PointStore& store, bool RefreshList,
                                  const Desktop& desktop);

}  // namespace graphize
