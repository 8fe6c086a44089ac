// What undo and redo cost on a page of 140 megapixels: 11,800 x 11,800 pixels.

#include <benchmark/benchmark.h>

#include "session_page.h"

namespace graphize {
namespace {

constexpr int kSide = 11'800;

/// A command that changed nothing: what every move of the pointer costs.
void CommitNothing(benchmark::State& state) {
  SessionPage page(kSide);
  page.CaptureUpTo(state.range(0));
  for (auto _ : state) page.Past.Commit(page.Ws);
}
BENCHMARK(CommitNothing)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

void CommitCapture(benchmark::State& state) {
  SessionPage page(kSide);
  page.CaptureUpTo(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    page.Past.Undo(page.Ws);
    Do(page.Ws, page.Quiet, PointStep{20, 300});
    state.ResumeTiming();
    page.Past.Commit(page.Ws);
  }
  state.counters["bytes"] =
      static_cast<double>(page.Past.Bytes()) / static_cast<double>(page.Past.Size());
}
BENCHMARK(CommitCapture)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

/// Back and forth over the last entry: per iteration an undo and a redo.
void BackAndForth(benchmark::State& state, SessionPage& page) {
  for (auto _ : state) {
    page.Past.Undo(page.Ws);
    page.Past.Redo(page.Ws);
  }
}

void UndoRedoCapture(benchmark::State& state) {
  SessionPage page(kSide);
  page.CaptureUpTo(1000);
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoCapture)->Unit(benchmark::kMicrosecond);

void UndoRedoTrace(benchmark::State& state) {
  SessionPage page(kSide);
  constexpr int kStart = SessionPage::kMargin;
  page.Step(TraceStep{kStart, static_cast<float>(SessionPage::CurveRow(kSide, kStart)), {}});
  state.counters["points"] = page.Ws.store.CaptureCount;
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoTrace)->Unit(benchmark::kMicrosecond);

void UndoRedoImageTool(benchmark::State& state) {
  SessionPage page(kSide);
  page.Step(ImageToolStep{PictureTool::Negate, 0});
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoImageTool)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace graphize
