// Opening a page of 140 million pixels (A4 at 1200 dpi), against what the library alone needs for
// the same file and against its reading within this process (time/here), a small picture against
// that, and the two-colour reduction against the library's threshold. Both sides of a
// ratio are measured in turns, so that other work on the machine falls on both.

#include <Magick++.h>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "base/temporary_folder.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "process_memory.h"
#include "reading/ink_threshold.h"

namespace graphize {
namespace {

namespace fs = std::filesystem;

constexpr int kWidth = 9933, kHeight = 14043;

/// A frame, a grid and two curves, as on a scanned sheet; `paper` and `ink` are its two colours.
Raster DrawPage(std::uint32_t paper, std::uint32_t ink) {
  Raster page = Raster::Filled(kWidth, kHeight, paper);
  for (int y = 0; y < kHeight; ++y) {
    std::uint32_t* row = page.Row(y);
    if (y % 1200 < 6) std::fill_n(row, kWidth, ink);
    for (int x = 0; x < kWidth; x += 1200) std::fill_n(row + x, 6, ink);
  }
  for (int x = 0; x < kWidth; ++x)
    for (double phase : {0.0, 1.0}) {
      const int middle = static_cast<int>(kHeight / 2.0 + 5000 * std::sin(x / 900.0 + phase));
      for (int y = middle - 8; y <= middle + 8; ++y) page.Row(y)[x] = ink;
    }
  return page;
}

double Seconds(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The page as a file of each type, in a folder that is removed at the end.
class PageFiles {
 public:
  PageFiles() {
    const Raster page = DrawPage(kWhitePixel, kBlackPixel);
    SavePicture(folder_ / "tif", kTifFormat, 1, page);
    SavePicture(folder_ / "jpg", kJpgFormat, 75, page);
    Raster colours = page.Clone();
    for (int x = 0; x < kWidth; ++x) colours.Row(0)[x] = 0xff000000u | static_cast<unsigned>(x);
    SavePicture(folder_ / "bmp", kBmpFormat, 0, colours);
    SavePicture(folder_ / "rgb", kTifFormat, 1, colours);
    Magick::Image image(kWidth, kHeight, "BGRP", Magick::CharPixel, page.Pixels());
    image.depth(8);
    Write("png", "PNG", image);
    image.compressType(Magick::Group4Compression);
    image.type(Magick::BilevelType);
    Write("g4", "TIFF", image);
    std::mt19937 random(3);
    for (std::size_t i = 0; i < colours.PixelCount(); ++i)
      colours.Pixels()[i] ^= static_cast<std::uint32_t>(random()) & 0x070707u;
    Write("noise", "PNG", {kWidth, kHeight, "BGRP", Magick::CharPixel, colours.Pixels()});
    SavePicture(folder_ / "small", kPngFormat, 0, Raster::Filled(800, 600, kWhitePixel));
  }

  fs::path operator[](const char* type) const { return folder_ / type; }

 private:
  void Write(const char* name, const char* coder, Magick::Image image) {
    image.magick(coder);
    Magick::Blob bytes;
    image.write(&bytes);
    std::ofstream(folder_ / name, std::ios::binary)
        .write(static_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.length()));
  }

  TemporaryFolder folder_;
};

const PageFiles& Pages() {
  static const PageFiles pages;
  return pages;
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
      std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{kWidth} * kHeight);
  image.write(0, 0, kWidth, kHeight, "BGRA", Magick::CharPixel, pixels.get());
  benchmark::DoNotOptimize(pixels[12345]);
}

/// As where the system allows no process for it, and no reader of the type's own.
void DecodeHere(const fs::path& path) {
  std::string bytes;
  if (ReadWholeFile(path, std::size_t{2} << 30, bytes)) std::abort();
  benchmark::DoNotOptimize(
      DecodePictureHere(path.filename().string(), bytes, {}, DecodeBy::PictureLibrary));
}

void LoadPage(benchmark::State& state, const char* type, const char* coder, bool watched) {
  const fs::path path = Pages()[type];
  const double raster = 4.0 * kWidth * kHeight;
  double ours = 0, library = 0, here = 0, peak = 0, settled = 0;
  PrepareToDecode();
  const PictureProgress watch = watched ? PictureProgress([](int) { return true; }) : nullptr;
  for (auto _ : state) {
    library += Seconds([&] { DecodeWithLibraryAlone(path, coder); });
    here += Seconds([&] { DecodeHere(path); });
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
    here.push_back(Seconds([] { DecodeHere(Pages()["small"]); }));
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
    Magick::Image image(kWidth, kHeight, "BGRP", Magick::CharPixel, page.Pixels());
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
