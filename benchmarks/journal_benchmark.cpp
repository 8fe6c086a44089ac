// What the journal takes of the window's thread.

#include "session/journal.h"

#include <benchmark/benchmark.h>

#include "base/temporary_folder.h"
#include "raster/plot_image.h"
#include "session_page.h"

namespace graphize {
namespace {

/// A page with its journal in a folder of its own.
struct Session : SessionPage {
  TemporaryFolder Folder;
  Journal Kept;

  explicit Session(int side) : SessionPage(side), Kept(Folder / "sessions") {}
};

/// One captured point, with this many there already.
void CapturedPoint(benchmark::State& state) {
  Session session(1000);
  session.CaptureUpTo(state.range(0));
  session.Kept.Append(session.Ws, session.Past.TakeDelta());
  for (auto _ : state) {
    state.PauseTiming();
    session.Past.Undo(session.Ws);
    session.Past.TakeDelta();
    session.CaptureOne();
    const DocumentDelta delta = session.Past.TakeDelta();
    state.ResumeTiming();
    session.Kept.Append(session.Ws, delta);
  }
}
BENCHMARK(CapturedPoint)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

/// A change of the mode, which tells the small records.
void ChangedMode(benchmark::State& state) {
  Session session(1000);
  session.CaptureUpTo(state.range(0));
  session.Kept.Append(session.Ws, session.Past.TakeDelta());
  for (auto _ : state) {
    state.PauseTiming();
    const bool captures = session.Ws.mode == Mode::Graphize;
    session.Step(ModeStep{captures ? Mode::BlockTest : Mode::Graphize});
    const DocumentDelta delta = session.Past.TakeDelta();
    state.ResumeTiming();
    session.Kept.Append(session.Ws, delta);
  }
}
BENCHMARK(ChangedMode)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

/// All of a document with 32,767 points.
void WholeDocument(benchmark::State& state) {
  Session session(1000);
  session.CaptureUpTo(32'767);
  for (auto _ : state) session.Kept.Append(session.Ws, {.Anew = true, .Any = true, .Arrays = {}});
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
