#include "data/sample_form.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/translation.h"
#include "data/list_edit.h"

namespace graphize {

namespace {

float ReadSingle(const std::string& text) {
  const double value = LeadingNumber(text);
  constexpr float most = std::numeric_limits<float>::max();
  if (std::fabs(value) > most) return static_cast<float>(std::copysign(HUGE_VALF, value));
  return static_cast<float>(value);
}

double ReadCount(const std::string& text) {
  return std::nearbyint(LeadingNumber(text));
}

bool IsTyped(const SampleForm& form) {
  return form.dXBox != form.StepShown && !TrimRight(form.dXBox).empty();
}

/// The boxes as they stand. Only for a count that an int holds.
SamplePlan PlanOf(const SampleForm& form, double count) {
  return {.Count = static_cast<int>(count),
          .MinX = ReadSingle(form.MinXBox),
          .MaxX = ReadSingle(form.MaxXBox),
          .XLog = form.SampleXLog,
          .YLog = form.SampleYLog};
}

void ShowStep(SampleForm& form) {
  const double count = ReadCount(form.Steps);
  form.dXBox.clear();
  if (count >= 2 && count <= std::numeric_limits<int>::max()) {
    const auto step = static_cast<float>(StepOf(PlanOf(form, count)));
    if (std::isfinite(step))
      form.dXBox = (form.SampleXLog ? "Log " : "") + FormatNumber(step, kReadingPattern);
  }
  form.StepShown = form.dXBox;
}

/// A count below 2, or none, is told with the text it came from and becomes 2.
double UsableCount(double count, const std::string& entered, const Desktop& desktop) {
  if (count >= 2) return count;
  Tell(desktop, Tr("%1\r\nError in sampling parameters\r\nSetting n=2", entered),
       MessageIcon::Exclamation);
  return 2;
}

void ShowCount(SampleForm& form, double count) {
  form.Steps = FormatNumber(static_cast<float>(count), "###");
}

void TellTooMany(const Desktop& desktop) {
  Tell(desktop, "Too many points", MessageIcon::Critical);
}

/// The number behind "Log " or without it; 0 when there is none.
double ReadStep(const std::string& text) {
  const std::size_t start = text.find_first_not_of(' ');
  if (start == std::string::npos) return 0;
  const bool log = LowerCase(text.substr(start, 3)) == "log";
  return LeadingNumber(text.substr(log ? start + 3 : start));
}

/// The limit that is no finite number; null when both are.
const std::string* UnusableLimit(const SampleForm& form) {
  for (const std::string* box : {&form.MinXBox, &form.MaxXBox})
    if (!FindLeadingNumber(*box) || !std::isfinite(ReadSingle(*box))) return box;
  return nullptr;
}

/// The first captured point of a log axis that has no logarithm; 0 when there is none.
int FirstWithoutLog(const std::vector<float>& values, int count) {
  for (int i = 1; i <= count; ++i)
    if (!(values[i] > 0)) return i;
  return 0;
}

/// Where X neither rises nor falls as it does from the first point to the second; empty when it
/// never stops to do so.
std::string HintOnCourse(const PointStore& store) {
  const std::vector<float>& xs = store.CaptureX;
  const bool falls = store.CaptureCount >= 2 && xs[2] < xs[1];
  for (int i = 2, count = CountWithoutRepeats(store); i <= count; ++i) {
    if (falls ? xs[i] < xs[i - 1] : xs[i] > xs[i - 1]) continue;
    const bool turns = falls ? xs[i] > xs[i - 1] : xs[i] < xs[i - 1];
    return turns ? Tr("X turns back at captured point %1: one of several Y is taken.", i)
                 : Tr("X does not change at captured point %1.", i);
  }
  return {};
}

/// Smallest and largest number of the points; empty texts when none is one.
void ShowRange(const std::vector<float>& values, int count, std::string& least, std::string& most) {
  float low = HUGE_VALF, high = -HUGE_VALF;
  for (int i = 1; i <= count; ++i) {
    if (!std::isfinite(values[i])) continue;
    low = std::min(low, values[i]);
    high = std::max(high, values[i]);
  }
  if (low > high) return;
  least = FormatNumber(low, kReadingPattern);
  most = FormatNumber(high, kReadingPattern);
}

/// Whether X goes beyond the limits that the boxes open with, which are rounded.
bool GoesBeyond(float minX, float maxX, const PointStore& store) {
  std::string least, most;
  ShowRange(store.CaptureX, store.CaptureCount, least, most);
  return !least.empty() &&
         (std::min(minX, maxX) < ReadSingle(least) || std::max(minX, maxX) > ReadSingle(most));
}

/// One line on what will not work well, the worst first; empty when all is well.
std::string HintOf(const SampleForm& form, const PointStore& store) {
  if (UnusableLimit(form)) return Tr("Min X and Max X must be numbers.");
  const float minX = ReadSingle(form.MinXBox), maxX = ReadSingle(form.MaxXBox);
  if (form.SampleXLog && !(minX > 0 && maxX > 0))
    return Tr("X - Log needs a Min X and a Max X above 0.");
  if (form.SampleXLog)
    if (const int i = FirstWithoutLog(store.CaptureX, store.CaptureCount))
      return Tr("X - Log: X of point %1 is not above 0.", i);
  if (form.SampleYLog)
    if (const int i = FirstWithoutLog(store.CaptureY, store.CaptureCount))
      return Tr("Y - Log: Y of point %1 is not above 0.", i);
  if (minX == maxX) return Tr("Min X equals Max X: all rows are the same.");
  if (GoesBeyond(minX, maxX, store))
    return Tr("X goes beyond the captured points: the segments at the ends are extended.");
  return HintOnCourse(store);
}

void ShowHint(SampleForm& form, const PointStore& store) {
  form.Hint = HintOf(form, store);
}

}  // namespace

std::optional<SampleForm> OpenSample(const PointStore& store, const Desktop& desktop) {
  if (store.CaptureCount < 1) {
    Tell(desktop, "No Points in List", MessageIcon::Exclamation);
    return std::nullopt;
  }
  SampleForm form;
  ShowRange(store.CaptureX, store.CaptureCount, form.MinXBox, form.MaxXBox);
  ShowRange(store.CaptureY, store.CaptureCount, form.MinYBox, form.MaxYBox);
  ShowCount(form, store.CaptureCount);
  ShowStep(form);
  ShowHint(form, store);
  return form;
}

void StepsTyped(SampleForm& form) {
  ShowStep(form);
}

void StepsChanged(SampleForm& form, const Desktop& desktop) {
  const double count = UsableCount(ReadCount(form.Steps), form.Steps, desktop);
  // What cannot be met anyway stays as it was typed.
  if (count <= std::numeric_limits<std::int16_t>::max()) ShowCount(form, count);
  if (!IsTyped(form)) ShowStep(form);
}

void RangeChanged(SampleForm& form, const PointStore& store) {
  if (!IsTyped(form)) ShowStep(form);
  ShowHint(form, store);
}

namespace {

/// Limits that hold more than a number show the number that is read; the result says so.
std::string ShowReadLimits(SampleForm& form) {
  std::string note;
  const auto read = [&note](std::string& box, const char* caption) {
    if (!FindLeadingNumber(box) || !std::isfinite(ReadSingle(box)) || ReadTyped(box).IsPlain)
      return;
    box = ShortestText(ReadSingle(box));
    note += Tr("%1 was read as %2.", Tr(caption), box) + " ";
  };
  read(form.MinXBox, Marked("Min X"));
  read(form.MaxXBox, Marked("Max X"));
  return note;
}

bool Calculate(SampleForm& form, const PointStore& store, const Desktop& desktop) {
  if (!IsTyped(form)) {
    StepsChanged(form, desktop);
  } else {
    const double step = ReadStep(form.dXBox);
    const double count = step == 0 ? 0 : std::nearbyint(CountOfStep(PlanOf(form, 2), step));
    if (count > store.MaxPoints) {
      TellTooMany(desktop);
      return false;
    }
    const bool usable = count >= 2;
    ShowCount(form, UsableCount(count, form.dXBox, desktop));
    ShowStep(form);
    ShowHint(form, store);
    return usable;
  }
  ShowHint(form, store);
  return true;
}

}  // namespace

bool CalculateStep(SampleForm& form, const PointStore& store, const Desktop& desktop) {
  const std::string note = ShowReadLimits(form);
  const bool usable = Calculate(form, store, desktop);
  form.Hint = TrimRight(note + form.Hint);
  return usable;
}

std::optional<SampleEnd> ReSample(SampleForm& form, PointStore& store, bool RefreshList,
                                  const Desktop& desktop) {
  if (const std::string* limit = UnusableLimit(form)) {
    Tell(desktop, Tr("%1\r\nError in sampling parameters", *limit), MessageIcon::Exclamation);
    return std::nullopt;
  }
  if (!CalculateStep(form, store, desktop)) return std::nullopt;
  const double count = ReadCount(form.Steps);
  if (count > store.MaxPoints) {
    TellTooMany(desktop);
    return std::nullopt;
  }
  const SampleEnd end = ReSampleList(store, PlanOf(form, count), RefreshList, desktop);
  if (end == SampleEnd::BadPoint)
    Tell(desktop, "Error while ReSampling. Remove bad points and retry", MessageIcon::Exclamation);
  return end;
}

}  // namespace graphize
