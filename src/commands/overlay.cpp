#include "commands/overlay.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "commands/axes_overlay.h"
#include "commands/preview_commands.h"
#include "data/waiting_points.h"

namespace graphize {

namespace {

PlotOverlay::Point PointAt(int column, int row) {
  return {static_cast<float>(column), static_cast<float>(row)};
}

/// The curve's points within the area: those that its list shows, and all captured ones
/// while the list has other rows, such as resampled ones.
PlotOverlay::Marks MarksOf(const Curve& curve, const PointStore& store,
                           const PlotOverlay::Rectangle& area) {
  PlotOverlay::Marks marks{.MarkColour = curve.MarkColour};
  const std::vector<PointId>& ids = store.ListIsCaptured ? store.ListId : store.CaptureId;
  const int count = store.ListIsCaptured ? store.ListCount : store.CaptureCount;
  for (int i = 1; i <= count; ++i) {
    const Place& place = store.Places[ids[i]];
    const PlotOverlay::Point point{place.Column, place.Row};
    if (Contains(area, point)) marks.Points.push_back(point);
  }
  return marks;
}

/// The curves that are shown, the active one above the others. One alone is marked only where
/// curves are read: what is captured otherwise leaves its own marks on the picture.
void AddCurves(PlotOverlay& overlay, const Workspace& ws, const PlotOverlay::Rectangle& area) {
  const std::vector<Curve>& curves = ws.curves.Curves;
  const auto add = [&](int i) {
    const Curve& curve = curves[i];
    if (!curve.Shown) return;
    PlotOverlay::Marks marks = MarksOf(curve, PointsOf(ws.curves, ws.store, i), area);
    if (!marks.Points.empty()) overlay.Curves.push_back(std::move(marks));
  };
  if (curves.size() < 2 && !IsReading(ws.mode)) return;
  for (int i = 0; i < static_cast<int>(curves.size()); ++i)
    if (i != ws.curves.Active) add(i);
  // Edited, its points are shown by themselves.
  if (ws.mode != Mode::EditPoints) add(ws.curves.Active);
}

/// The points of the list that are edited or selected, where they are or are being dragged to.
void AddEditedPoints(const Workspace& ws, const PlotOverlay::Rectangle& area,
                     PlotOverlay& overlay) {
  const PointStore& store = ws.store;
  const PointEdit& edit = ws.pointEdit;
  const bool dragged = edit.Pressed && edit.Dragged && edit.Grabbed;
  const PointSet& selected = store.Page.Points;
  const bool editing = ws.mode == Mode::EditPoints;
  if (!editing && selected.IsEmpty()) return;
  overlay.EditColour = ws.curves.Curves.size() > 1 ? ActiveCurve(ws.curves).MarkColour
                                                   : PaletteColour(ws.settings.TraceColor);
  overlay.SelectedColour = PaletteColour(13);
  for (int i = 1; i <= store.ListCount; ++i) {
    const PointId id = store.ListId[i];
    const bool isSelected = selected.Has(id);
    if (!(editing || isSelected) || !HasPlace(store, id)) continue;
    auto [column, row] = store.Places[id];
    if (dragged && isSelected) {
      column += edit.To.Column - edit.From.Column;
      row += edit.To.Row - edit.From.Row;
    }
    const PlotOverlay::Point point{column, row};
    if (!Contains(area, point)) continue;
    if (editing) overlay.EditPoints.push_back(point);
    if (isSelected) overlay.Selected.push_back(point);
    if (editing && edit.Near == id) overlay.Near = point;
  }
}

/// What was read, cut into stretches that are seen and stretches that are not.
void AddCourses(const std::vector<CurvePoint>& points, PlotOverlay::Preview& preview) {
  for (const CurvePoint& point : points) {
    const bool isDoubtful = point.IsBridged || point.Sigma > kDoubtfulSigma;
    if (preview.Courses.empty() || preview.Courses.back().IsDoubtful != isDoubtful) {
      // The stretches meet.
      std::vector<PlotOverlay::Position> way;
      if (!preview.Courses.empty()) way.push_back(preview.Courses.back().Way.back());
      preview.Courses.push_back({std::move(way), isDoubtful});
    }
    preview.Courses.back().Way.push_back({point.X, point.Y});
  }
}

void AddPreview(const CurvePreview& shown, bool isThinned, PlotOverlay& overlay) {
  PlotOverlay::Preview& preview = overlay.Previews.emplace_back();
  if (!shown.Ink.IsEmpty()) preview.Ink = &shown.Ink;
  preview.MarkColour = shown.MarkColour;
  AddCourses(shown.Reading.Points, preview);
  if (isThinned)
    for (const CurvePoint& point : shown.Points) preview.Points.push_back({point.X, point.Y});
  for (const PlotPixel& click : shown.Clicks)
    preview.Clicks.push_back({static_cast<double>(click.X), static_cast<double>(click.Y)});
}

void AddPreview(const SymbolPreview& shown, PlotOverlay& overlay) {
  PlotOverlay::Preview& preview = overlay.Previews.emplace_back();
  preview.MarkColour = shown.MarkColour;
  const auto& symbols = shown.Finding.Symbols;
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    preview.Rings.push_back({.At = {symbols[i].X, symbols[i].Y},
                             .Width = shown.Finding.Width,
                             .Height = shown.Finding.Height,
                             .IsDoubtful = !symbols[i].Doubt.empty(),
                             .IsLeftOut = shown.LeftOut[i],
                             .IsCurrent = static_cast<int>(i) == shown.Current});
    if (!shown.LeftOut[i]) preview.Points.push_back({symbols[i].X, symbols[i].Y});
  }
}

/// The ticked curves of the window FRM_ReadAll, the chosen row's above the others.
void AddPreview(const ReadAllForm& form, PlotOverlay& overlay) {
  const auto add = [&](int i) {
    const ReadAllForm::Item& item = form.Items[static_cast<std::size_t>(i)];
    if (!item.IsTaken) return;
    PlotOverlay::Preview& preview = overlay.Previews.emplace_back();
    preview.MarkColour = ColourBeside(item.Curve.Colour);
    preview.IsCurrent = i == form.Current;
    AddCourses(item.Curve.Reading.Points, preview);
  };
  for (int i = 0; i < static_cast<int>(form.Items.size()); ++i)
    if (i != form.Current) add(i);
  if (form.Current >= 0 && form.Current < static_cast<int>(form.Items.size())) add(form.Current);
}

void AddPreviews(const Workspace& ws, PlotOverlay& overlay) {
  if (HasReading(ws)) {
    const ReadingControl& control = ws.reading;
    if (control.Curve)
      AddPreview(*control.Curve, control.Density != ReadingDensity::Kind::Each, overlay);
    else
      AddPreview(*control.Symbols, overlay);
  }
  if (ws.form == Form::Ink && !ws.ink.Mask.IsEmpty())
    overlay.Previews.push_back({.Ink = &ws.ink.Mask, .MarkColour = ws.ink.MarkColour});
  if (ws.form == Form::ReadAll) AddPreview(ws.readAll, overlay);
}

}  // namespace

std::optional<PlotOverlay::Rectangle> RubberBand(const Workspace& ws) {
  const PointEdit& edit = ws.pointEdit;
  const auto inOrder = [](int left, int top, int right, int bottom) {
    return PlotOverlay::Rectangle{std::min(left, right), std::min(top, bottom),
                                  std::max(left, right), std::max(top, bottom)};
  };
  if (edit.Pressed && edit.Dragged && !edit.Grabbed)
    return inOrder(static_cast<int>(edit.From.Column), static_cast<int>(edit.From.Row),
                   static_cast<int>(edit.To.Column), static_cast<int>(edit.To.Row));
  const ScanRectangle& band = ws.scanRectangle;
  if (!band.Active) return std::nullopt;
  return inOrder(band.Left, band.Top, band.Right, band.Bottom);
}

PlotOverlay Plot_Paint(const Workspace& ws, const PlotOverlay::Rectangle& area) {
  PlotOverlay overlay;
  if (!ws.plot.IsPresent()) return overlay;
  if (ws.mode == Mode::AxisDef) {
    overlay.AxisColour = PaletteColour(2);
    for (int row = 0; row < 3; ++row)
      if (ws.calibration.Defined[row])
        overlay.AxisPoints.push_back(
            PointAt(ws.calibration.PixelX[row], ws.plot.Height() - ws.calibration.PixelY[row]));
  }
  AddAxes(ws, overlay);
  AddCurves(overlay, ws, area);
  AddPreviews(ws, overlay);
  // A curve that is hidden is not seen in any way.
  const bool shown = ActiveCurve(ws.curves).Shown;
  // But nothing is edited unseen.
  if (shown || ws.mode == Mode::EditPoints) AddEditedPoints(ws, area, overlay);
  if (ws.store.CaptureCount == 0 || !shown) return overlay;
  if (ws.commands.Overlay && ws.calibration.IsComplete()) {
    overlay.DataColour = PaletteColour(ws.settings.TraceColor);
    for (int i = 1; i <= ws.store.ListCount; ++i) {
      if (IsWaiting(ws.store.ListId[i], ws.store.ListX[i], ws.store.ListY[i])) continue;
      const auto pixel =
          Real2Pixels(ws.calibration, ws.plot.Height(), ws.store.ListX[i], ws.store.ListY[i]);
      if (!pixel) continue;
      const PlotOverlay::Point point = PointAt(pixel->X, pixel->Y);
      if (Contains(area, point)) overlay.DataPoints.push_back(point);
    }
  }
  if (ws.commands.ShowLastPoint) {
    overlay.LastPoint = PointAt(ws.store.LastPixelX, ws.plot.Height() - ws.store.LastPixelY);
    overlay.LastColour = PaletteColour(1);
  }
  return overlay;
}

}  // namespace graphize
