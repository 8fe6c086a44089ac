#include "run.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "base/number_pattern.h"
#include "base/numbers.h"

namespace graphize::accuracy {

namespace {

constexpr int kWidth = 660, kHeight = 480;
constexpr double kLeft = 60, kTop = 40, kRight = 620, kBottom = 430;

PlotDrawing Paper(double degrees = 0) {
  return PlotDrawing(kWidth, kHeight, kLeft, kTop, kRight, kBottom, degrees);
}

std::string Typed(double value) {
  return ShortestText(static_cast<float>(value));
}

void Calibrate(Digitizer& digitizer, const PlotDrawing& drawing, const Axes& axes) {
  const std::array<ReferencePoint, 3> points = {
      {{drawing.Place(0, 0), Typed(axes.X0), Typed(axes.Y0)},
       {drawing.Place(1, 0), Typed(axes.X1), Typed(axes.Y0)},
       {drawing.Place(0, 1), Typed(axes.X0), Typed(axes.Y1)}}};
  digitizer.Calibrate(points, axes.XLog, axes.YLog);
}

/// The same axes, to read places on the picture back.
AxisCalibration AxesOf(const PlotDrawing& drawing, const Axes& axes) {
  const auto single = [](double value) { return static_cast<float>(value); };
  return drawing.Calibration(single(axes.X0), single(axes.X1), single(axes.Y0), single(axes.Y1),
                             axes.XLog, axes.YLog);
}

/// Between grid lines and away from the frame.
PixelPosition OnPaper(const PlotDrawing& drawing) {
  return drawing.Place(0.45, 1.06);
}

/// The curve's first place that is black and not in the frame.
PixelPosition StartOf(const std::vector<PixelPosition>& course, const Raster& picture) {
  const auto isStart = [&](PixelPosition at) {
    const std::uint32_t* row = picture.Row(static_cast<int>(std::lround(at.Y)));
    return at.X > kLeft + 4 && IsBlackPixel(row[std::lround(at.X)]);
  };
  return *std::find_if(course.begin(), course.end(), isStart);
}

struct DrawnCurve {
  PlotDrawing Drawing;
  std::vector<PixelPosition> Course;
};

DrawnCurve Draw(const CurvePlot& plot, bool alone) {
  DrawnCurve drawn{Paper(plot.Degrees), {}};
  PlotDrawing& drawing = drawn.Drawing;
  if (!alone && plot.Grid) plot.Grid(drawing);
  const Function v = [&](double u) { return plot.Values.VOf(plot.Y(plot.Values.XAt(u))); };
  Stroke line = plot.Line;
  if (alone) line.Darkness = 1;  // all of it is to be found, whatever its colour
  drawn.Course = drawing.Curve(v, line, plot.First, plot.Last);
  if (plot.LabelAt) {
    const PixelPosition at = drawing.Place(*plot.LabelAt, v(*plot.LabelAt));
    drawing.Blank({at.X - 6.5, at.Y - 20}, {at.X + 6.5, at.Y + 20});
  }
  if (!alone && plot.Others) plot.Others(drawing);
  if (!alone) drawing.Frame({.Thickness = 2}, 10, 6);
  if (plot.Softened > 0 || (plot.Grain > 0 && !alone))
    drawing.Scan(plot.Softened, alone ? 0 : plot.Grain, 5);
  return drawn;
}

}  // namespace

Accuracy Run(const CurvePlot& plot, Tracer tracer) {
  const DrawnCurve drawn = Draw(plot, false);
  Digitizer digitizer(plot.Grey ? drawn.Drawing.GreyPicture() : drawn.Drawing.Picture());
  Calibrate(digitizer, drawn.Drawing, plot.Values);
  if (plot.Grid) digitizer.WipeGrid(OnPaper(drawn.Drawing));
  if (plot.Blocker)
    digitizer.PaintBlocker(drawn.Drawing.Place(plot.Blocker->X, plot.Blocker->Y), 7);
  digitizer.Trace(tracer, StartOf(drawn.Course, drawn.Drawing.Picture()), plot.XIncrement,
                  plot.YIncrement);
  return MeasureCurve(digitizer.Points(AxesOf(drawn.Drawing, plot.Values)), drawn.Course,
                      Draw(plot, true).Drawing.Picture());
}

Accuracy Run(const ScanPlot& plot) {
  PlotDrawing drawing = Paper(), alone = Paper();
  if (plot.Grid) plot.Grid(drawing);
  drawing.Frame({.Thickness = 2}, 10, 6);
  std::vector<PixelPosition> truth;
  const Axes axes;
  if (plot.Y) {
    const Function v = [&](double u) { return axes.VOf(plot.Y(axes.XAt(u))); };
    truth = drawing.Curve(v, {}, 0.02, 0.98);
    alone.Curve(v, {}, 0.02, 0.98);
  }
  std::mt19937 random(9);
  const auto part = [&] { return static_cast<double>(random()) / std::mt19937::max(); };
  for (int i = 0; i < plot.Symbols; ++i) {
    const double u = 0.03 + 0.94 * part(), v = 0.03 + 0.94 * part();
    truth.push_back(drawing.Place(u, v));
    drawing.Disc(truth.back(), plot.Diameter);
  }
  Digitizer digitizer(drawing.Picture());
  Calibrate(digitizer, drawing, axes);
  if (plot.Grid) digitizer.WipeGrid(OnPaper(drawing));
  digitizer.Scan({kLeft + 1, kTop + 1}, {kRight - 1, kBottom - 1});
  const std::vector<PixelPosition> points = digitizer.Points(AxesOf(drawing, axes));
  return plot.Y ? MeasureCurve(points, truth, alone.Picture())
                : MeasureSymbols(points, truth, plot.Diameter);
}

}  // namespace graphize::accuracy
