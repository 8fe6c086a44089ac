#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

#include "grid/grid_lines.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"

namespace graphize {
namespace {

/// A page of 35 megapixels, a scan at 600 dots per inch: a grid of `lines` lines in either
/// direction, 4 pixels thick, a curve, and labels.
struct Page {
  PlotImage Image;
  AxisCalibration Calibration;
};

Page MakePage(int lines, double degrees, double grain) {
  test::PlotDrawing drawing(5000, 7000, 500, 400, 4700, 6500, degrees, 3);
  std::vector<double> positions;
  for (int i = 1; i < lines; ++i) positions.push_back(static_cast<double>(i) / lines);
  drawing.LinesAtU(positions, {.Thickness = 4});
  drawing.LinesAtV(positions, {.Thickness = 4});
  drawing.Frame({.Thickness = 6}, 10, 40);
  drawing.Curve([](double u) { return 0.5 + 0.4 * std::sin(12 * u); }, {.Thickness = 9});
  for (const double v : positions)
    drawing.Digits({drawing.Place(0, v).X - 200, drawing.Place(0, v).Y - 20}, "-12.5", 5);
  if (grain > 0) drawing.Scan(1, grain, 1);
  Page page;
  SetPicture(page.Image, drawing.Picture());
  page.Calibration = drawing.Calibration();
  return page;
}

/// All lines of a direction: range(0) 0 for X, 1 for Y; range(1) lines; range(2) a turn in tenths
/// of a degree; range(3) grain in hundredths.
void RemoveAllLines(benchmark::State& state) {
  Page page = MakePage(static_cast<int>(state.range(1)), 0.1 * static_cast<double>(state.range(2)),
                       0.01 * static_cast<double>(state.range(3)));
  const Desktop desktop = test::QuietDesktop();
  const GridDirection direction = state.range(0) == 0 ? GridDirection::X : GridDirection::Y;
  GridRemoval removal;
  for (auto _ : state) {
    StatusBar status;
    removal = RemoveGridLines(page.Image, page.Calibration, desktop, status, direction, true, 0, 0);
    state.PauseTiming();
    UndoEdit(page.Image);
    state.ResumeTiming();
  }
  state.counters["lines"] = removal.Lines;
  state.counters["pixels"] = removal.Pixels;
}
BENCHMARK(RemoveAllLines)
    ->ArgNames({"Y", "lines", "turn", "grain"})
    ->Args({1, 20, 0, 0})
    ->Args({0, 20, 0, 0})
    ->Args({1, 100, 0, 0})
    ->Args({1, 100, 15, 0})
    ->Args({0, 100, 15, 45})
    ->Unit(benchmark::kMillisecond);

void RemoveOneLine(benchmark::State& state) {
  Page page = MakePage(20, 0.5, 0);
  const Desktop desktop = test::QuietDesktop();
  for (auto _ : state) {
    StatusBar status;
    RemoveGridLines(page.Image, page.Calibration, desktop, status, GridDirection::Y, false, 2500,
                    3450);
    state.PauseTiming();
    UndoEdit(page.Image);
    state.ResumeTiming();
  }
}
BENCHMARK(RemoveOneLine)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
