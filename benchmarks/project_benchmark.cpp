// What a project costs beside its picture: five curves of 32,767 points, saved and opened.

#include <benchmark/benchmark.h>

#include <cmath>

#include "base/temporary_folder.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/replay.h"
#include "session/project_file.h"
#include "support/quiet_desktop.h"

namespace graphize {
namespace {

constexpr int kPoints = 32767;

void FillCurve(Workspace& ws, int curve) {
  const Desktop quiet = test::QuietDesktop();
  PointStore& store = ws.store;
  for (int i = 0; i < kPoints; ++i) {
    store.CurrentPlace = {static_cast<float>(i) / 7, static_cast<float>(curve + std::sin(i) * 50)};
    AddValuePoint(store, ws.commands, quiet, false, store.CurrentPlace.Column / 54,
                  std::exp(store.CurrentPlace.Row / 20));
  }
}

struct FiveCurves {
  TemporaryFolder Folder;
  Workspace Ws;

  FiveCurves() {
    const Desktop quiet = test::QuietDesktop();
    StartReplay(Ws);
    SavePicture(Folder / "plot.bmp", kBmpFormat, 0, Raster::Filled(16, 16, kWhitePixel));
    Do(Ws, quiet, OpenStep{.Path = Folder / "plot.bmp"});
    for (int curve = 0; curve < 5; ++curve) {
      if (curve > 0) Do(Ws, quiet, NewCurveStep{});
      FillCurve(Ws, curve);
    }
  }
  std::filesystem::path Project() const { return Folder / "five.graphize"; }
  void Save(benchmark::State& state) {
    if (ReplaceWholeFile(Project(), *ProjectBytes(Ws, test::QuietDesktop())))
      state.SkipWithError("disk");
  }
};

void SaveProject(benchmark::State& state) {
  FiveCurves curves;
  for (auto _ : state) curves.Save(state);
}
BENCHMARK(SaveProject)->Unit(benchmark::kMillisecond);

void OpenProject(benchmark::State& state) {
  FiveCurves curves;
  curves.Save(state);
  for (auto _ : state)
    PutProject(curves.Ws, test::QuietDesktop(),
               *ReadProject(ReadProjectFile(curves.Project()), ProjectPicture::Decoded));
}
BENCHMARK(OpenProject)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
