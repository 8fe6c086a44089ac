#include "session/kept_axes.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "calibration/axis_fit.h"
#include "calibration/axis_soundness.h"
#include "session/kept_fields.h"

namespace graphize {

namespace {

/// A row of the axis definition.
struct AxisRow {
  std::int16_t Column = 0, Row = 0;  // picture pixel; the row upward from the picture's bottom
  float X = 0, Y = 0;
  bool Defined = false, Armed = false;
  AxisPanel::Row Boxes;
  std::optional<ExactPlace> Exact;
};

using AxisRows = std::array<AxisRow, 3>;

template <class Io>
void Fields(Io& io, AxisRow& row) {
  io.Flag("defined", row.Defined);
  io.Flag("waits_for_click", row.Armed);
  io.Integer("column", row.Column, kLeast16, kMost16);
  io.Integer("row_from_bottom", row.Row, kLeast16, kMost16);
  io.Number("x", row.X);
  io.Number("y", row.Y);
  io.Text("x_typed", row.Boxes.XText);
  io.Text("y_typed", row.Boxes.YText);
  io.Text("column_shown", row.Boxes.XPixel);
  io.Text("row_shown", row.Boxes.YPixel);
  io.Flag("x_enabled", row.Boxes.XEnabled);
  io.Flag("y_enabled", row.Boxes.YEnabled);
  io.Flag("redefine_enabled", row.Boxes.ReDefineEnabled);
  bool isExact = row.Exact.has_value();
  if (IsThere(io, "exact")) io.Flag("exact", isExact);
  if (!isExact) return;
  if (!row.Exact) row.Exact.emplace();
  io.Number("exact_column", row.Exact->Column);
  io.Number("exact_row_from_bottom", row.Exact->RowUp);
  if (IsThere(io, "exact_sigma")) io.Number("exact_sigma", row.Exact->Sigma);
}

/// A value that may be absent: an empty text.
template <class Io>
void OptionalNumber(Io& io, const char* name, std::optional<float>& value) {
  std::string text = value ? ShortestText(*value) : "";
  io.Text(name, text);
  if constexpr (requires { io.Has(name); }) {
    const auto read = WholeNumberText(text);
    if (!text.empty() && !(read && std::isfinite(static_cast<float>(*read))))
      io.Fail(name, "is no number");
    value = text.empty() ? std::nullopt : std::optional(static_cast<float>(*read));
  }
}

template <class Io>
void Fields(Io& io, AxisReference& reference) {
  io.Number("column", reference.At.Column);
  io.Number("row_from_bottom", reference.At.RowUp);
  OptionalNumber(io, "x", reference.X);
  OptionalNumber(io, "y", reference.Y);
}

template <class Io>
void Fields(Io& io, KeptDocument& kept, AxisRows& rows) {
  AxisCalibration& axes = kept.Axes;
  io.Flag("x_log", axes.XLog);
  io.Flag("y_log", axes.YLog);
  io.List("points", rows, rows.size(), [&](AxisRow& row) { Fields(io, row); });
  io.List("pictures_of_points", kept.Map.OfAxisPoints, 3, [&](AffineMap& m) { MapField(io, m); });
  io.Number("angle", axes.Angle);
  io.Number("sin_angle", axes.SinAngle);
  io.Number("cos_angle", axes.CosAngle);
  io.Number("x_axis_length", axes.XAxisLength);
  io.Number("y_axis_length", axes.YAxisLength);
  io.Integer("current_point", axes.CurrentRow, 0, 2);
  io.Flag("origin_focus_pending", axes.FocusOriginPending);
  io.Flag("panel_shown", kept.AxisPanelShown);
  io.Text("angle_shown", kept.AxisAngle);
  io.Text("tip", kept.AxisTips);
  io.Flag("have_been_complete", kept.GridBuster);
  if (IsThere(io, "references"))
    io.List("references", axes.Refined.References, kMostReferences,
            [&](AxisReference& reference) { Fields(io, reference); });
  if (IsThere(io, "refined")) io.Flag("refined", axes.Refined.On);
}

}  // namespace

void AxesFields(JsonWriter& io, KeptDocument& kept) {
  AxisRows rows;
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows[i] = {kept.Axes.PixelX[i], kept.Axes.PixelY[i],      kept.Axes.ValueX[i],
               kept.Axes.ValueY[i], kept.Axes.Defined[i],     kept.Axes.Armed[i],
               kept.AxisRows[i],    kept.Axes.Refined.Rows[i]};
  Fields(io, kept, rows);
}

void AxesFields(JsonReader& io, KeptDocument& kept) {
  AxisRows rows;
  Fields(io, kept, rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const AxisRow& row = rows[i];
    kept.Axes.PixelX[i] = row.Column;
    kept.Axes.PixelY[i] = row.Row;
    kept.Axes.ValueX[i] = row.X;
    kept.Axes.ValueY[i] = row.Y;
    kept.Axes.Defined[i] = row.Defined;
    kept.Axes.Armed[i] = row.Armed;
    kept.AxisRows[i] = row.Boxes;
    kept.Axes.Refined.Rows[i] = row.Exact;
  }
  if (!FitsItsPoints(kept.Axes)) io.Fail(nullptr, "cannot be");
  if (kept.Axes.Refined.On && !SwitchRefined(kept.Axes, true)) io.Fail("refined", "cannot be");
}

}  // namespace graphize
