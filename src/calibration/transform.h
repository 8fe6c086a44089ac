#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "calibration/axis_calibration.h"
#include "desktop/desktop.h"

namespace graphize {

/// Graph values at a position and the size of one pixel there, in graph units or in percent.
struct Reading {
  float X = 0, Y = 0;
  float ErrorX = 0, ErrorY = 0;
};

/// The graph values at column x and row y (counted upward from the picture's bottom edge, may be
/// fractional). Only for a complete calibration.
///
/// Linear:  X = u / XAxisLength * (Xa - Xo) + Xo, log: X = 10^(u / XAxisLength * log10(Xa / Xo) +
/// log10(Xo)), with (u, v) the position turned into the axes; Y likewise. The errors are the
/// derivative times one pixel. Single precision throughout, but for refined axes (AxisRefinement),
/// which the other functions here follow, too.
///
/// A log axis whose origin is not positive is refused: `reading` keeps what it held, and a message
/// is shown unless both axes are logarithmic. Relative errors at a value of 0 are left unchanged.
/// A log axis whose point is not positive is a run-time error (LogPointFault), as are axes that
/// give no finite value ("Overflow").
void Pixels2Real(const AxisCalibration& calibration, const Desktop& desktop, bool percent, float x,
                 float y, Reading& reading);

/// The same at many positions, one after the other: as many as there are before the first at which
/// it would refuse or throw. The columns and rows of these become X and Y, the errors those of the
/// last.
std::size_t Pixels2Real(const AxisCalibration& calibration, bool percent, std::span<float> x,
                        std::span<float> y, float& errorX, float& errorY);

/// What Pixels2Real reads there: the values alone, without its refusals and their messages. Not
/// finite where there is no value. Only for a complete calibration.
struct GraphValues {
  float X = 0, Y = 0;
};
GraphValues ValuesAt(const AxisCalibration& calibration, float x, float y);
/// The same at many positions: columns and rows become X and Y.
void ToValues(const AxisCalibration& calibration, std::span<float> x, std::span<float> y);

/// Whether Pixels2Real reads exactly these values there. Only for a complete calibration.
bool Reads(const AxisCalibration& calibration, float x, float y, float X, float Y);

/// The values of Pixels2Real in double precision throughout: turned by the reference pixels
/// themselves, (u, v) as shares of the axes being
///   u = ((x - x0) dx + (y - y0) dy) / (dx^2 + dy^2),
///   v = ((y - y0) dx - (x - x0) dy) dx / ((dx^2 + dy^2) ly)
/// with (dx, dy) from the origin to the X-axis point and ly the rows up to the Y-axis point; the
/// values of the axes are the decimal numbers they stand for (DecimalValue). Not finite where there
/// is no value.
struct RealPoint {
  double X = 0, Y = 0;
};
RealPoint RealPointAt(const AxisCalibration& calibration, double x, double y);

/// Column and row (upward) to X and Y, to log10 of one on a log axis: what the transform is, in
/// double precision. Only for a complete calibration; not finite where there are no values.
AffineMap ScaleOf(const AxisCalibration& calibration);

/// The size of one pixel where the graph values are (X, Y), never negative: the errors of
/// Pixels2Real in graph units.
struct PixelSize {
  float X = 0, Y = 0;
};
PixelSize PixelSizeAt(const AxisCalibration& calibration, float X, float Y);

/// What is wrong with the log axes in plain words, nullptr when nothing is: Pixels2Real refuses
/// then. Long operations ask it once at their start instead of being told at every position.
const char* LogOriginFault(const AxisCalibration& calibration);

/// Where graph values lie on the picture, row counted downward from the top: the inverse of
/// Pixels2Real. Not finite where there is no such place.
struct PlotPosition {
  float Column = 0, Row = 0;
};
PlotPosition PositionOfReal(const AxisCalibration& calibration, int pictureHeight, float X,
                            float Y);

/// The same as a picture pixel; nothing beyond the 16-bit range of pixel positions.
struct PlotPixel {
  int X = 0, Y = 0;
};
std::optional<PlotPixel> Real2Pixels(const AxisCalibration& calibration, int pictureHeight, float X,
                                     float Y);

}  // namespace graphize
