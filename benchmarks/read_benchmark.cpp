// How long one click takes to read a curve, on a small picture and on pages of 35 and 139
// megapixels.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "reading/read_curve.h"

namespace graphize {
namespace {

/// A soft black line `thickness` pixels wide over most of white paper.
double Height(double u, int height) {
  return height * (0.5 + 0.3 * std::sin(7 * u));
}
Raster Page(int width, int height, double thickness) {
  Raster page = Raster::Filled(width, height, kWhitePixel);
  for (int x = width / 10; x < width * 9 / 10; ++x) {
    const double u = static_cast<double>(x) / width, middle = Height(u, height);
    const double slope = 2.1 * height / width * std::cos(7 * u);
    const double half = 0.5 * thickness * std::sqrt(1 + slope * slope) + 0.5;
    for (int y = static_cast<int>(middle - half); y <= middle + half + 1; ++y) {
      const double cover = std::clamp(half - std::fabs(y - middle), 0.0, 1.0);
      const auto level = static_cast<std::uint32_t>(255 - std::lround(255 * cover));
      page.Row(y)[x] = 0xff000000u | level * 0x010101u;
    }
  }
  return page;
}

void ReadOneCurve(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0)), height = static_cast<int>(state.range(1));
  const Raster page = Page(width, height, static_cast<double>(state.range(2)));
  const ReadingRequest request{.X = 0.3 * width, .Y = Height(0.3, height)};
  for (auto _ : state) {
    PictureOperation operation;
    const CurveReading reading =
        ReadCurve(page, FrameOf({}, width, height), {}, request, operation);
    if (reading.Points.empty()) state.SkipWithError("nothing was read");
  }
}
BENCHMARK(ReadOneCurve)
    ->Args({800, 600, 2})
    ->Args({7000, 5000, 6})
    ->Args({11800, 11800, 8})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace graphize
