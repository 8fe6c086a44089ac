// What a project costs beside its picture: five curves of 32,767 points, saved and opened.

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>

#include "base/whole_file.h"
#include "codecs/picbuf.h"
#include "session/project_file.h"
#include "workspace/replay.h"

namespace graphize {
namespace {

constexpr int kPoints = 32767;

const std::filesystem::path kFolder = std::filesystem::temp_directory_path();
const std::filesystem::path kPicture = kFolder / "graphize-benchmark.bmp";
const std::filesystem::path kProject = kFolder / "graphize-benchmark.graphize";

Desktop QuietDesktop() {
  Desktop desktop;
  desktop.ShowMessage = [](const Message&) { return Answer::Ok; };
  desktop.ShowNow = desktop.Pump = [] {};
  desktop.EscapeHeld = [] { return false; };
  return desktop;
}

void FillCurve(Workspace& ws, int curve) {
  const Desktop quiet = QuietDesktop();
  PointStore& store = ws.store;
  for (int i = 0; i < kPoints; ++i) {
    store.CurrentPlace = {static_cast<float>(i) / 7, static_cast<float>(curve + std::sin(i) * 50)};
    AddValuePoint(store, ws.commands, quiet, false, store.CurrentPlace.Column / 54,
                  std::exp(store.CurrentPlace.Row / 20));
  }
}

Workspace FiveCurves() {
  Workspace ws;
  const Desktop quiet = QuietDesktop();
  StartReplay(ws);
  SavePicture(kPicture, 3, 0, Raster::Filled(16, 16, kWhitePixel));
  Do(ws, quiet, OpenStep{.Path = kPicture});
  for (int curve = 0; curve < 5; ++curve) {
    if (curve > 0) Do(ws, quiet, NewCurveStep{});
    FillCurve(ws, curve);
  }
  return ws;
}

void SaveProject(benchmark::State& state) {
  Workspace ws = FiveCurves();
  for (auto _ : state)
    if (ReplaceWholeFile(kProject, *ProjectBytes(ws, QuietDesktop()))) state.SkipWithError("disk");
}
BENCHMARK(SaveProject)->Unit(benchmark::kMillisecond);

void OpenProject(benchmark::State& state) {
  Workspace ws = FiveCurves();
  if (ReplaceWholeFile(kProject, *ProjectBytes(ws, QuietDesktop()))) state.SkipWithError("disk");
  for (auto _ : state)
    PutProject(ws, QuietDesktop(),
               *ReadProject(ReadProjectFile(kProject), ProjectPicture::Decoded));
  std::filesystem::remove(kProject);
  std::filesystem::remove(kPicture);
}
BENCHMARK(OpenProject)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
