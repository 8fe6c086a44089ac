#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "capture/point_store.h"
#include "data/row_errors.h"

namespace graphize {

/// A row of a table in double precision.
struct ExportRow {
  double X = 0, Y = 0;
  RowError Error;     // the size of one pixel
  RowError Standard;  // uncertainties, where the row has them
  bool HasStandard = false, IsBridged = false;
  bool HasY = true;
  const char* Ink = nullptr;  // what the picture says of the point; null: not asked
};

/// A curve as a table has it: its list, in the list's order.
struct ExportCurve {
  std::string Name;
  PointStore::Rows Kind = PointStore::Rows::Places;
  bool HasErrors = false;           // the rows' errors are known
  bool XLog = false, YLog = false;  // the scales of the two columns
  std::vector<ExportRow> Rows;
  int WithoutPlace = 0;  // rows that have the list's values

  /// Whether some of it was read off a stroke.
  bool HasStandard() const {
    return std::any_of(Rows.begin(), Rows.end(),
                       [](const ExportRow& row) { return row.HasStandard; });
  }
};

/// The list's values, as the decimal numbers that single precision stands for.
ExportCurve ListCurve(const std::string& name, const PointStore& store,
                      const AxisCalibration& calibration);

/// The list with the values of RealPointAt where the row's point was captured; those of a place
/// that was computed are rounded to a billionth of a pixel, as decimals. Rows without a place
/// (resampled, lengths), or whose place reads as something else by now, because the axes or the
/// picture are others than they were, keep the list's values.
ExportCurve PlacedCurve(const std::string& name, const PointStore& store,
                        const AxisCalibration& calibration, int pictureHeight);

/// All X of the curves, each once, rising.
std::vector<double> AllX(std::span<const ExportCurve> curves);

/// The curves with these X instead of their own: Y of the first row that has this X, else by
/// Interpolation between the rows, on the scales of the axes, and none outside the curve.
std::vector<ExportCurve> OverCommonX(std::span<const ExportCurve> curves,
                                     std::span<const double> xs,
                                     const AxisCalibration& calibration);

}  // namespace graphize
