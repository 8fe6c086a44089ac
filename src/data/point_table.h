#pragma once

#include <string>
#include <vector>

#include "calibration/axis_calibration.h"
#include "data/export_curve.h"

namespace graphize {

/// What is written as CSV or JSON.
struct PointTable {
  std::vector<ExportCurve> Curves;  // at least one
  bool CommonX = false;             // the curves' rows have the same X one by one
  bool Errors = false;              // with the rows' errors, where they are known
  ErrorKind Kind = ErrorKind::Standard;
};

/// A text as a field of such a table, in quotes where it needs them.
std::string CsvString(const std::string& text);

/// The table as RFC 4180 has it: a header, commas, CR LF, decimal points. Numbers are the shortest
/// that read back as the same value.
///
/// One curve: x,y and with errors x_error,y_error. Several: the same with the curve's name in front
/// of each row, curve by curve; with a common X one column y for each, named as the curve.
std::string CsvText(const PointTable& table);

/// What a JSON file tells beside the points.
struct TableSource {
  std::string PictureName;
  int Width = 0, Height = 0;  // pixels
  std::string Title;
};

/// The table with picture, axes and units as one JSON object (RFC 8259, UTF-8). Pixel rows count
/// downward from the top. Points, and units of x and y, stand in the object of one curve, else in
/// those of "curves", with their names. A value that there is not is null. Where standard
/// uncertainties are written, the size of one pixel stands beside them as "x_pixel" and "y_pixel",
/// and points that the stroke was not seen at are "bridged". "ink" is what the ink check says of
/// a point, where it was asked.
std::string JsonText(const PointTable& table, const AxisCalibration& calibration,
                     const TableSource& source);

}  // namespace graphize
