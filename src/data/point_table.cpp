#include "data/point_table.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/json.h"
#include "base/numbers.h"

namespace graphize {

namespace {

/// JSON knows no infinity.
template <typename Real>
std::string JsonNumber(Real value) {
  return std::isfinite(value) ? ShortestText(value) : "null";
}

/// A reference point on the picture and the value it has on the axis.
std::string JsonReference(const AxisCalibration& calibration, int row, float value, int height) {
  return "{\"column\": " + std::to_string(calibration.PixelX[row]) +
         ", \"row\": " + std::to_string(height - calibration.PixelY[row]) +
         ", \"value\": " + JsonNumber(value) + "}";
}

std::string JsonAxes(const AxisCalibration& calibration, int height) {
  const auto axis = [&](int row, const std::array<float, 3>& values, bool log) {
    return std::string("{\"scale\": \"") + (log ? "log" : "linear") +
           "\", \"origin\": " + JsonReference(calibration, 0, values[0], height) +
           ", \"point\": " + JsonReference(calibration, row, values[row], height) + "}";
  };
  return "  \"axes\": {\n    \"x\": " + axis(1, calibration.ValueX, calibration.XLog) +
         ",\n    \"y\": " + axis(2, calibration.ValueY, calibration.YLog) +
         ",\n    \"angle\": " + JsonNumber(calibration.Angle) + "\n  },\n";
}

/// What a curve's errors are.
enum class Errors { None, Pixel, Standard };

RowError ErrorOf(const ExportRow& row, ErrorKind kind) {
  return kind == ErrorKind::Standard && row.HasStandard ? row.Standard : row.Error;
}

/// "x": "value on the x axis", "y": ...
std::string JsonUnits(const ExportCurve& curve, Errors errors) {
  const bool swapped = curve.Kind == PointStore::Rows::SwappedPlaces;
  const bool places = curve.Kind != PointStore::Rows::Other;
  const std::string x =
      places ? (swapped ? "value on the y axis" : "value on the x axis") : "number";
  const std::string y =
      places ? (swapped ? "value on the x axis" : "value on the y axis") : "length";
  std::string text = "\"x\": \"" + x + "\", \"y\": \"" + y + "\"";
  if (errors == Errors::None) return text;
  const std::string pixel = "size of one pixel, in units of ";
  const bool isStandard = errors == Errors::Standard;
  const bool isMixed =
      isStandard && !std::all_of(curve.Rows.begin(), curve.Rows.end(),
                                 [](const ExportRow& row) { return row.HasStandard || !row.HasY; });
  const std::string error = !isStandard ? pixel
                            : isMixed   ? "standard uncertainty, or " + pixel
                                        : "standard uncertainty, in units of ";
  text += ", \"x_error\": \"" + error + "x\", \"y_error\": \"" + error + "y\"";
  if (isStandard) text += ", \"x_pixel\": \"" + pixel + "x\", \"y_pixel\": \"" + pixel + "y\"";
  return text;
}

constexpr const char* kPictureUnits =
    "\"column\": \"pixel\", \"row\": \"pixel, downward from the top\", \"angle\": \"radian\"";

/// "points": [...], its lines behind `indent`.
std::string JsonPoints(const ExportCurve& curve, Errors errors, const std::string& indent) {
  std::string text = "\"points\": [";
  bool first = true;
  for (const ExportRow& row : curve.Rows) {
    text += (first ? "\n" : ",\n") + indent + "  {\"x\": " + JsonNumber(row.X) +
            ", \"y\": " + (row.HasY ? JsonNumber(row.Y) : "null");
    const auto add = [&](const char* name, float value) {
      text += std::string(", \"") + name + "\": " + (row.HasY ? JsonNumber(value) : "null");
    };
    if (errors != Errors::None) {
      const RowError error =
          ErrorOf(row, errors == Errors::Standard ? ErrorKind::Standard : ErrorKind::Pixel);
      add("x_error", error.X);
      add("y_error", error.Y);
    }
    if (errors == Errors::Standard) {
      add("x_pixel", row.Error.X);
      add("y_pixel", row.Error.Y);
      if (row.IsBridged) text += ", \"bridged\": true";
    }
    if (row.Ink != nullptr) text += std::string(", \"ink\": \"") + row.Ink + '"';
    text += "}";
    first = false;
  }
  return text + "\n" + indent + "]";
}

constexpr const char* kLineEnd = "\r\n";

/// The two errors, each behind a comma; empty cells where they are not known.
std::string CsvErrors(const ExportCurve& curve, const ExportRow& row, ErrorKind kind) {
  if (!curve.HasErrors || !row.HasY) return ",,";
  const RowError error = ErrorOf(row, kind);
  return "," + ShortestText(error.X) + "," + ShortestText(error.Y);
}

std::string CsvRow(const PointTable& table, const ExportCurve& curve, const ExportRow& row,
                   bool errors) {
  std::string text = "," + (row.HasY ? ShortestText(row.Y) : std::string());
  if (errors) text += CsvErrors(curve, row, table.Kind);
  return text;
}

/// One column X, behind it those of each curve.
std::string CsvSideBySide(const PointTable& table, bool errors) {
  std::string text = "x";
  for (const ExportCurve& curve : table.Curves) {
    text += "," + CsvString(curve.Name);
    if (errors)
      text += "," + CsvString(curve.Name + " x_error") + "," + CsvString(curve.Name + " y_error");
  }
  text += kLineEnd;
  for (std::size_t i = 0; i < table.Curves.front().Rows.size(); ++i) {
    text += ShortestText(table.Curves.front().Rows[i].X);
    for (const ExportCurve& curve : table.Curves)
      text += CsvRow(table, curve, curve.Rows[i], errors);
    text += kLineEnd;
  }
  return text;
}

bool WithErrors(const PointTable& table) {
  return table.Errors && std::any_of(table.Curves.begin(), table.Curves.end(),
                                     [](const ExportCurve& curve) { return curve.HasErrors; });
}

}  // namespace

std::string CsvString(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string CsvText(const PointTable& table) {
  const bool errors = WithErrors(table), several = table.Curves.size() > 1;
  if (table.CommonX && several) return CsvSideBySide(table, errors);
  std::string text = several ? "curve,x,y" : "x,y";
  if (errors) text += ",x_error,y_error";
  text += kLineEnd;
  for (const ExportCurve& curve : table.Curves) {
    const std::string start = several ? CsvString(curve.Name) + "," : "";
    for (const ExportRow& row : curve.Rows)
      text += start + ShortestText(row.X) + CsvRow(table, curve, row, errors) + kLineEnd;
  }
  return text;
}

std::string JsonText(const PointTable& table, const AxisCalibration& calibration,
                     const TableSource& source) {
  std::string text = "{\n";
  if (!source.Title.empty()) text += "  \"title\": " + JsonString(source.Title) + ",\n";
  text += "  \"picture\": {\"name\": " + JsonString(source.PictureName) +
          ", \"width\": " + std::to_string(source.Width) +
          ", \"height\": " + std::to_string(source.Height) + "},\n";
  if (calibration.IsComplete()) text += JsonAxes(calibration, source.Height);
  const auto errorsOf = [&](const ExportCurve& curve) {
    if (!table.Errors || !curve.HasErrors) return Errors::None;
    return table.Kind == ErrorKind::Standard && curve.HasStandard() ? Errors::Standard
                                                                    : Errors::Pixel;
  };
  if (table.Curves.size() == 1) {
    const ExportCurve& curve = table.Curves.front();
    return text + "  \"units\": {" + JsonUnits(curve, errorsOf(curve)) + ", " + kPictureUnits +
           "},\n  " + JsonPoints(curve, errorsOf(curve), "  ") + "\n}\n";
  }
  text += "  \"units\": {";
  text += kPictureUnits;
  text += "},\n  \"curves\": [";
  for (const ExportCurve& curve : table.Curves) {
    text += std::string(&curve == &table.Curves.front() ? "" : ",") +
            "\n    {\n      \"name\": " + JsonString(curve.Name) + ",\n      \"units\": {" +
            JsonUnits(curve, errorsOf(curve)) + "},\n      " +
            JsonPoints(curve, errorsOf(curve), "      ") + "\n    }";
  }
  return text + "\n  ]\n}\n";
}

}  // namespace graphize
