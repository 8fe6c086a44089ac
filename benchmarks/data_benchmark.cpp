#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "data/data_file.h"
#include "data/list_edit.h"
#include "data/resampling.h"
#include "data/sort.h"
#include "support/quiet_desktop.h"

namespace graphize {
namespace {

constexpr int kFull = 32767;

/// A full store of random points over many magnitudes.
PointStore FullStore() {
  PointStore store;
  CommandStates commands;
  const Desktop desktop = test::QuietDesktop();
  std::mt19937 random(1);
  std::uniform_real_distribution<float> exponent(-6, 6);
  for (int i = 1; i <= kFull; ++i)
    AddValuePoint(store, commands, desktop, false, static_cast<float>(i) * 0.001f,
                  std::pow(10.0f, exponent(random)));
  return store;
}

void CaptureFullStore(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(FullStore());
}
BENCHMARK(CaptureFullStore)->Unit(benchmark::kMillisecond);

/// A row cleared from a full list, and all brought back.
void ClearAndUndo(benchmark::State& state) {
  PointStore store = FullStore();
  for (auto _ : state) {
    store.Page.ScrollValue = 1;
    SelectLine(store.Page, store.ListCount, 0, false);
    ClearSelected(store);
    XY2List(store);
  }
}
BENCHMARK(ClearAndUndo)->Unit(benchmark::kMicrosecond);

void WriteFullDataFile(benchmark::State& state) {
  const PointStore store = FullStore();
  const auto path = std::filesystem::temp_directory_path() / "graphize_benchmark.dat";
  for (auto _ : state) WriteDataFile(path, DataFileText("title", store, {}, true));
  std::filesystem::remove(path);
}
BENCHMARK(WriteFullDataFile)->Unit(benchmark::kMillisecond);

struct Pattern {
  const char* Name;
  float (*ValueAt)(int row);
};
constexpr Pattern kPatterns[] = {
    {"ascending", [](int i) { return static_cast<float>(i); }},
    {"descending", [](int i) { return static_cast<float>(-i); }},
    {"all equal", [](int) { return 1.0f; }},
    {"five values", [](int i) { return static_cast<float>(i * 7919LL % 5); }},
    {"random", [](int i) { return static_cast<float>(i * 48271LL % 2147483647 % 1000003); }},
    {"saw", [](int i) { return static_cast<float>(i % 181); }},
    {"three per column, falling", [](int i) { return static_cast<float>(-(i / 3)); }},
};

void SortFullStore(benchmark::State& state) {
  const Pattern& pattern = kPatterns[state.range(0)];
  state.SetLabel(pattern.Name);
  PointStore store = FullStore();
  for (auto _ : state) {
    state.PauseTiming();
    for (int i = 1; i <= kFull; ++i) store.ListX[i] = pattern.ValueAt(i);
    state.ResumeTiming();
    SortList(store, SortOrder::Ascending);
  }
}
BENCHMARK(SortFullStore)
    ->Unit(benchmark::kMillisecond)
    ->DenseRange(0, static_cast<int>(std::size(kPatterns)) - 1);

/// A full store resampled into a full list; the argument is RefreshList.
void ReSampleFullStore(benchmark::State& state) {
  const Desktop desktop = test::QuietDesktop();
  PointStore store = FullStore();
  const SamplePlan plan{.Count = kFull, .MinX = 0.001f, .MaxX = 32.767f, .YLog = true};
  for (auto _ : state)
    if (ReSampleList(store, plan, state.range(0) != 0, desktop) != SampleEnd::Done)
      state.SkipWithError("not done");
}
BENCHMARK(ReSampleFullStore)->Unit(benchmark::kMillisecond)->Arg(0)->Arg(1);

}  // namespace
}  // namespace graphize
