#include "commands/axes_overlay.h"

#include <algorithm>
#include <cmath>

#include "base/number_pattern.h"
#include "calibration/axes_grid.h"
#include "calibration/axis_fit.h"
#include "commands/reference_commands.h"

namespace graphize {

namespace {

using Sketch = PlotOverlay::Sketch;

constexpr Colour kSure = MakeColour(0, 140, 50), kAmber = MakeColour(200, 110, 0);
constexpr Colour kGrid = MakeColour(0, 110, 200), kReference = MakeColour(0, 130, 130);
constexpr Colour kWrong = MakeColour(215, 0, 60);

/// What of the picture is seen, in its pixels.
PicturePart SeenPart(const Workspace& ws) {
  const Viewport& view = ws.view;
  const auto at = [&](int place) { return place / view.Zoom - 0.5; };
  return {at(view.X), at(view.Y), std::min(at(view.X + view.Width), ws.plot.Width() - 0.5),
          std::min(at(view.Y + view.Height), ws.plot.Height() - 0.5)};
}

void AddGrid(const Workspace& ws, PlotOverlay& overlay) {
  if (!ws.commands.AxesGrid) return;
  Sketch sketch{.MarkColour = kGrid, .Lines = {}, .Texts = {}, .Crosses = {}};
  for (const ValueLine& line : AxesGrid(ws.calibration, ws.plot.Height(), SeenPart(ws))) {
    const PlotOverlay::Position from{line.FromColumn, line.FromRow};
    const PlotOverlay::Position to{line.ToColumn, line.ToRow};
    sketch.Lines.push_back({from, to});
    if (line.Text.empty()) continue;
    if (line.OfX)
      sketch.Texts.push_back({from, line.Text, Sketch::Side::Below});
    else
      sketch.Texts.push_back({to, line.Text, Sketch::Side::Left});
  }
  overlay.Sketches.push_back(std::move(sketch));
}

/// The reading of each label and how far its tick lies off the scale; the line that they stand at.
Sketch SketchOf(const ProposedAxis& axis, Sketch::Side side) {
  Sketch sketch{.MarkColour = axis.Verdict == AxesVerdict::Sure ? kSure : kAmber,
                .Lines = {},
                .Texts = {},
                .Crosses = {}};
  for (const ProposedLabel& label : axis.Labels) {
    const PlotOverlay::Position at{label.Column, label.Row};
    sketch.Crosses.push_back(at);
    const auto off = static_cast<float>(std::round(10 * label.Residual) / 10 + 0.0);
    sketch.Texts.push_back({at, label.Text + " (" + FormatNumber(off, "0.0") + ")", side});
  }
  if (!sketch.Crosses.empty())
    sketch.Lines.push_back({sketch.Crosses.front(), sketch.Crosses.back()});
  return sketch;
}

void AddOutline(const PlotArea& area, Sketch& sketch) {
  const PlotOverlay::Position corners[] = {{area.Left - 0.5, area.Top - 0.5},
                                           {area.Right + 0.5, area.Top - 0.5},
                                           {area.Right + 0.5, area.Bottom + 0.5},
                                           {area.Left - 0.5, area.Bottom + 0.5}};
  for (std::size_t i = 0; i < 4; ++i) sketch.Lines.push_back({corners[i], corners[(i + 1) % 4]});
}

void AddProposal(const Workspace& ws, PlotOverlay& overlay) {
  const ProposedAxesForm& form = ws.proposedAxes;
  if (!form.Shown) return;
  // Beside the picture's own labels, not on them.
  const ProposedAxis &x = form.Found.X, &y = form.Found.Y;
  using Side = Sketch::Side;
  overlay.Sketches.push_back(SketchOf(x, x.IsAfter ? Side::Above : Side::Below));
  overlay.Sketches.push_back(SketchOf(y, y.IsAfter ? Side::Left : Side::Right));
  if (form.Found.Plots.size() > 1) {
    Sketch plots{.MarkColour = kGrid, .Lines = {}, .Texts = {}, .Crosses = {}};
    for (std::size_t i = 0; i < form.Found.Plots.size(); ++i) {
      const PlotArea& area = form.Found.Plots[i];
      AddOutline(area, plots);
      // Within the corner.
      constexpr double kInside = 12;
      plots.Texts.push_back(
          {{area.Left + kInside, area.Top + kInside}, std::to_string(i + 1), Sketch::Side::Right});
    }
    overlay.Sketches.push_back(std::move(plots));
  }
  overlay.AxisColour = form.Found.Verdict == AxesVerdict::Sure ? kSure : kAmber;
  for (std::size_t i = 0; i < form.Found.Rows.size(); ++i) {
    const ProposedRow& row = form.Found.Rows[i];
    const PlotOverlay::Point at{static_cast<float>(row.Column), static_cast<float>(row.Row)};
    overlay.AxisPoints.push_back(at);
    if (form.Row == static_cast<int>(i)) overlay.Near = at;
  }
  overlay.SelectedColour = PaletteColour(13);
}

/// While axes are defined: the further references, each at its place, and the doubtful one.
void AddReferences(const Workspace& ws, PlotOverlay& overlay) {
  if (ws.mode != Mode::AxisDef) return;
  const std::vector<AxisReference>& references = ws.calibration.Refined.References;
  const auto fit = CanRefine(ws) ? FitAxes(ws.calibration) : std::nullopt;
  Sketch sketch{.MarkColour = kReference, .Lines = {}, .Texts = {}, .Crosses = {}};
  Sketch doubtful{.MarkColour = kWrong, .Lines = {}, .Texts = {}, .Crosses = {}};
  const double height = ws.plot.Height();
  for (std::size_t i = 0; i < references.size(); ++i) {
    const ExactPlace& at = references[i].At;
    const bool isDoubtful = fit && fit->Doubtful == static_cast<int>(3 + i);
    Sketch& to = isDoubtful ? doubtful : sketch;
    const PlotOverlay::Position place{at.Column, height - static_cast<double>(at.RowUp)};
    to.Crosses.push_back(place);
    to.Texts.push_back({place, std::to_string(i + 1), Sketch::Side::Right});
  }
  overlay.Sketches.push_back(std::move(sketch));
  overlay.Sketches.push_back(std::move(doubtful));
  if (const auto& snap = ws.mouse.AxisSnap)
    overlay.Sketches.push_back(
        {.MarkColour = kWrong, .Lines = {}, .Texts = {}, .Crosses = {{snap->Column, snap->Row}}});
}

}  // namespace

void AddAxes(const Workspace& ws, PlotOverlay& overlay) {
  AddGrid(ws, overlay);
  AddReferences(ws, overlay);
  AddProposal(ws, overlay);
}

}  // namespace graphize
