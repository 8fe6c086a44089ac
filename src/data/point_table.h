#pragma once

#include <span>
#include <string>

#include "calibration/axis_calibration.h"
#include "capture/point_store.h"
#include "data/row_errors.h"

namespace graphize {

/// The data list as RFC 4180 has it: a header, commas, CR LF, decimal points. Numbers are the
/// shortest that read back as the same single-precision value.
std::string CsvText(const PointStore& store, std::span<const RowError> errors);

/// What a JSON file tells beside the points.
struct TableSource {
  std::string PictureName;
  int Width = 0, Height = 0;  // pixels
  std::string Title;
};

/// The data list with picture, axes and units as one JSON object (RFC 8259, UTF-8). Pixel rows
/// count downward from the top. With `errors` every point has the size of one pixel there.
std::string JsonText(const PointStore& store, const AxisCalibration& calibration,
                     const TableSource& source, std::span<const RowError> errors);

}  // namespace graphize
