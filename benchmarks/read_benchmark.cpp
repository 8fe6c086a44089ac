// How long one click takes to read a curve, on a small picture and on pages of 35 and 139
// megapixels, and to find symbols, alone, on a line and in speckle.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include <functional>
#include <random>

#include "reading/find_symbols.h"
#include "reading/read_curve.h"
#include "support/colour_plot.h"

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

/// Forty symbols on a wave, 800 x 600 pixels.
struct SymbolPage {
  test::ColourPlot Plot{kWhitePixel, 0, 800, 600};
  std::vector<test::PixelPosition> Places;

  SymbolPage() {
    Plot.Frame();
    for (int i = 0; i < 40; ++i) {
      const double u = (i + 0.5) / 40;
      Places.push_back(Plot.Layer().Place(u, 0.5 + 0.3 * std::sin(9 * u)));
    }
  }
};
constexpr std::uint32_t kBlue = 0xff1f77b4;

void FindOneKind(benchmark::State& state, const Raster& picture, double x, double y) {
  for (auto _ : state) {
    PictureOperation operation;
    benchmark::DoNotOptimize(FindSymbols(picture, FrameOf({}, picture.Width(), picture.Height()),
                                         {.X = x, .Y = y}, operation));
  }
}
void FindSymbolsAlone(benchmark::State& state) {
  SymbolPage page;
  page.Plot.Symbols(page.Places, {test::Symbol::Disc, 9}, kBlue);
  FindOneKind(state, page.Plot.Picture, std::round(page.Places[9].X), std::round(page.Places[9].Y));
}
BENCHMARK(FindSymbolsAlone)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

/// Discs, open squares and crosses.
void FindSymbolsOnLine(benchmark::State& state) {
  const test::SymbolLook looks[] = {
      {test::Symbol::Disc, 9}, {test::Symbol::Square, 10, 1.4}, {test::Symbol::Plus, 11, 1.4}};
  SymbolPage page;
  test::PlotDrawing line = page.Plot.Layer();
  line.Polyline(page.Places, {.Thickness = 1.5});
  page.Plot.Put(line, kBlue);
  page.Plot.Symbols(page.Places, looks[state.range(0)], kBlue);
  FindOneKind(state, page.Plot.Picture, std::round(page.Places[9].X), std::round(page.Places[9].Y));
}
BENCHMARK(FindSymbolsOnLine)
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

/// Pixels in a thousand that are black, by chance.
void FindSymbolsInSpeckle(benchmark::State& state) {
  Raster page = Raster::Filled(800, 600, kWhitePixel);
  std::mt19937 random(7);
  for (int y = 0; y < page.Height(); ++y)
    for (int x = 0; x < page.Width(); ++x)
      if (static_cast<int>(random() % 1000) < state.range(0)) page.Row(y)[x] = kBlackPixel;
  FindOneKind(state, page, 400, 300);
}
BENCHMARK(FindSymbolsInSpeckle)
    ->Arg(30)
    ->Arg(150)
    ->Arg(300)
    ->Arg(500)
    ->Arg(800)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace graphize
