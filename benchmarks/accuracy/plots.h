#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "digitizer.h"
#include "support/plot_drawing.h"

namespace graphize::accuracy {

using test::PlotDrawing;
using test::Stroke;
using Function = std::function<double(double)>;

/// The values at the plot's corners.
struct Axes {
  double X0 = 0, X1 = 10, Y0 = -1, Y1 = 1;
  bool XLog = false, YLog = false;

  /// Between values and positions from 0 to 1 along the axes.
  double XAt(double u) const;
  double VOf(double y) const;
};

/// What must be reached; nothing stated, nothing checked.
struct Target {
  std::optional<double> Median;     // pixels, at most
  std::optional<double> Coverage;   // at least
  std::optional<double> FalsePart;  // at most
};

/// Clean black curves.
inline constexpr Target kClean{0.3, 0.99, 0.01};
/// The same for the smoothing tracer: it captures whole rows, half a pixel off where the middle
/// lies between two.
inline constexpr Target kCleanWholeRows{0.5, 0.99, 0.01};
/// Grids that were wiped, scans of paper, broken and noisy curves.
inline constexpr Target kSound{std::nullopt, 0.97, 0.01};
/// Shown, not judged: docs/accuracy.md says why.
inline constexpr Target kNone{};

/// A plot of one curve that is traced.
struct CurvePlot {
  std::string Name;
  Target Goal = kClean;
  Function Y;  // of x
  Stroke Line = {};
  Axes Values = {};
  double First = 0.02, Last = 0.98;  // the part of the X axis where there is a curve
  double Degrees = 0;                // how the plot is turned
  bool Grey = false;                 // handed over in shades of grey: the program reduces it
  int Softened = 0;                  // rounds, and the grain of the paper
  double Grain = 0;
  std::function<void(PlotDrawing&)> Grid = nullptr;     // wiped before tracing
  std::function<void(PlotDrawing&)> Others = nullptr;   // what else is drawn, and stays
  std::optional<double> LabelAt = std::nullopt;         // u of a blank label over the curve
  std::optional<PixelPosition> Blocker = std::nullopt;  // (u, v) of one on another curve
  std::string XIncrement = "2", YIncrement = "3";
  Target EdgesGoal = Goal;
  Target SmoothGoal = Goal.Median ? kCleanWholeRows : Goal;
};

/// A plot that is scanned: symbols, or else the curve.
struct ScanPlot {
  std::string Name;
  Target Goal = kSound;
  int Symbols = 0;
  double Diameter = 1;
  Function Y = nullptr;
  std::function<void(PlotDrawing&)> Grid = nullptr;
};

std::vector<CurvePlot> CurvePlots();
std::vector<ScanPlot> ScanPlots();

}  // namespace graphize::accuracy
