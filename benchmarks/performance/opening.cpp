// What is measured of opening pictures.

#include "base/temporary_folder.h"
#include "page_files.h"
#include "performance/measure.h"

#include <malloc.h>

#include <thread>

namespace graphize {

namespace {

struct PageType {
  const char* Name;
  const char* Words;
  double Target;
};
constexpr PageType kTypes[] = {{"tif", "TIFF, 1 bit, LZW", 0.25},
                               {"g4", "TIFF, 1 bit, G4", 0.25},
                               {"rgb", "TIFF, RGB, LZW", 0.25},
                               {"png", "PNG", 0.7},
                               {"noise", "PNG, noisy", 0.7},
                               {"jpg", "JPEG", 0.5},
                               {"bmp", "BMP", 0.4}};

/// About what a page takes, read either way.
constexpr std::size_t kMemory = std::size_t{16} * kPageWidth * kPageHeight;

/// The largest of what the window's process took more than without a picture, in rasters.
double PeakInRasters(const std::filesystem::path& programs) {
  double peak = 0;
  for (const PageType& type : kTypes) {
    const TemporaryFolder folder;
    const std::string said = OutputOf({(programs / "whole_window").string(), folder.Path().string(),
                                       Pages()[type.Name].string()});
    const std::size_t at = said.find("peak ");
    if (at != said.npos) peak = std::max(peak, std::stod(said.substr(at + 5)));
  }
  return peak;
}

/// Seconds that a small picture takes longer than within this process.
Compared SmallPicture() {
  std::vector<double> apart, here;
  for (int i = 0; i < 31; ++i) {
    // Somebody looks at a picture before opening the next one.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    apart.push_back(Seconds([] { LoadPicture(Pages()["small"]); }));
    here.push_back(Seconds([] { DecodeHere(Pages()["small"]); }));
  }
  return {Median(apart), Median(here), 0};
}

}  // namespace

void WriteOpenRows(const std::filesystem::path& programs) {
  PrepareToDecode();
  for (const PageType& type : kTypes) {
    const auto path = Pages()[type.Name];
    // The window lives meanwhile.
    const PictureProgress watch = [](int) { return true; };
    const Compared times = Compare(
        3,
        [&] {
          malloc_trim(0);
          FindMemory(kMemory);
          return Seconds([&] { LoadPicture(path, watch); });
        },
        [&] {
          FindMemory(kMemory);
          return Seconds([&] { DecodeHere(path); });
        });
    WriteRow("open 139 megapixels: " + std::string(type.Words),
             "the picture library within the program", times, type.Target);
  }
  WriteRow("peak memory of that, the window's process, largest of them", "one raster", "",
           PeakInRasters(programs), 1.1);
  const Compared small = SmallPicture();
  WriteRow("a small picture, the server of decoders started ahead",
           "the picture library within the program",
           Milliseconds(small.Ours) + " / " + Milliseconds(small.Floor),
           1000 * (small.Ours - small.Floor), 5, " ms");
  double escape = 0;
  for (const PageType& type : kTypes)
    escape = std::max(escape, LongestEscape(
                                  8,
                                  [&](const std::function<bool()>& held) {
                                    LoadPicture(Pages()[type.Name], [&](int) { return !held(); });
                                  },
                                  kMemory));
  WriteRow("Escape while a picture is opened", "", "", 1000 * escape, 50, " ms");
}

}  // namespace graphize
