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

/// Lengths along the axis, in pixels, become values.
void ToValues(const Axis& axis, std::span<float> pixels) {
  const float length = axis.Length, span = axis.Span();
  const float origin = axis.Log ? std::log10(axis.Origin) : axis.Origin;
  for (float& value : pixels) value = value / length * span + origin;
  if (!axis.Log) return;
  for (float& value : pixels) value = std::pow(10.0f, value);
}

float PixelsAt(const Axis& axis, float value) {
  if (!axis.Log) return (value - axis.Origin) * axis.Length / (axis.End - axis.Origin);
  return (std::log10(value) - std::log10(axis.Origin)) * axis.Length / axis.Span();
}

/// How much of its scale an axis has per pixel of its own direction on the picture.
float PerPixelOfX(const AxisCalibration& c) {
  if (c.Refined.On) return static_cast<float>(c.Refined.Scale.XX);
  const Axis axis = XAxis(c);
  return c.CosAngle / axis.Length * axis.Span();
}
float PerPixelOfY(const AxisCalibration& c) {
  if (c.Refined.On) return static_cast<float>(c.Refined.Scale.YY);
  const Axis axis = YAxis(c);
  return c.CosAngle / axis.Length * axis.Span();
}

void SetError(const Axis& axis, float perPixel, float value, bool percent, float& error) {
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

/// By the fitted axes.
RealPoint RefinedPointAt(const AxisCalibration& c, double x, double y) {
  const auto [u, v] = Mapped(c.Refined.Scale, x, y);
  return {c.XLog ? std::pow(10.0, u) : u, c.YLog ? std::pow(10.0, v) : v};
}

}  // namespace

const char* LogOriginFault(const AxisCalibration& c) {
  if (c.XLog && !(c.ValueX[0] > 0)) return Marked("X origin must be positive for Log Axis");
  if (c.YLog && !(c.ValueY[0] > 0)) return Marked("Y origin must be positive for Log Axis");
  return nullptr;
}

void ToValues(const AxisCalibration& c, std::span<float> x, std::span<float> y) {
  if (c.Refined.On) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      const RealPoint at = RefinedPointAt(c, x[i], y[i]);
      x[i] = static_cast<float>(at.X);
      y[i] = static_cast<float>(at.Y);
    }
    return;
  }
  const float originX = c.PixelX[0], originY = c.PixelY[0], cosine = c.CosAngle, sine = c.SinAngle;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float dx = x[i] - originX, dy = y[i] - originY;
    x[i] = dx * cosine + dy * sine;
    y[i] = dy * cosine - dx * sine;
  }
  ToValues(XAxis(c), x);
  ToValues(YAxis(c), y);
}

GraphValues ValuesAt(const AxisCalibration& c, float x, float y) {
  ToValues(c, {&x, 1}, {&y, 1});
  return {x, y};
}

std::size_t Pixels2Real(const AxisCalibration& c, bool percent, std::span<float> x,
                        std::span<float> y, float& errorX, float& errorY) {
  if (LogOriginFault(c) || LogPointFault(c)) return 0;
  ToValues(c, x, y);
  const Axis xAxis = XAxis(c), yAxis = YAxis(c);
  const float perPixelOfX = PerPixelOfX(c), perPixelOfY = PerPixelOfY(c);
  for (std::size_t i = 0; i < x.size(); ++i) {
    float nextX = errorX, nextY = errorY;
    SetError(xAxis, perPixelOfX, x[i], percent, nextX);
    SetError(yAxis, perPixelOfY, y[i], percent, nextY);
    if (!std::isfinite(x[i]) || !std::isfinite(y[i]) || !std::isfinite(nextX) ||
        !std::isfinite(nextY))
      return i;
    errorX = nextX;
    errorY = nextY;
  }
  return x.size();
}

void Pixels2Real(const AxisCalibration& c, const Desktop& desktop, bool percent, float x, float y,
                 Reading& reading) {
  Reading read{x, y, reading.ErrorX, reading.ErrorY};
  if (Pixels2Real(c, percent, {&read.X, 1}, {&read.Y, 1}, read.ErrorX, read.ErrorY) == 1) {
    reading = read;
  } else if (const char* fault = LogOriginFault(c)) {
    if (!(c.XLog && c.YLog)) Tell(desktop, fault, MessageIcon::Critical);
  } else if (const char* pointFault = LogPointFault(c)) {
    throw RunTimeError(pointFault);
  } else {
    throw RunTimeError("Overflow: these axis values give no number here, please redefine the axes");
  }
}

bool Reads(const AxisCalibration& c, float x, float y, float X, float Y) {
  if (LogOriginFault(c) != nullptr) return false;
  const GraphValues values = ValuesAt(c, x, y);
  return values.X == X && values.Y == Y;
}

RealPoint RealPointAt(const AxisCalibration& c, double x, double y) {
  if (c.Refined.On) return RefinedPointAt(c, x, y);
  const double px = x - c.PixelX[0], py = y - c.PixelY[0];
  const double dx = c.PixelX[1] - c.PixelX[0], dy = c.PixelY[1] - c.PixelY[0];
  const double ly = c.PixelY[2] - c.PixelY[0];
  if (dy == 0) return {ValueAtShare(XAxis(c), px, dx), ValueAtShare(YAxis(c), py, ly)};
  const double square = dx * dx + dy * dy;
  return {ValueAtShare(XAxis(c), px * dx + py * dy, square),
          ValueAtShare(YAxis(c), (py * dx - px * dy) * dx, square * ly)};
}

AffineMap ScaleOf(const AxisCalibration& c) {
  if (c.Refined.On) return c.Refined.Scale;
  const double dx = c.PixelX[1] - c.PixelX[0], dy = c.PixelY[1] - c.PixelY[0];
  const double square = dx * dx + dy * dy, ly = c.PixelY[2] - c.PixelY[0];
  const auto scaled = [](const Axis& axis, float value) {
    const double decimal = DecimalValue(value);
    return axis.Log ? std::log10(decimal) : decimal;
  };
  const Axis x = XAxis(c), y = YAxis(c);
  const double spanX = scaled(x, x.End) - scaled(x, x.Origin);
  const double spanY = scaled(y, y.End) - scaled(y, y.Origin);
  AffineMap scale{spanX * dx / square,
                  spanX * dy / square,
                  0,
                  -spanY * dy * dx / (square * ly),
                  spanY * dx * dx / (square * ly),
                  0};
  scale.X = scaled(x, x.Origin) - (scale.XX * c.PixelX[0] + scale.XY * c.PixelY[0]);
  scale.Y = scaled(y, y.Origin) - (scale.YX * c.PixelX[0] + scale.YY * c.PixelY[0]);
  return scale;
}

PixelSize PixelSizeAt(const AxisCalibration& c, float X, float Y) {
  PixelSize size;
  SetError(XAxis(c), PerPixelOfX(c), X, false, size.X);
  SetError(YAxis(c), PerPixelOfY(c), Y, false, size.Y);
  return {std::fabs(size.X), std::fabs(size.Y)};
}

PlotPosition PositionOfReal(const AxisCalibration& c, int pictureHeight, float X, float Y) {
  if (c.Refined.On) {
    const double x = X, y = Y;
    const MappedPlace place =
        Mapped(Inverse(c.Refined.Scale), c.XLog ? std::log10(x) : x, c.YLog ? std::log10(y) : y);
    return {static_cast<float>(place.X), static_cast<float>(pictureHeight - place.Y)};
  }
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
