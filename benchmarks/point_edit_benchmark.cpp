// What points corrected on the picture cost with a full store: 32,767 points.

#include <benchmark/benchmark.h>

#include <cmath>

#include "data/point_edit.h"

namespace graphize {
namespace {

constexpr int kHeight = 8000, kWidth = 11'000;

AxisCalibration Axes(bool log) {
  AxisCalibration axes;
  axes.PixelX = {100, 10'900, 100};
  axes.PixelY = {100, 100, 7900};
  axes.ValueX = {1, 1000, 1};
  axes.ValueY = {1, 1, 1000};
  axes.Defined = {true, true, true};
  axes.XAxisLength = 10'800;
  axes.YAxisLength = 7800;
  axes.XLog = axes.YLog = log;
  return axes;
}

PointStore FullStore(const AxisCalibration& axes) {
  Desktop desktop;
  CommandStates commands;
  PointStore store;
  for (int i = 0; i < store.MaxPoints; ++i) {
    store.CurrentPlace = {100 + static_cast<float>(i) / 4,
                          4000 + 3000 * std::sin(static_cast<float>(i) / 900)};
    const auto [x, y] = ValuesAt(axes, store.CurrentPlace.Column, kHeight - store.CurrentPlace.Row);
    AddValuePoint(store, commands, desktop, false, x, y);
  }
  return store;
}

void Nearest(benchmark::State& state) {
  const PointStore store = FullStore(Axes(false));
  float column = 0;
  for (auto _ : state) {
    column = column > 9000 ? 0 : column + 17;
    benchmark::DoNotOptimize(NearestPoint(store, {column, 4000}, 8));
  }
}
BENCHMARK(Nearest)->Unit(benchmark::kMillisecond);

/// As the step does: the values of all places, whether any is none, which are others.
void Recalculate(benchmark::State& state) {
  const AxisCalibration axes = Axes(state.range(0) != 0);
  PointStore store = FullStore(Axes(false));
  for (auto _ : state) {
    const NewValues values = ValuesOfPlaces(store, axes, kHeight);
    benchmark::DoNotOptimize(CountWithoutValue(values) + CountOthers(store, values) +
                             RowsWithoutPlace(store));
    TakeValues(store, values);
  }
}
BENCHMARK(Recalculate)->Arg(0)->Arg(1)->ArgName("log")->Unit(benchmark::kMillisecond);

/// A tenth of a pixel to and fro.
void MoveAll(benchmark::State& state) {
  const AxisCalibration axes = Axes(false);
  PointStore store = FullStore(axes);
  const PointSet all = AllPoints(store);
  float way = 0.1f;
  for (auto _ : state) {
    benchmark::DoNotOptimize(MovePoints(store, axes, kWidth, kHeight, all, way, 0));
    way = -way;
  }
}
BENCHMARK(MoveAll)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
