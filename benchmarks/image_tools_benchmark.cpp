// The image tools on pages of 35 and 139 million pixels (A4 at 600 and 1200 dpi), against a bare
// copy of the page measured in turns, so that other work on the machine falls on both.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

#include "image/picture_tools.h"

namespace graphize {
namespace {

double Seconds(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A colour scan: paper with a slight grain, a grid and a curve. With `colours` = 2 black and
/// white.
Raster DrawPage(int width, int height, int colours) {
  Raster page(width, height);
  std::uint32_t grain = 1;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      grain = grain * 1664525u + 1013904223u;
      const bool ink = x % 1200 < 6 || y % 1200 < 6 || (x + y) % 1700 < 8;
      page.Row(y)[x] = colours == 2 ? (ink ? kBlackPixel : kWhitePixel)
                                    : (ink ? 0xff203040u : 0xfff0f0f0u) + (grain >> 30 << 17) +
                                          (grain >> 28 & 3u);
    }
  return page;
}

/// A line of /proc/self/status in bytes.
double StatusBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(key)) return 1024.0 * std::atof(line.c_str() + key.size());
  return 0;
}

void RunOnPage(benchmark::State& state, PictureTool tool, int amount, int colours) {
  const int width = static_cast<int>(state.range(0)), height = width * 14043 / 9933;
  const Raster page = DrawPage(width, height, colours);
  const double raster = 4.0 * static_cast<double>(page.PixelCount());
  double ours = 0, copy = 0, peak = 0;
  for (auto _ : state) {
    copy += Seconds([&] { benchmark::DoNotOptimize(page.Clone().Pixels()); });
    const double before = StatusBytes("VmRSS:");
    std::ofstream("/proc/self/clear_refs") << "5";
    const double seconds = Seconds([&] {
      const auto palette = QueryPalette(page, {});
      auto result = RunTool(tool, amount, page, palette ? &*palette : nullptr, {});
      const bool scaled = tool == PictureTool::Resize || tool == PictureTool::Stretch;
      if (palette && !scaled) ReduceDepth(*result, {});
      benchmark::DoNotOptimize(result->Pixels());
    });
    peak = std::max(peak, StatusBytes("VmHWM:") - before);
    ours += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["time/copy"] = ours / copy;
  state.counters["peak/raster"] = peak / raster;
}

void OnPages(benchmark::internal::Benchmark* tool) {
  tool->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3)->Arg(4967)->Arg(9933);
}
BENCHMARK_CAPTURE(RunOnPage, blur, PictureTool::Blur, 0, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, edges, PictureTool::EdgeDetect, 5, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, negate, PictureTool::Negate, 0, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, sharpen, PictureTool::Sharpen, 5, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, soften, PictureTool::Soften, 5, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_150, PictureTool::Resize, 150, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_150_bw, PictureTool::Resize, 150, 2)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, resize_50, PictureTool::Resize, 50, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, stretch_150, PictureTool::Stretch, 150, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_90, PictureTool::Rotate, 90, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_3, PictureTool::Rotate, 3, 99)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, rotate_3_bw, PictureTool::Rotate, 3, 2)->Apply(OnPages);
BENCHMARK_CAPTURE(RunOnPage, blur_bw, PictureTool::Blur, 0, 2)->Apply(OnPages);

}  // namespace
}  // namespace graphize
