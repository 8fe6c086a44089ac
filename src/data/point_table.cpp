#include "data/point_table.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/numbers.h"

namespace graphize {

namespace {

/// JSON knows no infinity.
std::string JsonNumber(float value) {
  return std::isfinite(value) ? ShortestText(value) : "null";
}

/// File names may be any bytes, JSON is UTF-8: what is none becomes the replacement character.
std::string JsonString(const std::string& text) {
  using Json = nlohmann::json;
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// A reference point on the picture and the value it has on the axis.
std::string JsonReference(const AxisCalibration& calibration, int row, float value, int height) {
  return "{\"column\": " + std::to_string(calibration.PixelX[row]) +
         ", \"row\": " + std::to_string(height - calibration.PixelY[row]) +
         ", \"value\": " + JsonNumber(value) + "}";
}

}  // namespace

std::string CsvText(const PointStore& store, std::span<const RowError> errors) {
  std::string text = errors.empty() ? "x,y\r\n" : "x,y,x_error,y_error\r\n";
  for (int i = 1; i <= store.ListCount; ++i) {
    text += ShortestText(store.ListX[i]) + "," + ShortestText(store.ListY[i]);
    if (!errors.empty())
      text += "," + ShortestText(errors[i - 1].X) + "," + ShortestText(errors[i - 1].Y);
    text += "\r\n";
  }
  return text;
}

std::string JsonText(const PointStore& store, const AxisCalibration& calibration,
                     const TableSource& source, std::span<const RowError> errors) {
  std::string text = "{\n";
  if (!source.Title.empty()) text += "  \"title\": " + JsonString(source.Title) + ",\n";
  text += "  \"picture\": {\"name\": " + JsonString(source.PictureName) +
          ", \"width\": " + std::to_string(source.Width) +
          ", \"height\": " + std::to_string(source.Height) + "},\n";
  const auto axis = [&](int row, const std::array<float, 3>& values, bool log) {
    return std::string("{\"scale\": \"") + (log ? "log" : "linear") +
           "\", \"origin\": " + JsonReference(calibration, 0, values[0], source.Height) +
           ", \"point\": " + JsonReference(calibration, row, values[row], source.Height) + "}";
  };
  if (calibration.IsComplete()) {
    text += "  \"axes\": {\n    \"x\": " + axis(1, calibration.ValueX, calibration.XLog) +
            ",\n    \"y\": " + axis(2, calibration.ValueY, calibration.YLog) +
            ",\n    \"angle\": " + JsonNumber(calibration.Angle) + "\n  },\n";
  }
  const bool swapped = store.ListRows == PointStore::Rows::SwappedPlaces;
  const bool places = store.ListRows != PointStore::Rows::Other;
  const std::string x =
      places ? (swapped ? "value on the y axis" : "value on the x axis") : "number";
  const std::string y =
      places ? (swapped ? "value on the x axis" : "value on the y axis") : "length";
  text += "  \"units\": {\"x\": \"" + x + "\", \"y\": \"" + y + "\"";
  if (!errors.empty())
    text +=
        ", \"x_error\": \"size of one pixel, in units of x\""
        ", \"y_error\": \"size of one pixel, in units of y\"";
  text +=
      ", \"column\": \"pixel\", \"row\": \"pixel, downward from the top\", "
      "\"angle\": \"radian\"},\n  \"points\": [";
  for (int i = 1; i <= store.ListCount; ++i) {
    text += std::string(i > 1 ? "," : "") + "\n    {\"x\": " + JsonNumber(store.ListX[i]) +
            ", \"y\": " + JsonNumber(store.ListY[i]);
    if (!errors.empty())
      text += ", \"x_error\": " + JsonNumber(errors[i - 1].X) +
              ", \"y_error\": " + JsonNumber(errors[i - 1].Y);
    text += "}";
  }
  return text + "\n  ]\n}\n";
}

}  // namespace graphize
