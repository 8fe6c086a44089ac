// Clearing marks costs what was drawn: compare the two sizes of picture. Readings are nanoseconds.
// Five full curves over a screen of picture are a few milliseconds, over a small part of it a few
// tenths of one.

#include <benchmark/benchmark.h>

#include "calibration/transform.h"
#include "commands/overlay.h"
#include "raster/curve_marks.h"
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

/// What five curves of 32,767 points add to the painting of so many by so many pixels.
void BM_PaintFiveCurves(benchmark::State& state) {
  Workspace ws;
  SetPicture(ws.plot, Raster::Filled(1000, 1000, kWhitePixel));
  const Desktop desktop = test::QuietDesktop();
  for (int curve = 0; curve < 5; ++curve) {
    if (curve > 0) AddCurve(ws.curves, ws.store, FreeCurveName(ws.curves));
    for (int i = 0; i < ws.store.MaxPoints; ++i) {
      ws.store.CurrentPlace = {static_cast<float>(i % 1000), static_cast<float>(i * 7 % 991)};
      AddPoint(ws.store, ws.commands, desktop, false);
    }
  }
  const int size = static_cast<int>(state.range(0));
  for (auto _ : state) {
    Raster part = Raster::Filled(size, size, kWhitePixel);
    for (const PlotOverlay::Marks& marks : Plot_Paint(ws, {0, 0, size - 1, size - 1}).Curves)
      PaintMarks(part, 0, 0, marks);
    benchmark::DoNotOptimize(part.Pixels());
  }
}
BENCHMARK(BM_PaintFiveCurves)->ArgName("pixels")->Arg(20)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
