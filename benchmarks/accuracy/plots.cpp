#include "plots.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace graphize::accuracy {

namespace {

using test::Decades;
using test::Linear;

std::function<void(PlotDrawing&)> Grid(const Stroke& stroke) {
  return [=](PlotDrawing& drawing) {
    drawing.LinesAtU(Linear(10), stroke);
    drawing.LinesAtV(Linear(8), stroke);
  };
}

std::function<void(PlotDrawing&)> LogGrid(const Stroke& stroke) {
  return [=](PlotDrawing& drawing) {
    drawing.LinesAtU(Decades(4), stroke);
    drawing.LinesAtV(Decades(3), stroke);
  };
}

double Sine(double x) {
  return 0.8 * std::sin(x);
}

double Peaks(double x) {
  double y = -0.85 + 0.02 * x;
  for (const double at : {1.3, 3.1, 5.6, 8.2})
    y += (0.5 + 0.13 * at) * std::exp(-std::pow((x - at) / 0.11, 2));
  return y;
}

double Waves(double x) {
  return 0.8 * std::sin(4.5 * x);
}

double Step(double x) {
  return -0.75 + 1.5 / (1 + std::exp(-9 * (x - 4.7)));
}

double Decay(double x) {
  return -0.8 + 1.6 * std::exp(-0.45 * x);
}

double Saturation(double x) {
  return -0.75 + 1.5 * (1 - std::exp(-1.1 * x));
}

/// A record that wanders up and down: straight between values a few pixels apart.
double Record(double x) {
  constexpr int kSteps = 130;
  static const std::vector<double> values = [] {
    std::mt19937 random(3);
    std::vector<double> made;
    double y = 0;
    for (int i = 0; i <= kSteps + 1; ++i) {
      y = 0.97 * y + 0.16 * (static_cast<double>(random()) / std::mt19937::max() - 0.5);
      made.push_back(y);
    }
    return made;
  }();
  const double at = std::clamp(x / 10, 0.0, 1.0) * kSteps;
  const auto i = static_cast<std::size_t>(at);
  return values[i] + (at - static_cast<double>(i)) * (values[i + 1] - values[i]);
}

/// Gain of a second-order low-pass filter.
double LowPass(double f) {
  const double r = f / 120;
  return 20 / std::sqrt(std::pow(1 - r * r, 2) + 0.09 * r * r);
}

constexpr Axes kLogX{.X0 = 1, .X1 = 1e4, .Y0 = -1, .Y1 = 1, .XLog = true};
constexpr Axes kLogLog{.X0 = 1, .X1 = 1e4, .Y0 = 0.1, .Y1 = 100, .XLog = true, .YLog = true};

/// v as a function of u, for what else is drawn.
std::function<void(PlotDrawing&)> Curve(Function v, const Stroke& stroke) {
  return [=](PlotDrawing& drawing) { drawing.Curve(v, stroke, 0.02, 0.98); };
}

std::function<void(PlotDrawing&)> UprightDots() {
  return [](PlotDrawing& drawing) { drawing.LinesAtU({0.3, 0.6}, {.Dash = 2, .Gap = 3}); };
}

std::vector<CurvePlot> CleanCurves() {
  return {
      {.Name = "line of 1 pixel", .Y = Sine},
      {.Name = "line of 2 pixels", .Y = Sine, .Line = {.Thickness = 2}},
      {.Name = "line of 3 pixels", .Y = Decay, .Line = {.Thickness = 3}},
      {.Name = "line of 8 pixels", .Y = Sine, .Line = {.Thickness = 8}},
      {.Name = "1 pixel, antialiased, reduced", .Y = Sine, .Grey = true},
      {.Name = "2.5 pixels, antialiased, reduced",
       .Y = Decay,
       .Line = {.Thickness = 2.5},
       .Grey = true},
      {.Name = "turned by 2 degrees", .Y = Sine, .Line = {.Thickness = 2}, .Degrees = 2},
      {.Name = "turned by -7 degrees", .Y = Decay, .Degrees = -7},
      {.Name = "logarithmic X axis",
       .Y = [](double x) { return 0.25 * std::log(x) - 0.02 * std::pow(std::log(x), 2) - 0.6; },
       .Values = kLogX},
      {.Name = "both axes logarithmic",
       .Y = LowPass,
       .Line = {.Thickness = 2},
       .Values = kLogLog,
       .Last = 0.75},
      {.Name = "steep step", .Y = Step},
      {.Name = "sharp peaks", .Y = Peaks},
      {.Name = "many waves", .Y = Waves, .Line = {.Thickness = 2}},
  };
}

std::vector<CurvePlot> CurvesOnGrids() {
  return {
      {.Name = "grid, solid", .Goal = kSound, .Y = Sine, .Grid = Grid({})},
      {.Name = "grid, solid, thick curve",
       .Goal = kSound,
       .Y = Decay,
       .Line = {.Thickness = 3},
       .Grid = Grid({.Thickness = 2})},
      {.Name = "grid, solid, turned by 1.5 degrees",
       .Goal = kSound,
       .Y = Sine,
       .Line = {.Thickness = 2},
       .Degrees = 1.5,
       .Grid = Grid({})},
      {.Name = "grid, dashed", .Goal = kSound, .Y = Sine, .Grid = Grid({.Dash = 7, .Gap = 4})},
      {.Name = "grid, dotted", .Goal = kSound, .Y = Waves, .Grid = Grid({.Dash = 1, .Gap = 3})},
      {.Name = "grid, grey, reduced",
       .Goal = kSound,
       .Y = Sine,
       .Line = {.Thickness = 2},
       .Grey = true,
       .Grid = Grid({.Thickness = 2, .Darkness = 0.6})},
      {.Name = "grid, logarithmic",
       .Goal = kSound,
       .Y = LowPass,
       .Line = {.Thickness = 2},
       .Values = kLogLog,
       .Last = 0.75,
       .Grid = LogGrid({})},
      {.Name = "grid, step between two lines",
       .Goal = kSound,
       .Y = Step,
       .First = 0,
       .Last = 1,
       .Grid = Grid({})},
      {.Name = "grid, many waves", .Goal = kSound, .Y = Waves, .Grid = Grid({})},
      {.Name = "grid, sharp peaks",
       .Goal = kSound,
       .Y = Peaks,
       .Line = {.Thickness = 2},
       .Grid = Grid({})},
      {.Name = "grid, curve nearing a line",
       .Goal = kSound,
       .Y = Saturation,
       .Line = {.Thickness = 2},
       .Grid = Grid({})},
      {.Name = "grid, curve from frame to frame",
       .Goal = kSound,
       .Y = [](double x) { return 0.8 * std::sin(1.3 * x); },
       .First = 0,
       .Last = 1,
       .Grid = Grid({})},
      {.Name = "grid, scanned paper",
       .Goal = kSound,
       .Y = Sine,
       .Line = {.Thickness = 3},
       .Degrees = 0.7,
       .Softened = 1,
       .Grain = 0.2,
       .Grid = Grid({.Thickness = 2})},
  };
}

/// The reduction sees a colour's luminance alone; this is that of the blue of many plots, #1f77b4,
/// as darkness: 1 is black, and 0.5 is the threshold.
constexpr double kBlue = 0.61;

/// Thin lines in colour, drawn antialiased: what the reduction leaves of them.
std::vector<CurvePlot> ColouredCurves() {
  std::vector<CurvePlot> plots;
  for (const auto& [pixels, thickness] : {std::pair{"1 pixel", 1.0}, {"2 pixels", 2.0}}) {
    for (const char* increment : {"2", "8"}) {
      plots.push_back({.Name = "blue line of " + std::string(pixels) +
                               ", antialiased, reduced, X increment " + increment,
                       .Goal = kNone,
                       .Y = Sine,
                       .Line = {.Thickness = thickness, .Darkness = kBlue},
                       .Grey = true,
                       .XIncrement = increment});
    }
  }
  return plots;
}

std::vector<CurvePlot> HardCurves() {
  const Function crossing = [](double u) { return 0.15 + 0.7 * u; };
  return {
      {.Name = "dashed curve",
       .Goal = kSound,
       .Y = Sine,
       .Line = {.Thickness = 2, .Dash = 10, .Gap = 5},
       .XIncrement = "8",
       .YIncrement = "6",
       .EdgesGoal = kNone},
      {.Name = "gap of 14 columns",
       .Goal = kSound,
       .Y = Decay,
       .Line = {.Thickness = 2},
       .LabelAt = 0.6,
       .XIncrement = "16"},
      {.Name = "record with noise", .Goal = kSound, .Y = Record},
      {.Name = "scanned paper",
       .Goal = kSound,
       .Y = Sine,
       .Line = {.Thickness = 3},
       .Softened = 1,
       .Grain = 0.35},
      {.Name = "crossed by dotted lines",
       .Goal = kSound,
       .Y = Decay,
       .Others = UprightDots(),
       .EdgesGoal = kNone},
      {.Name = "crossed by dotted lines, Y increment 1",
       .Goal = kSound,
       .Y = Decay,
       .Others = UprightDots(),
       .YIncrement = "1"},
      {.Name = "crossed by a curve",
       .Goal = kSound,
       .Y = Decay,
       .Others = Curve(crossing, {}),
       .EdgesGoal = kNone},
      {.Name = "crossed by a curve, with a blocker",
       .Goal = kSound,
       .Y = Decay,
       .Others = Curve(crossing, {}),
       .Blocker = test::PixelPosition{0.281, crossing(0.281)}},
      {.Name = "crossed by steep waves",
       .Goal = kSound,
       .Y = Decay,
       .Others = Curve([](double u) { return 0.5 + 0.45 * std::sin(30 * u); }, {}),
       .EdgesGoal = kNone},
  };
}

}  // namespace

double Axes::XAt(double u) const {
  return XLog ? X0 * std::pow(X1 / X0, u) : X0 + u * (X1 - X0);
}

double Axes::VOf(double y) const {
  return YLog ? std::log(y / Y0) / std::log(Y1 / Y0) : (y - Y0) / (Y1 - Y0);
}

std::vector<CurvePlot> CurvePlots() {
  std::vector<CurvePlot> plots = CleanCurves();
  for (const auto& more : {CurvesOnGrids(), HardCurves(), ColouredCurves()})
    plots.insert(plots.end(), more.begin(), more.end());
  return plots;
}

std::vector<ScanPlot> ScanPlots() {
  return {
      {.Name = "scatter of dots, scanned", .Symbols = 60, .Diameter = 1.5},
      {.Name = "scatter of discs, scanned", .Symbols = 60, .Diameter = 5},
      {.Name = "scatter on a grid, scanned", .Symbols = 60, .Diameter = 5, .Grid = Grid({})},
      {.Name = "record with noise, scanned", .Y = Record},
  };
}

}  // namespace graphize::accuracy
