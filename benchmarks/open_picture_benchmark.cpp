// Opening a page of 140 million pixels (A4 at 1200 dpi), against what the library alone needs for
// the same file and against its reading within this process (time/here), a small picture against
// that, and the two-colour reduction against the library's threshold. Both sides of a
// ratio are measured in turns, so that other work on the machine falls on both.

#include <Magick++.h>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "codecs/picbuf.h"
#include "page_files.h"
#include "process_memory.h"
#include "reading/ink_threshold.h"

namespace graphize {
namespace {

namespace fs = std::filesystem;

double Seconds(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Bare decode and hand-out: nothing is checked, asked or kept.
void DecodeWithLibraryAlone(const fs::path& path, const char* coder) {
  const auto size = static_cast<std::size_t>(fs::file_size(path));
  void* bytes = std::malloc(size);
  std::ifstream(path, std::ios::binary)
      .read(static_cast<char*>(bytes), static_cast<std::streamsize>(size));
  Magick::Blob blob;
  blob.updateNoCopy(bytes, size, Magick::Blob::MallocAllocator);
  Magick::Image image;
  image.read(blob, Magick::Geometry(), coder);
  const auto pixels =
      std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{kPageWidth} * kPageHeight);
  image.write(0, 0, kPageWidth, kPageHeight, "BGRA", Magick::CharPixel, pixels.get());
  benchmark::DoNotOptimize(pixels[12345]);
}

void LoadPage(benchmark::State& state, const char* type, const char* coder, bool watched) {
  const fs::path path = Pages()[type];
  const double raster = 4.0 * kPageWidth * kPageHeight;
  double ours = 0, library = 0, here = 0, peak = 0, settled = 0;
  PrepareToDecode();
  const PictureProgress watch = watched ? PictureProgress([](int) { return true; }) : nullptr;
  for (auto _ : state) {
    library += Seconds([&] { DecodeWithLibraryAlone(path, coder); });
    here += Seconds([&] { benchmark::DoNotOptimize(DecodeHere(path)); });
    malloc_trim(0);
    const double before = StatusBytes("VmRSS:");
    ResetPeakMemory();
    std::optional<LoadedPicture> loaded;
    const double seconds = Seconds([&] { loaded = LoadPicture(path, watch); });
    peak = std::max(peak, StatusBytes("VmHWM:") - before);
    settled = std::max(settled, StatusBytes("VmRSS:") - before);
    ours += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["time/library"] = ours / library;
  state.counters["time/here"] = ours / here;
  state.counters["peak/raster"] = peak / raster;
  state.counters["settled/raster"] = settled / raster;
}

void Repeat(benchmark::internal::Benchmark* page) {
  page->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
}
BENCHMARK_CAPTURE(LoadPage, tif, "tif", "TIFF", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, tif_g4, "g4", "TIFF", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, tif_rgb, "rgb", "TIFF", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, png, "png", "PNG", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, png_noise, "noise", "PNG", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, jpg, "jpg", "JPEG", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, bmp, "bmp", "BMP", false)->Apply(Repeat);
BENCHMARK_CAPTURE(LoadPage, tif_watched, "tif", "TIFF", true)->Apply(Repeat);

void LoadSmall(benchmark::State& state) {
  PrepareToDecode();
  std::vector<double> apart, here;
  for (auto _ : state) {
    // Somebody looks at a picture before opening the next one.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    apart.push_back(Seconds([] { LoadPicture(Pages()["small"]); }));
    here.push_back(Seconds([] { benchmark::DoNotOptimize(DecodeHere(Pages()["small"])); }));
  }
  const auto median = [](std::vector<double>& times) {
    std::ranges::nth_element(times, times.begin() + std::ssize(times) / 2);
    return 1000 * times[times.size() / 2];
  };
  state.counters["apart_ms"] = median(apart);
  state.counters["here_ms"] = median(here);
}
BENCHMARK(LoadSmall)->Iterations(31);

void CheckBlackAndWhite(benchmark::State& state) {
  const Raster page = DrawPage(kWhitePixel, kBlackPixel);
  for (auto _ : state) benchmark::DoNotOptimize(IsBlackAndWhite(page));
}
BENCHMARK(CheckBlackAndWhite)->Unit(benchmark::kMillisecond);

void ReducePage(benchmark::State& state, InkThreshold::Kind kind) {
  Magick::InitializeMagick(nullptr);
  const Raster page = DrawPage(0xfff0e8d0u, 0xff203050u);
  double ours = 0, library = 0;
  for (auto _ : state) {
    Raster copy = page.Clone();
    const double seconds = Seconds([&] { Reduce(copy, {.Is = kind}); });
    Magick::Image image(kPageWidth, kPageHeight, "BGRP", Magick::CharPixel, page.Pixels());
    library += Seconds([&] { image.threshold(127 * 257.0); });
    ours += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["time/library"] = ours / library;
}
BENCHMARK_CAPTURE(ReducePage, fixed, InkThreshold::Kind::Fixed)->Apply(Repeat);
BENCHMARK_CAPTURE(ReducePage, auto, InkThreshold::Kind::Auto) -> Apply(Repeat);
BENCHMARK_CAPTURE(ReducePage, local, InkThreshold::Kind::Local)->Apply(Repeat);

}  // namespace
}  // namespace graphize
