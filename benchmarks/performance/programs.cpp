// What is measured of whole programs: the start, and many pages by the command line.

#include <algorithm>
#include <cmath>
#include <fstream>

#include "base/start_beside.h"
#include "base/temporary_folder.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "performance/measure.h"

namespace graphize {

namespace {

constexpr int kPages = 1000;

/// Pages of 600 x 400 pixels with a frame and a curve, no two alike.
void DrawSmallPages(const std::filesystem::path& folder) {
  for (int i = 0; i < kPages; ++i) {
    Raster page = Raster::Filled(600, 400, kWhitePixel);
    for (int x = 40; x < 560; ++x) page.Row(360)[x] = kBlackPixel;
    for (int y = 40; y < 360; ++y) page.Row(y)[40] = kBlackPixel;
    for (int x = 60; x < 540; ++x) {
      const int y = static_cast<int>(200 + 100 * std::sin((x - 60) / (60.0 + i % 40)));
      for (int j = 0; j < 4; ++j) page.Row(y + j)[x] = kBlackPixel;
    }
    SavePicture(folder / (std::to_string(i) + ".png"), kPngFormat, 0, page);
  }
}

}  // namespace

void WriteStartRows(const std::filesystem::path& programs) {
  const TemporaryFolder folder;
  const auto start = [&](const char* name) {
    return [words = std::vector{(programs / name).string(), folder.Path().string()}] {
      return RunProgram(words).Seconds;
    };
  };
  WriteRow("start to first paint", "an empty maximised window of the toolkit",
           Compare(31, start("whole_window"), start("empty_window")), 1.25);
  WriteRow("the toolkit's controls alone, hardly as many", "the same",
           Compare(31, start("plain_controls"), start("empty_window")), {});
}

void WriteBatchRows(const std::filesystem::path& programs) {
  const TemporaryFolder folder;
  DrawSmallPages(folder.Path());
  const auto run = [&](const char* cores, int first, int end) {
    std::vector<std::string> words = {"taskset", "-c", cores,
                                      (programs.parent_path() / "graphize").string(), "digitize"};
    for (int i = first; i < end; ++i)
      words.push_back((folder / (std::to_string(i) + ".png")).string());
    words.insert(words.end(),
                 {"--origin=40,360:0,0", "--x-axis=540,360:10", "--y-axis=40,60:1",
                  "--trace=61,201", "--force", "--quiet", "-o", (folder / "results/").string()});
    return RunProgram(words);
  };
  double few = 0, all = 0;
  few = run("0,1", 0, kPages / 10).PeakMemory;
  const Compared speed = Compare(
      5,
      [&] {
        const ProgramRun two = run("0,1", 0, kPages);
        all = std::max(all, two.PeakMemory);
        return two.Seconds;
      },
      [&] { return run("0", 0, kPages).Seconds; });
  WriteRow("1,000 small pages on 2 cores", "the same on one core", speed, 1 / 1.9);
  WriteRow("memory of that", "100 of them", "", all / few, 1.1);
  const auto half = [&](const char* core, int part) {
    return run(core, part * kPages / 2, (part + 1) * kPages / 2).Seconds;
  };
  WriteRow("two runs of 500 at once, a core each", "one after the other",
           Compare(
               5,
               [&] {
                 const auto beside = StartBeside([&] { return half("1", 1); });
                 return Seconds([&] { half("0", 0), beside.wait(); });
               },
               [&] { return half("0", 0) + half("0", 1); }),
           {});
}

}  // namespace graphize
