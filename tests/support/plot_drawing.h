#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "calibration/axis_calibration.h"

namespace graphize::test {

/// A position on the picture in pixels; a pixel's centre has whole numbers, rows grow downward.
struct PixelPosition {
  double X = 0, Y = 0;
};

struct Stroke {
  double Thickness = 1;  // pixels
  double Darkness = 1;   // 0 white .. 1 black
  double Dash = 0;       // pixels drawn and left out in turn; a Gap of 0 is a solid line
  double Gap = 0;
};

/// Draws plots whose every line is known to a small part of a pixel. Positions in the plot are
/// (u, v) from (0, 0), the origin, to (1, 1), the opposite corner. Lines are drawn soft, as
/// darkness; the picture is black where more than half of the darkness is reached.
class PlotDrawing {
 public:
  /// `left` .. `bottom` is the plot's box before it is turned about the picture's middle by
  /// `degrees` (counter-clockwise). `bend` is how far, in pixels, paper and lines sag in the
  /// middle.
  PlotDrawing(int width, int height, double left, double top, double right, double bottom,
              double degrees = 0, double bend = 0);

  PixelPosition Place(double u, double v) const;

  /// Grid lines of constant u or v.
  void LinesAtU(const std::vector<double>& positions, const Stroke& stroke);
  void LinesAtV(const std::vector<double>& positions, const Stroke& stroke);
  /// The box, with `ticks` marks per side outside, `tickLength` pixels (negative: inside) long.
  void Frame(const Stroke& stroke, int ticks = 0, double tickLength = 0);
  /// v as a function of u from `first` to `last`. The true course on the picture is returned.
  std::vector<PixelPosition> Curve(const std::function<double(double)>& v, const Stroke& stroke,
                                   double first = 0, double last = 1);
  void Polyline(const std::vector<PixelPosition>& points, const Stroke& stroke);
  void Disc(PixelPosition centre, double diameter);
  /// The outline of a square.
  void Box(PixelPosition centre, double side, const Stroke& stroke);
  /// Digits, minus and point, level, 5 x 7 dots of `dot` pixels each, from the upper left corner.
  void Digits(PixelPosition at, const std::string& text, double dot = 1);

  /// Softens by one pixel `rounds` times and adds grain of at most `grain` in darkness.
  void Scan(int rounds, double grain, unsigned seed);

  /// Whitens a box with the corners (left, top) and (right, bottom), as a label does to a curve.
  void Blank(PixelPosition leftTop, PixelPosition rightBottom);

  /// Black and white.
  Raster Picture() const;
  /// In shades of grey, as it is drawn.
  Raster GreyPicture() const;
  /// Reference points on the origin and on the ends of both axes, rounded to pixels, with these
  /// values.
  AxisCalibration Calibration(float x0 = 0, float x1 = 1, float y0 = 0, float y1 = 1,
                              bool xLog = false, bool yLog = false) const;

 private:
  float& At(int x, int y) { return darkness_[static_cast<std::size_t>(y) * width_ + x]; }
  void Darken(int x, int y, double cover, double darkness);

  int width_, height_;
  double left_, top_, right_, bottom_;
  double cos_, sin_, bend_;
  std::vector<float> darkness_;
};

/// Where the inner grid lines of an axis lie, from 0 to 1: at even intervals, or at the numbers 1
/// to 9 of so many decades.
std::vector<double> Linear(int intervals);
std::vector<double> Decades(int decades);

/// The sample "pendulum.bmp" with the labels of its Y axis once more at the right, half a unit
/// lower.
Raster WithSecondScale(const Raster& pendulum);

}  // namespace graphize::test
