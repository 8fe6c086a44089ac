// What following a curve and scanning a page cost beside the bare reads of their pixels.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

#include "bare_reads.h"
#include "support/extraction_records.h"
#include "support/quiet_desktop.h"
#include "tracing/curve_tracer.h"
#include "tracing/scan.h"
#include "tracing/smooth_tracer.h"

namespace graphize {
namespace {

using test::ExtractionRecords;

void BM_BareReads(benchmark::State& state) {
  const PlotImage image = WideCurve();
  const auto ink = InkOf(image);
  BareReads reads;
  for (auto _ : state) benchmark::DoNotOptimize(reads = ReadBarely(image, ink));
  state.counters["reads"] = static_cast<double>(reads.Reads);
}
BENCHMARK(BM_BareReads)->Unit(benchmark::kMicrosecond);

enum Kind { kFollowOnly, kMark, kCapture, kCaptureLog };

void Trace(benchmark::State& state, TraceEnd (*tracer)(const ExtractionContext&, float, float)) {
  ExtractionRecords records(WideCurve());
  const Desktop desktop = test::QuietDesktop();
  const auto kind = static_cast<Kind>(state.range(0));
  records.Check(kind != kFollowOnly, false, false);
  records.CapturePressed = kind >= kCapture;
  if (kind == kCaptureLog) {
    records.Calibration.XLog = records.Calibration.YLog = true;
    records.Calibration.ValueX = {1, 128, 1};
    records.Calibration.ValueY = {1, 1, 128};
    records.Calibration.XAxisLength = records.Calibration.YAxisLength = 16000;
  }
  for (auto _ : state) {
    tracer(records.With(desktop), 0, 1000);
    state.PauseTiming();
    ClearMarks(records.Image);
    records.Store = {};
    state.ResumeTiming();
  }
  state.SetLabel(kind == kFollowOnly ? "no points"
                 : kind == kMark     ? "marked"
                 : kind == kCapture  ? "captured, linear axes"
                                     : "captured, log axes");
}
void BM_TraceNew(benchmark::State& state) {
  Trace(state, TraceNew);
}
void BM_TraceSmooth(benchmark::State& state) {
  Trace(state, TraceSmooth);
}
BENCHMARK(BM_TraceNew)->DenseRange(kFollowOnly, kCaptureLog)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TraceSmooth)->DenseRange(kFollowOnly, kCaptureLog)->Unit(benchmark::kMicrosecond);

/// The same trace in a small view: how much the scrolling adds.
void BM_TraceNewScrolling(benchmark::State& state) {
  ExtractionRecords records(WideCurve());
  const Desktop desktop = test::QuietDesktop();
  for (auto _ : state) {
    state.PauseTiming();
    records.Store = {};
    ClearMarks(records.Image);
    records.View = {.X = 0, .Y = 600, .Width = 1200, .Height = 800};
    ResetScrBars(records.View, records.Image.Width(), records.Image.Height());
    state.ResumeTiming();
    TraceNew(records.With(desktop), 0, 1000);
  }
}
BENCHMARK(BM_TraceNewScrolling)->Unit(benchmark::kMicrosecond);

void BM_ReadRasterOnce(benchmark::State& state) {
  const PlotImage image = SpeckledPage(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::size_t black = 0;
    const std::uint32_t* pixels = image.Pixels.Pixels();
    for (std::size_t i = 0; i < image.Pixels.PixelCount(); ++i) black += IsBlackPixel(pixels[i]);
    benchmark::DoNotOptimize(black);
  }
}
BENCHMARK(BM_ReadRasterOnce)->Arg(10000)->Arg(20)->Unit(benchmark::kMillisecond);

/// A scan in the testing mode: the capturing is bounded by the store's size.
void BM_ScanPage(benchmark::State& state) {
  ExtractionRecords records(SpeckledPage(static_cast<int>(state.range(0))));
  const Desktop desktop = test::QuietDesktop();
  records.CapturePressed = state.range(1) != 0;
  records.Control.Xrange = records.Control.Yrange = "1";
  const ScanRectangle all{false, -2, -2, records.Image.Width() + 1, records.Image.Height() + 1};
  for (auto _ : state) {
    Scan(records.With(desktop), all);
    state.PauseTiming();
    state.counters["marked"] = static_cast<double>(records.Image.Marks.size());
    ClearMarks(records.Image);
    records.Store = {};
    state.ResumeTiming();
  }
}
BENCHMARK(BM_ScanPage)
    ->ArgNames({"black_one_in", "capture"})
    ->Args({10000, 0})
    ->Args({10000, 1})
    ->Args({100, 0})
    ->Args({20, 0})
    ->Args({2, 0})
    ->Unit(benchmark::kMillisecond);

/// From the question at which Escape is held to the end of a scan that marks every pixel.
void BM_EscapeInTheScan(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  PlotImage black;
  SetPicture(black, Raster::Filled(side, side, kBlackPixel));
  ExtractionRecords records(std::move(black));
  records.Control.Xrange = records.Control.Yrange = "1";
  const ScanRectangle all{false, -2, -2, side + 1, side + 1};
  using Clock = std::chrono::steady_clock;
  Clock::time_point held;
  double worst = 0;
  int at = 0, asked = 0;
  Desktop desktop = test::QuietDesktop();
  desktop.EscapeHeld = [&] {
    if (asked++ != at) return false;
    held = Clock::now();
    return true;
  };
  const int questions = side * side / (1 << 18);
  for (auto _ : state) {
    at = (at + 7) % questions;
    asked = 0;
    Scan(records.With(desktop), all);
    const double seconds = std::chrono::duration<double>(Clock::now() - held).count();
    worst = std::max(worst, seconds);
    state.SetIterationTime(seconds);
    ClearMarks(records.Image);
  }
  state.counters["worst_ms"] = worst * 1000;
}
BENCHMARK(BM_EscapeInTheScan)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(8000)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
