// The image tools on pages of 35 and 139 million pixels (A4 at 600 and 1200 dpi), against a bare
// copy of the page measured in turns, so that other work on the machine falls on both; and the
// picture library's tools on the same pages in the same way, its time and memory from raster to
// raster.

#include <Magick++.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "image_tools/picture_tools.h"
#include "process_memory.h"

namespace graphize {
namespace {

double Seconds(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

enum class Page { BlackAndWhite, Grey, Colour };

/// A grid and slanted lines on paper, with the grain of a scan but in black and white.
Raster DrawPage(int width, int height, Page kind) {
  Raster page(width, height);
  std::uint32_t random = 1;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      random = random * 1664525u + 1013904223u;
      const bool ink = x % 1200 < 6 || y % 1200 < 6 || (x + y) % 1700 < 8;
      const std::uint32_t grain = random >> 23;
      std::uint32_t& pixel = page.Row(y)[x];
      if (kind == Page::BlackAndWhite) pixel = ink ? kBlackPixel : kWhitePixel;
      if (kind == Page::Grey) pixel = (ink ? 0xff202020u : 0xfff0f0f0u) + (grain & 7u) * 0x010101u;
      if (kind == Page::Colour)
        pixel = (ink ? 0xff203040u : 0xfff0f0f0u) +
                ((grain & 7u) << 16 | (grain & 0x38u) << 5 | grain >> 6);
    }
  return page;
}

/// Times `work(page)` in turns with a copy of the page.
void Measure(benchmark::State& state, Page kind, const auto& work) {
  const int width = static_cast<int>(state.range(0)), height = width * 14043 / 9933;
  const Raster page = DrawPage(width, height, kind);
  const double raster = 4.0 * static_cast<double>(page.PixelCount());
  double ours = 0, copy = 0, peak = 0;
  for (auto _ : state) {
    copy += Seconds([&] { benchmark::DoNotOptimize(page.Clone().Pixels()); });
    const double before = StatusBytes("VmRSS:");
    ResetPeakMemory();
    const double seconds = Seconds([&] { benchmark::DoNotOptimize(Raster(work(page)).Pixels()); });
    peak = std::max(peak, StatusBytes("VmHWM:") - before);
    ours += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["time/copy"] = ours / copy;
  state.counters["peak/raster"] = peak / raster;
}

void RunOnPage(benchmark::State& state, PictureTool tool, int amount, Page kind) {
  Measure(state, kind, [&](const Raster& page) {
    const auto palette = QueryPalette(page, {});
    auto result = RunTool(tool, amount, page, palette ? &*palette : nullptr, {});
    const bool scaled = tool == PictureTool::Resize || tool == PictureTool::Stretch;
    if (palette && !scaled) ReduceDepth(*result, *palette, {});
    return std::move(*result);
  });
}

void RunInLibrary(benchmark::State& state, void (*tool)(Magick::Image&)) {
  Magick::InitializeMagick(nullptr);
  Measure(state, Page::Colour, [&](const Raster& page) {
    Magick::Image image(page.Width(), page.Height(), "BGRP", Magick::CharPixel, page.Pixels());
    tool(image);
    Raster result(static_cast<int>(image.columns()), static_cast<int>(image.rows()));
    image.write(0, 0, image.columns(), image.rows(), "BGRA", Magick::CharPixel, result.Pixels());
    return result;
  });
}

void OnPages(benchmark::internal::Benchmark* tool) {
  tool->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3)->Arg(4967)->Arg(9933);
}
BENCHMARK_CAPTURE(RunOnPage, blur, PictureTool::Blur, 0, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, edges, PictureTool::EdgeDetect, 5, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, negate, PictureTool::Negate, 0, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, sharpen, PictureTool::Sharpen, 5, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, soften, PictureTool::Soften, 5, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_150, PictureTool::Resize, 150, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_150_two_colours, PictureTool::Resize, 150, Page::BlackAndWhite)
    ->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_50, PictureTool::Resize, 50, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, stretch_150, PictureTool::Stretch, 150, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_90, PictureTool::Rotate, 90, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_3, PictureTool::Rotate, 3, Page::Colour)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_3_two_colours, PictureTool::Rotate, 3, Page::BlackAndWhite)
    ->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_3_grey, PictureTool::Rotate, 3, Page::Grey)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_150_grey, PictureTool::Resize, 150, Page::Grey)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, blur_two_colours, PictureTool::Blur, 0, Page::BlackAndWhite)
    ->Apply(OnPages);

void OncePerPage(benchmark::internal::Benchmark* tool) {
  tool->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1)->Arg(4967)->Arg(9933);
}
BENCHMARK_CAPTURE(RunInLibrary, blur, [](Magick::Image& image) {
  image.blur(0, 1);
})->Apply(OncePerPage);
BENCHMARK_CAPTURE(RunInLibrary, edges, [](Magick::Image& image) {
  image.edge(1);
})->Apply(OncePerPage);
BENCHMARK_CAPTURE(RunInLibrary, sharpen, [](Magick::Image& image) {
  image.sharpen(0, 1);
})->Apply(OncePerPage);
BENCHMARK_CAPTURE(RunInLibrary, resize_150, [](Magick::Image& image) {
  image.zoom(Magick::Geometry("150%"));
})->Apply(OncePerPage);
BENCHMARK_CAPTURE(RunInLibrary, rotate_3, [](Magick::Image& image) {
  image.backgroundColor("white");
  image.rotate(3);
})->Apply(OncePerPage);

}  // namespace
}  // namespace graphize
