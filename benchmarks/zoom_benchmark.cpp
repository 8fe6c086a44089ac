// A page of 140 megapixels in a window of 1920 x 1080 at every zoom: each frame shows other pixels
// than the one before. The times that are felt: a frame while the view is dragged, the first look
// at all of the page, and what a mark costs that is drawn while it is seen from afar.

#include <benchmark/benchmark.h>

#include <utility>

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

void BM_PanFrame(benchmark::State& state) {
  PlotImage& page = Page();
  Pyramid pyramid;
  pyramid.Follow(page.Pixels, {});
  const double scale = ScaleOf(state);
  Raster frame(kScreenWidth, kScreenHeight);
  int left = 0, top = 0;
  PaintScaled(frame, 0, 0, page.Pixels, pyramid, {scale, 0, 0});
  for (auto _ : state) {
    left = (left + 137) % std::max(static_cast<int>(kWidth * scale) - kScreenWidth, 1);
    top = (top + 71) % std::max(static_cast<int>(kHeight * scale) - kScreenHeight, 1);
    PaintScaled(frame, left, top, page.Pixels, pyramid, {scale, 0, 0});
    benchmark::DoNotOptimize(frame.Pixels());
  }
  state.counters["memory_%"] = 100.0 * static_cast<double>(pyramid.Bytes()) /
                               (4.0 * static_cast<double>(page.Pixels.PixelCount()));
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

void BM_FirstFit(benchmark::State& state) {
  PlotImage& page = Page();
  Raster frame(kScreenWidth, kScreenHeight);
  double memory = 0;
  for (auto _ : state) {
    Pyramid pyramid;
    pyramid.Follow(page.Pixels, {});
    PaintScaled(frame, 0, 0, page.Pixels, pyramid,
                {static_cast<double>(kScreenHeight) / kHeight, 0, 0});
    memory = static_cast<double>(pyramid.Bytes());
  }
  state.counters["memory_%"] =
      100.0 * memory / (4.0 * static_cast<double>(page.Pixels.PixelCount()));
}
BENCHMARK(BM_FirstFit)->Unit(benchmark::kMillisecond);

void BM_FollowMark(benchmark::State& state) {
  PlotImage& page = Page();
  Pyramid pyramid;
  pyramid.Follow(page.Pixels, {});
  pyramid.Need(page.Pixels, Pyramid::kLargestLevel, 0, 0, 1, 1);
  int at = 0;
  for (auto _ : state) {
    at = (at + 613) % 9000;
    pyramid.Follow(page.Pixels, {at, at, at + 499, at + 499});
  }
}
BENCHMARK(BM_FollowMark)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
