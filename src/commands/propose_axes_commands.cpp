#include "commands/propose_axes_commands.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"
#include "base/translation.h"
#include "commands/do.h"
#include "commands/picture_reading.h"
#include "commands/reference_commands.h"
#include "commands/toolbar.h"
#include "commands/view_commands.h"

namespace graphize {

namespace {

using Values = std::array<ProposedValue, 3>;

/// The boxes that are filled in: X of the origin and the X-axis point, Y of the origin and the
/// Y-axis point. The others follow the origin's.
constexpr std::array<std::size_t, 2> kXs = {0, 1}, kYs = {0, 2};

void FillBoxes(ProposedAxesForm& form) {
  form.XLog = form.Found.X.Log;
  form.YLog = form.Found.Y.Log;
  const bool sure = form.Found.Verdict == AxesVerdict::Sure;
  for (std::size_t row = 0; row < form.Found.Rows.size(); ++row) {
    form.X[row] = {ShortestText(static_cast<float>(form.Found.Rows[row].X)), sure};
    form.Y[row] = {ShortestText(static_cast<float>(form.Found.Rows[row].Y)), sure};
  }
}

bool IsReady(const Values& values, const std::array<std::size_t, 2>& typed) {
  return std::all_of(typed.begin(), typed.end(), [&](std::size_t row) {
    return values[row].Confirmed && ReadTyped(values[row].Text).IsPlain;
  });
}

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

/// As a click would have it, row downward.
PlotPosition WholePixel(const ProposedRow& row) {
  return {static_cast<float>(std::nearbyint(row.Column)),
          static_cast<float>(std::nearbyint(row.Row))};
}

/// What the three clicks would refuse, in their words; empty where they would not.
std::string WhyRefused(const Workspace& ws) {
  const ProposedAxesForm& form = ws.proposedAxes;
  AxisCalibration calibration;
  AxisPanel panel;
  CommandStates commands;
  std::string told;
  Desktop desktop;
  desktop.ShowMessage = [&](const Message& message) {
    told = message.Text;
    return Answer::Ok;
  };
  InitAxisDefFrame(calibration, panel);
  for (int row = 0; row < 3; ++row) {
    const auto i = static_cast<std::size_t>(row);
    const auto [column, down] = WholePixel(form.Found.Rows[i]);
    if (!ws.plot.Contains(static_cast<int>(column), static_cast<int>(down)))
      return Tr("The axes reach beyond the picture");
    panel.Rows[i].XText = form.X[i].Text;
    panel.Rows[i].YText = form.Y[i].Text;
    if (!DefineAxis(calibration, panel, commands, desktop, row, ToInt16(column),
                    ToInt16(static_cast<float>(ws.plot.Height()) - down)))
      return told;
  }
  return {};
}

}  // namespace

bool CanProposeAxes(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void ShowProposedAxes(Workspace& ws, const Desktop& desktop, const AxesChoice& choice) {
  if (!CanProposeAxes(ws)) return;
  AxesProposal found =
      ReadBeside(ws, desktop, Marked("Finding the axes..."), [&](PictureOperation& operation) {
        return ProposeAxes(ws.plot.Pixels, operation, ReadTextLine, choice);
      });
  if (found.IsStopped) {
    ws.status.Status = Tr("Stopped: no axes were looked for");
    return;
  }
  ws.proposedAxes = {.Shown = true,
                     .Found = std::move(found),
                     .X = {},
                     .Y = {},
                     .Row = {},
                     .From = {PictureNumber(ws.plot), ws.calibration, ws.mode},
                     .FocusAsked = true};
  ws.reference.Armed = false;
  FillBoxes(ws.proposedAxes);
  ws.status.Status = FirstLine(VerdictText(ws.proposedAxes));
}

void TypeProposedX(Workspace& ws, int row, const std::string& text) {
  Values& x = ws.proposedAxes.X;
  x[static_cast<std::size_t>(row)] = {text, true};
  if (row == 0) x[2].Text = text;
}

void TypeProposedY(Workspace& ws, int row, const std::string& text) {
  Values& y = ws.proposedAxes.Y;
  y[static_cast<std::size_t>(row)] = {text, true};
  if (row == 0) y[1].Text = text;
}

void ConfirmProposedX(Workspace& ws, int row, bool confirmed) {
  ws.proposedAxes.X[static_cast<std::size_t>(row)].Confirmed = confirmed;
}

void ConfirmProposedY(Workspace& ws, int row, bool confirmed) {
  ws.proposedAxes.Y[static_cast<std::size_t>(row)].Confirmed = confirmed;
}

void LookAtProposedRow(Workspace& ws, int row) {
  ProposedAxesForm& form = ws.proposedAxes;
  if (form.Found.Rows.empty()) return;
  form.Row = row;
  const ProposedRow& at = form.Found.Rows[static_cast<std::size_t>(row)];
  BringIntoSight(ws, at.Column, at.Row);
}

void ChooseProposedPlot(Workspace& ws, const Desktop& desktop, int plot) {
  ShowProposedAxes(ws, desktop, {.Plot = plot, .XScale = {}, .YScale = {}});
}

void ChooseProposedXScale(Workspace& ws, const Desktop& desktop, int scale) {
  AxesChoice choice = ws.proposedAxes.Found.Choice;
  choice.XScale = scale;
  ShowProposedAxes(ws, desktop, choice);
}

void ChooseProposedYScale(Workspace& ws, const Desktop& desktop, int scale) {
  AxesChoice choice = ws.proposedAxes.Found.Choice;
  choice.YScale = scale;
  ShowProposedAxes(ws, desktop, choice);
}

bool ClickProposedPlot(Workspace& ws, const Desktop& desktop, int x, int y) {
  const ProposedAxesForm& form = ws.proposedAxes;
  if (!form.Shown || form.Found.Plots.size() < 2) return false;
  for (std::size_t i = 0; i < form.Found.Plots.size(); ++i) {
    const PlotArea& area = form.Found.Plots[i];
    if (x < area.Left || x > area.Right || y < area.Top || y > area.Bottom) continue;
    if (form.Found.Choice.Plot != static_cast<int>(i))
      ChooseProposedPlot(ws, desktop, static_cast<int>(i));
    break;
  }
  return true;
}

void TakeProposedAxes(Workspace& ws, const Desktop& desktop) {
  if (!CanTakeProposedAxes(ws)) return;
  if (const std::string refused = WhyRefused(ws); !refused.empty()) return Tell(desktop, refused);
  const ProposedAxesForm form = std::exchange(ws.proposedAxes, {});
  if (ws.mode != Mode::AxisDef) Do(ws, desktop, ModeStep{Mode::AxisDef});
  if (HasBegun(ws.calibration, ws.axisPanel)) Do(ws, desktop, RedefineStep{0});
  SetXLog(ws.calibration, form.XLog);
  SetYLog(ws.calibration, form.YLog);
  for (int row = 0; row < 3; ++row) {
    const auto i = static_cast<std::size_t>(row);
    const ProposedRow& at = form.Found.Rows[i];
    const auto [column, down] = WholePixel(at);
    const PlotPosition exact{static_cast<float>(at.Column), static_cast<float>(at.Row)};
    const AxisStep step{
        row, column, down, form.X[i].Text, form.Y[i].Text, exact, static_cast<float>(at.Sigma)};
    if (!Do(ws, desktop, step).IsDone()) return;
  }
  ws.axisPanel.Focus = FocusTarget::None;
  ws.status.Status = Tr("The axes are defined");
}

bool CanTakeProposedAxes(const Workspace& ws) {
  const ProposedAxesForm& form = ws.proposedAxes;
  return form.Shown && form.Found.Rows.size() == 3 && IsReady(form.X, kXs) && IsReady(form.Y, kYs);
}

void DropProposedAxes(Workspace& ws) {
  if (ws.status.Status == FirstLine(VerdictText(ws.proposedAxes))) ws.status.Status = " ";
  ws.proposedAxes = {};
}

void DropStaleAxes(Workspace& ws) {
  const ProposedAxesForm& form = ws.proposedAxes;
  if (form.Shown && form.From != ProposedFrom{PictureNumber(ws.plot), ws.calibration, ws.mode})
    DropProposedAxes(ws);
  const auto count = static_cast<int>(ws.calibration.Refined.References.size());
  const bool waits = ws.mode == Mode::AxisDef && CanAddReference(ws);
  const bool isDisarmed = ws.reference.Armed && !waits, isGone = ws.reference.Chosen >= count;
  if (isDisarmed) ws.reference.Armed = false;
  if (isGone) ws.reference.Chosen = -1;
  if (ws.mode == Mode::AxisDef && (isDisarmed || isGone)) ShowModeHint(ws);
}

std::string VerdictText(const ProposedAxesForm& form) {
  if (!form.Shown) return {};
  const AxesProposal& found = form.Found;
  const auto axisText = [](const char* name, const ProposedAxis& axis) {
    return std::string("\n") + name + ": " + axis.Reason;
  };
  std::string text;
  switch (found.Verdict) {
    case AxesVerdict::Sure:
      text = Tr("sure: the axes can be accepted");
      break;
    case AxesVerdict::Proposal:
      text = Tr("proposal: confirm each value (Return), or type another");
      break;
    case AxesVerdict::None:
      if (found.Plots.size() > 1 && !found.Choice.Plot)
        return Tr("none: there are several plots; choose one, or click it");
      text = Tr("none: no axes can be proposed");
      break;
  }
  return text + axisText("X", found.X) + axisText("Y", found.Y);
}

}  // namespace graphize
