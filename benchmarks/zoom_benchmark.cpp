// A page of 140 megapixels in a window of 1920 x 1080 at every zoom: each frame shows other pixels
// than the one before. The times that are felt: a frame while the view is dragged, also with marks
// that get edges, the first look at all of the page, and what a mark costs that is drawn while it
// is seen from afar.
//
// Run it as built for release, on a machine that does nothing else:
//   build/release/benchmarks/zoom_benchmark
// Every line has "median_ms", its share of the "target_ms", and, where levels are made, their
// "memory_%" of the raster, which should be at most 10.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "raster/mark_edges.h"
#include "raster/picture_scaling.h"
#include "raster/plot_image.h"
#include "support/plot_drawing.h"

namespace graphize {
namespace {

constexpr int kWidth = 9924, kHeight = 14031;  // A4 at 1200 dpi
constexpr int kScreenWidth = 1920, kScreenHeight = 1080;

PlotImage& Page() {
  static PlotImage& page = *[] {
    test::PlotDrawing drawing(kWidth, kHeight, 500, 500, kWidth - 500, kHeight - 500);
    drawing.Frame({.Thickness = 5}, 10, 60);
    drawing.LinesAtU(test::Linear(40), {.Thickness = 1});
    drawing.LinesAtV(test::Linear(40), {.Thickness = 1});
    auto* image = new PlotImage;
    SetPicture(*image, drawing.GreyPicture());
    return image;
  }();
  return page;
}

/// `range(0)` screen pixels are `range(1)` picture pixels wide.
double ScaleOf(const benchmark::State& state) {
  return static_cast<double>(state.range(0)) / static_cast<double>(state.range(1));
}

/// The time of each round, and how its median compares with what it may be.
class Rounds {
 public:
  using Clock = std::chrono::steady_clock;

  Rounds(benchmark::State& state, double targetMs) : state_(state), target_(targetMs) {}
  ~Rounds() {
    if (times_.empty()) return;
    const auto middle = times_.begin() + static_cast<std::ptrdiff_t>(times_.size() / 2);
    std::nth_element(times_.begin(), middle, times_.end());
    state_.counters["median_ms"] = *middle;
    state_.counters["target_ms"] = target_;
    state_.counters["of_target"] = *middle / target_;
  }
  Rounds(const Rounds&) = delete;
  Rounds& operator=(const Rounds&) = delete;

  template <class Work>
  void Time(const Work& work) {
    const Clock::time_point start = Clock::now();
    work();
    times_.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }

 private:
  benchmark::State& state_;
  double target_;
  std::vector<double> times_;  // milliseconds
};

void NoteMemory(benchmark::State& state, const Pyramid& pyramid, const PlotImage& page) {
  state.counters["memory_%"] = 100.0 * static_cast<double>(pyramid.Bytes()) /
                               (4.0 * static_cast<double>(page.Pixels.PixelCount()));
}

/// Frames of which each shows another part than the one before.
void PanOver(benchmark::State& state, const PlotImage& page) {
  Pyramid pyramid;
  pyramid.Follow(page.Pixels, {});
  const double scale = ScaleOf(state);
  Raster frame(kScreenWidth, kScreenHeight);
  int left = 0, top = 0;
  PaintScaled(frame, 0, 0, page.Pixels, pyramid, {scale, 0, 0});
  Rounds rounds(state, 8);
  for (auto _ : state) {
    left = (left + 137) % std::max(static_cast<int>(kWidth * scale) - kScreenWidth, 1);
    top = (top + 71) % std::max(static_cast<int>(kHeight * scale) - kScreenHeight, 1);
    rounds.Time([&] {
      PaintScaled(frame, left, top, page.Pixels, pyramid, {scale, 0, 0});
      PaintMarkEdges(frame, left, top, page, {.Zoom = scale});
    });
    benchmark::DoNotOptimize(frame.Pixels());
  }
  NoteMemory(state, pyramid, page);
}

void BM_PanFrame(benchmark::State& state) {
  PanOver(state, Page());
}
BENCHMARK(BM_PanFrame)
    ->ArgNames({"screen", "picture"})
    ->Args({1, 64})
    ->Args({1, 16})
    ->Args({10, 77})
    ->Args({1, 4})
    ->Args({10, 29})
    ->Args({1, 2})
    ->Args({5, 8})
    ->Args({10, 13})
    ->Args({1, 1})
    ->Args({5, 4})
    ->Args({3, 1})
    ->Args({32, 1})
    ->Unit(benchmark::kMillisecond);

/// A hundred thousand marks in a colour that paper swallows.
void BM_PanFrameWithPaleMarks(benchmark::State& state) {
  PlotImage& page = Page();
  for (int i = 0; i < 100'000; ++i)
    SetPixel(page, 500 + i * 7 % 9000, 500 + i * 131 % 13000, MakeColour(255, 255, 0));
  PanOver(state, page);
  ClearMarks(page);
}
BENCHMARK(BM_PanFrameWithPaleMarks)
    ->ArgNames({"screen", "picture"})
    ->Args({1, 16})
    ->Args({1, 1})
    ->Args({3, 1})
    ->Unit(benchmark::kMillisecond);

void BM_FirstFit(benchmark::State& state) {
  PlotImage& page = Page();
  Raster frame(kScreenWidth, kScreenHeight);
  Rounds rounds(state, 400);
  for (auto _ : state) {
    Pyramid pyramid;
    rounds.Time([&] {
      pyramid.Follow(page.Pixels, {});
      PaintScaled(frame, 0, 0, page.Pixels, pyramid,
                  {static_cast<double>(kScreenHeight) / kHeight, 0, 0});
    });
    NoteMemory(state, pyramid, page);
  }
}
BENCHMARK(BM_FirstFit)->Unit(benchmark::kMillisecond);

void BM_FollowMark(benchmark::State& state) {
  PlotImage& page = Page();
  Pyramid pyramid;
  pyramid.Follow(page.Pixels, {});
  pyramid.Need(page.Pixels, Pyramid::kLargestLevel, 0, 0, 1, 1);
  int at = 0;
  Rounds rounds(state, 1);
  for (auto _ : state) {
    at = (at + 613) % 9000;
    rounds.Time([&] { pyramid.Follow(page.Pixels, {at, at, at + 499, at + 499}); });
  }
  NoteMemory(state, pyramid, page);
}
BENCHMARK(BM_FollowMark)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
