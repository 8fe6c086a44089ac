// Clearing marks costs what was drawn: compare the two sizes of picture. Readings are nanoseconds.

#include <benchmark/benchmark.h>

#include "calibration/transform.h"
#include "raster/plot_image.h"
#include "support/quiet_desktop.h"

namespace graphize {
namespace {

PlotImage PictureOf(std::int64_t megapixels) {
  PlotImage image;
  SetPicture(image, Raster::Filled(10000, static_cast<int>(megapixels * 100), kWhitePixel));
  return image;
}

void BM_ClearMarks(benchmark::State& state) {
  PlotImage image = PictureOf(state.range(0));
  for (auto _ : state) {
    for (int i = 0; i < 5000; ++i) SetPixel(image, 1 + i, 50 + i % 40, kBlack);
    DrawDot(image, 40, 40, 50, kBlack);
    ClearMarks(image);
  }
}
BENCHMARK(BM_ClearMarks)->ArgName("megapixels")->Arg(1)->Arg(140);

void BM_GetPixel(benchmark::State& state) {
  const PlotImage image = PictureOf(state.range(0));
  int x = 0, y = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(GetPixel(image, x, y));
    x = (x + 1) % 1000;
    y = (y + x) % 90;
  }
}
BENCHMARK(BM_GetPixel)->ArgName("megapixels")->Arg(1)->Arg(140);

void BM_Pixels2Real(benchmark::State& state) {
  const bool log = state.range(0) != 0;
  const AxisCalibration calibration{.PixelX = {70, 600, 70},
                                    .PixelY = {50, 66, 460},
                                    .ValueX = {1, 1000, 1},
                                    .ValueY = {1, 1, 100},
                                    .Defined = {true, true, true},
                                    .XLog = log,
                                    .YLog = log,
                                    .SinAngle = 0.03f,
                                    .CosAngle = 0.9995f,
                                    .XAxisLength = 530.2f,
                                    .YAxisLength = 410.2f};
  const Desktop desktop = test::QuietDesktop();
  Reading reading;
  float x = 0;
  for (auto _ : state) {
    Pixels2Real(calibration, desktop, false, x, 300, reading);
    benchmark::DoNotOptimize(reading);
    x = x < 700 ? x + 1 : 0;
  }
}
BENCHMARK(BM_Pixels2Real)->ArgName("log")->Arg(0)->Arg(1);

}  // namespace
}  // namespace graphize
