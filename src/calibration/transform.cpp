#include "calibration/transform.h"

#include <cmath>

#include "base/decimal_scale.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

constexpr float kLn10 = 2.302585f;  // to these seven digits

/// One axis: its values at the origin and at the axis point, its signed length in pixels.
struct Axis {
  bool Log;
  float Origin, End, Length;

  /// The span in the axis' own scale: values or decades.
  float Span() const { return Log ? std::log10(End / Origin) : End - Origin; }
};

Axis XAxis(const AxisCalibration& c) {
  return {c.XLog, c.ValueX[0], c.ValueX[1], c.XAxisLength};
}

Axis YAxis(const AxisCalibration& c) {
  return {c.YLog, c.ValueY[0], c.ValueY[2], c.YAxisLength};
}

float ValueAt(const Axis& axis, float pixels) {
  if (!axis.Log) return pixels / axis.Length * (axis.End - axis.Origin) + axis.Origin;
  return std::pow(10.0f, pixels / axis.Length * axis.Span() + std::log10(axis.Origin));
}

float PixelsAt(const Axis& axis, float value) {
  if (!axis.Log) return (value - axis.Origin) * axis.Length / (axis.End - axis.Origin);
  return (std::log10(value) - std::log10(axis.Origin)) * axis.Length / axis.Span();
}

void SetError(const Axis& axis, float cosAngle, float value, bool percent, float& error) {
  const float perPixel = cosAngle / axis.Length * axis.Span();
  if (axis.Log)
    error = percent ? perPixel * (kLn10 * 100) : perPixel * value * kLn10;
  else if (!percent)
    error = perPixel;
  else if (value != 0)
    error = perPixel / value * 100;
}

/// The value at the share over / under of the axis, computed in whole numbers as far as they go, so
/// that a tick which is a short decimal number comes out as one.
double ValueAtShare(const Axis& axis, double over, double under) {
  const double origin = DecimalValue(axis.Origin), end = DecimalValue(axis.End);
  if (!axis.Log) {
    const double exact = DecimalScale(origin, end), scale = exact > 0 ? exact : 1;
    const auto whole = [&](double value) {
      return exact > 0 ? std::nearbyint(value * scale) : value;
    };
    return (whole(origin) * (under - over) + whole(end) * over) / (under * scale);
  }
  return std::pow(10.0, std::log10(origin) + over * std::log10(end / origin) / under);
}

/// Beside Pixels2Real: its texts would cost that, which inner loops call, a guarded stack frame.
[[gnu::cold, gnu::noinline]] void TellFault(const Desktop& desktop, const char* fault) {
  Tell(desktop, fault, MessageIcon::Critical);
}

}  // namespace

const char* LogOriginFault(const AxisCalibration& c) {
  if (c.XLog && !(c.ValueX[0] > 0)) return Marked("X origin must be positive for Log Axis");
  if (c.YLog && !(c.ValueY[0] > 0)) return Marked("Y origin must be positive for Log Axis");
  return nullptr;
}

GraphValues ValuesAt(const AxisCalibration& c, float x, float y) {
  const float dx = x - c.PixelX[0], dy = y - c.PixelY[0];
  const float u = dx * c.CosAngle + dy * c.SinAngle;
  const float v = dy * c.CosAngle - dx * c.SinAngle;
  return {ValueAt(XAxis(c), u), ValueAt(YAxis(c), v)};
}

void Pixels2Real(const AxisCalibration& c, const Desktop& desktop, bool percent, float x, float y,
                 Reading& reading) {
  if (const char* fault = LogOriginFault(c)) {
    // With two log axes the refusal is silent.
    if (!(c.XLog && c.YLog)) TellFault(desktop, fault);
    return;
  }
  if (const char* fault = LogPointFault(c)) throw RunTimeError(fault);
  const GraphValues values = ValuesAt(c, x, y);
  Reading read{values.X, values.Y, reading.ErrorX, reading.ErrorY};
  SetError(XAxis(c), c.CosAngle, read.X, percent, read.ErrorX);
  SetError(YAxis(c), c.CosAngle, read.Y, percent, read.ErrorY);
  if (!std::isfinite(read.X) || !std::isfinite(read.Y) || !std::isfinite(read.ErrorX) ||
      !std::isfinite(read.ErrorY))
    throw RunTimeError("Overflow: these axis values give no number here, please redefine the axes");
  reading = read;
}

bool Reads(const AxisCalibration& c, float x, float y, float X, float Y) {
  if (LogOriginFault(c) != nullptr) return false;
  const GraphValues values = ValuesAt(c, x, y);
  return values.X == X && values.Y == Y;
}

RealPoint RealPointAt(const AxisCalibration& c, double x, double y) {
  const double px = x - c.PixelX[0], py = y - c.PixelY[0];
  const double dx = c.PixelX[1] - c.PixelX[0], dy = c.PixelY[1] - c.PixelY[0];
  const double ly = c.PixelY[2] - c.PixelY[0];
  if (dy == 0) return {ValueAtShare(XAxis(c), px, dx), ValueAtShare(YAxis(c), py, ly)};
  const double square = dx * dx + dy * dy;
  return {ValueAtShare(XAxis(c), px * dx + py * dy, square),
          ValueAtShare(YAxis(c), (py * dx - px * dy) * dx, square * ly)};
}

PixelSize PixelSizeAt(const AxisCalibration& c, float X, float Y) {
  PixelSize size;
  SetError(XAxis(c), c.CosAngle, X, false, size.X);
  SetError(YAxis(c), c.CosAngle, Y, false, size.Y);
  return {std::fabs(size.X), std::fabs(size.Y)};
}

PlotPosition PositionOfReal(const AxisCalibration& c, int pictureHeight, float X, float Y) {
  const float u = PixelsAt(XAxis(c), X), v = PixelsAt(YAxis(c), Y);
  const float column = c.CosAngle * u - c.SinAngle * v + c.PixelX[0];
  const float rowUp = c.SinAngle * u + c.CosAngle * v + c.PixelY[0];
  return {column, static_cast<float>(pictureHeight) - rowUp};
}

std::optional<PlotPixel> Real2Pixels(const AxisCalibration& calibration, int pictureHeight, float X,
                                     float Y) {
  const PlotPosition position = PositionOfReal(calibration, pictureHeight, X, Y);
  const float column = std::nearbyint(position.Column);
  // Rounded as the row counts upward, then turned: halves go the same way as in the calibration.
  const float rowUp = std::nearbyint(static_cast<float>(pictureHeight) - position.Row);
  constexpr float kLimit = 32767;
  if (!(std::abs(column) <= kLimit && std::abs(rowUp) <= kLimit)) return std::nullopt;
  return PlotPixel{static_cast<int>(column), pictureHeight - static_cast<int>(rowUp)};
}

}  // namespace graphize
