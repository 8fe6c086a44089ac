#include "commands/reference_commands.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/translation.h"
#include "calibration/axis_fit.h"
#include "commands/do.h"
#include "commands/extraction_commands.h"
#include "commands/toolbar.h"

namespace graphize {

namespace {

std::string Hundredths(double value) {
  return FormatNumber(static_cast<float>(value), "0.00");
}

/// The value of a box, which shows it where it holds anything else; none where it is empty.
std::optional<float> ReadBox(std::string& box) {
  if (TrimRight(box).empty()) return std::nullopt;
  const TypedNumber typed = ReadTyped(box);
  const float value = ToSingle(typed.Value);
  if (!typed.IsPlain) box = ShortestText(value);
  return value;
}

/// After a change of the references.
void FitAnew(Workspace& ws) {
  if (ws.calibration.Refined.On) SwitchRefined(ws.calibration, true);
  ShowModeHint(ws);
}

/// What is known of it: "X 3; Y 0.5".
std::string ValuesText(const AxisReference& reference) {
  std::string text;
  if (reference.X) text = "X " + ShortestText(*reference.X);
  if (reference.Y) text += (text.empty() ? "Y " : "; Y ") + ShortestText(*reference.Y);
  return text;
}

/// The name of a row or reference within a sentence.
std::string NameOf(int number) {
  if (number == 0) return Tr("the origin");
  if (number == 1) return Tr("the X-axis point");
  if (number == 2) return Tr("the Y-axis point");
  return Tr("reference %1", number - 2);
}

/// Of the axes that values are read by.
std::string AngleOf(const Workspace& ws) {
  if (!ws.calibration.Refined.On) return ws.axisPanel.Angle;
  const AffineMap& scale = ws.calibration.Refined.Scale;
  // Along X nothing changes in Y.
  const double degrees = std::atan(-scale.YX / scale.YY) * 180 / std::numbers::pi;
  return FormatNumber(static_cast<float>(std::round(10 * degrees) / 10 + 0.0), "#0.0");
}

std::string SummaryOf(const Workspace& ws, const AxisFit& fit) {
  const double worst = *std::max_element(fit.Residuals.begin(), fit.Residuals.end());
  std::string text =
      Tr("Off by %1 pixels (rms), at most by %2", Hundredths(fit.Rms), Hundredths(worst));
  if (fit.IsSkewed)
    text += "; " +
            Tr("the axes are skewed by %1 degrees", Hundredths(fit.Skew * 180 / std::numbers::pi));
  text += ".";
  if (fit.Doubtful)
    text += " " + Tr("Doubtful: %1, off by %2 pixels.", NameOf(*fit.Doubtful),
                     Hundredths(fit.Residuals[static_cast<std::size_t>(*fit.Doubtful)]));
  if (fit.Disagree) text += " " + Tr("They disagree: one of them may be wrong.");
  if (ws.calibration.Refined.On) text += " " + Tr("The axes are refined.");
  return text;
}

}  // namespace

bool CanAddReference(const Workspace& ws) {
  return ws.plot.IsPresent() && ws.calibration.IsComplete() && AxesFitPicture(ws);
}

bool CanRefine(const Workspace& ws) {
  return CanAddReference(ws) && HasReferences(ws.calibration);
}

Outcome Run(Workspace& ws, const Desktop& desktop, ReferenceStep& step) {
  if (!CanAddReference(ws)) return Refused("a reference needs complete axes of this picture");
  if (auto refused = RefusedAt(ws, step.X, step.Y)) return *refused;
  std::vector<AxisReference>& references = ws.calibration.Refined.References;
  if (references.size() >= kMostReferences) return Refused("there are too many references");
  const auto x = ReadBox(step.XText), y = ReadBox(step.YText);
  if (!x && !y) {
    Tell(desktop, "Please enter the X or the Y value, or both, and then click on the plot");
    return Refused("a reference needs a value");
  }
  if ((x && ws.calibration.XLog && !(*x > 0)) || (y && ws.calibration.YLog && !(*y > 0))) {
    Tell(desktop, "A value on a log axis must be positive");
    return Refused("a value on a log axis must be positive");
  }
  references.push_back({{step.X, static_cast<float>(ws.plot.Height()) - step.Y}, x, y});
  FitAnew(ws);
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const RemoveReferenceStep& step) {
  std::vector<AxisReference>& references = ws.calibration.Refined.References;
  if (step.Number < 1 || static_cast<std::size_t>(step.Number) > references.size())
    return Refused("there is no such reference");
  references.erase(references.begin() + step.Number - 1);
  FitAnew(ws);
  return {};
}

Outcome Run(Workspace& ws, const Desktop&, const RefineStep& step) {
  if (step.On && !CanRefine(ws)) return Refused("there is nothing to refine the axes by");
  if (!SwitchRefined(ws.calibration, step.On))
    return Refused("the references do not tell where the axes are");
  ShowModeHint(ws);
  return {};
}

void SwitchAddReference(Workspace& ws) {
  ws.reference.Armed = !ws.reference.Armed && CanAddReference(ws);
  ws.reference.FocusAsked = ws.reference.Armed;
  ShowModeHint(ws);
}

void ChooseReference(Workspace& ws, int number) {
  ws.reference.Chosen = number;
  ShowModeHint(ws);
}

void AddReferenceAt(Workspace& ws, const Desktop& desktop, double column, double row) {
  ReferenceEntry& entry = ws.reference;
  const Outcome outcome =
      Do(ws, desktop,
         ReferenceStep{static_cast<float>(column), static_cast<float>(row), entry.X, entry.Y});
  entry.FocusAsked = true;
  if (!outcome.IsDone()) return;
  entry.X.clear();
  entry.Y.clear();
  ws.marksDirty = {0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1};
}

void RemoveChosenReference(Workspace& ws, const Desktop& desktop) {
  if (Do(ws, desktop, RemoveReferenceStep{ws.reference.Chosen + 1}).IsDone())
    ws.reference.Chosen = -1;
}

bool MoveChosenReference(Workspace& ws, const Desktop& desktop, double column, double row) {
  ReferenceEntry& entry = ws.reference;
  if (entry.Chosen < 0 || !CanAddReference(ws)) return false;
  const AxisReference from =
      ws.calibration.Refined.References[static_cast<std::size_t>(entry.Chosen)];
  const auto text = [](const std::optional<float>& value) {
    return value ? ShortestText(*value) : std::string();
  };
  const ReferenceStep to{static_cast<float>(column), static_cast<float>(row), text(from.X),
                         text(from.Y)};
  if (RefusedAt(ws, to.X, to.Y) || !Do(ws, desktop, RemoveReferenceStep{entry.Chosen + 1}).IsDone())
    return true;
  if (!Do(ws, desktop, to).IsDone()) return true;
  // It is the last one then.
  ChooseReference(ws, static_cast<int>(ws.calibration.Refined.References.size()) - 1);
  ws.marksDirty = {0, 0, ws.plot.Width() - 1, ws.plot.Height() - 1};
  return true;
}

void FollowAxisSnap(Workspace& ws, bool held) {
  std::optional<LineSnap>& shown = ws.mouse.AxisSnap;
  const int x = ws.readOut.PlotX, y = ws.readOut.PlotY;
  std::optional<LineSnap> now;
  const bool clicks =
      !ws.calibration.IsComplete() || ws.reference.Armed || ws.reference.Chosen >= 0;
  if (ws.mode == Mode::AxisDef && clicks && !held && ws.plot.Contains(x, y))
    now = SnapToLines(ws.plot.Pixels, x, y);
  if (now && !now->OnUpright && !now->OnLevel) now.reset();
  if (now == shown) return;
  for (const auto& snap : {shown, now}) {
    if (!snap) continue;
    const int column = static_cast<int>(std::lround(snap->Column));
    const int row = static_cast<int>(std::lround(snap->Row));
    ws.marksDirty.Add(column, row, column, row);
  }
  shown = now;
}

ReferenceView ReferencesOf(const Workspace& ws) {
  ReferenceView view{.CanAdd = ws.mode == Mode::AxisDef && CanAddReference(ws),
                     .CanRefine = CanRefine(ws),
                     .CanRemove = ws.reference.Chosen >= 0,
                     .OfRows = {},
                     .Lines = {},
                     .Summary = {},
                     .Angle = AngleOf(ws)};
  const std::vector<AxisReference>& references = ws.calibration.Refined.References;
  // The three rows alone always agree.
  const bool some = CanRefine(ws) && !references.empty();
  const auto fit = some ? FitAxes(ws.calibration) : std::nullopt;
  const auto residual = [&](std::size_t number) {
    if (!fit) return std::string();
    const bool marked = fit->Doubtful && static_cast<std::size_t>(*fit->Doubtful) == number;
    return Tr("%1 px", Hundredths(fit->Residuals[number])) + (marked ? " \u26a0" : "");
  };
  for (std::size_t row = 0; row < 3; ++row) view.OfRows[row] = residual(row);
  for (std::size_t i = 0; i < references.size(); ++i)
    view.Lines.push_back(std::to_string(i + 1) + ": " + ValuesText(references[i]) +
                         (fit ? " (" + residual(3 + i) + ")" : ""));
  if (fit) view.Summary = SummaryOf(ws, *fit);
  return view;
}

}  // namespace graphize
