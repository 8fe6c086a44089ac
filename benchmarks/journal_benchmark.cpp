// What the journal takes of the window's thread.

#include "session/journal.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "calibration/axis_calibration.h"
#include "raster/plot_image.h"
#include "session/history.h"
#include "workspace/do.h"
#include "workspace/replay.h"

namespace graphize {
namespace {

Desktop QuietDesktop() {
  Desktop desktop;
  desktop.ShowMessage = [](const Message&) { return Answer::Ok; };
  desktop.ShowNow = desktop.Pump = [] {};
  desktop.EscapeHeld = [] { return false; };
  return desktop;
}

/// A picture of this size with its axes, and a journal in a folder of its own.
struct Session {
  Workspace Ws;
  Desktop Quiet = QuietDesktop();
  History Past;
  std::filesystem::path Folder;
  std::unique_ptr<Journal> Kept;

  explicit Session(int side) {
    std::string name = (std::filesystem::temp_directory_path() / "graphize-XXXXXX").string();
    Folder = mkdtemp(name.data());
    Kept = std::make_unique<Journal>(Folder / "sessions");
    StartReplay(Ws);
    Past.Begin(Ws);
    const auto inHand = std::make_shared<PictureInHand>();
    inHand->Picture = Raster::Filled(side, side, kWhitePixel);
    const auto at = static_cast<float>(side - 50);
    for (Step& step :
         std::vector<Step>{OpenStep{.InHand = inHand}, ModeStep{Mode::AxisDef},
                           AxisStep{0, 50, at, "0", "0"}, AxisStep{1, at, at, "10", "0"},
                           AxisStep{2, 50, 50, "0", "10"}, ModeStep{Mode::Graphize}})
      Do(Ws, Quiet, std::move(step));
    Past.Commit(Ws);
  }
  ~Session() {
    Kept.reset();
    std::filesystem::remove_all(Folder);
  }
  void Capture() {
    Do(Ws, Quiet, PointStep{static_cast<float>(Ws.store.CaptureCount % 900), 300});
    Past.Commit(Ws);
  }
};

/// One captured point, with this many there already.
void CapturedPoint(benchmark::State& state) {
  Session session(1000);
  while (session.Ws.store.CaptureCount < state.range(0)) session.Capture();
  session.Kept->Append(session.Ws, session.Past.TakeDelta());
  for (auto _ : state) {
    state.PauseTiming();
    session.Past.Undo(session.Ws);
    session.Past.TakeDelta();
    session.Capture();
    const DocumentDelta delta = session.Past.TakeDelta();
    state.ResumeTiming();
    session.Kept->Append(session.Ws, delta);
  }
}
BENCHMARK(CapturedPoint)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

/// A change of the mode, which tells the small records.
void ChangedMode(benchmark::State& state) {
  Session session(1000);
  while (session.Ws.store.CaptureCount < state.range(0)) session.Capture();
  session.Kept->Append(session.Ws, session.Past.TakeDelta());
  for (auto _ : state) {
    state.PauseTiming();
    const bool captures = session.Ws.mode == Mode::Graphize;
    Do(session.Ws, session.Quiet, ModeStep{captures ? Mode::BlockTest : Mode::Graphize});
    session.Past.Commit(session.Ws);
    const DocumentDelta delta = session.Past.TakeDelta();
    state.ResumeTiming();
    session.Kept->Append(session.Ws, delta);
  }
}
BENCHMARK(ChangedMode)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

/// All of a document with 32,767 points.
void WholeDocument(benchmark::State& state) {
  Session session(1000);
  while (session.Ws.store.CaptureCount < 32'767) session.Capture();
  for (auto _ : state) session.Kept->Append(session.Ws, {.Anew = true, .Any = true, .Arrays = {}});
}
BENCHMARK(WholeDocument)->Unit(benchmark::kMicrosecond);

/// The number of a page of 140 megapixels, asked for once when it is opened.
void NumberOfPage(benchmark::State& state) {
  Session session(11'800);
  for (auto _ : state) {
    session.Ws.plot.Number.reset();
    benchmark::DoNotOptimize(PictureNumber(session.Ws.plot));
  }
}
BENCHMARK(NumberOfPage)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace graphize
