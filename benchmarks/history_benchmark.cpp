// What undo and redo cost on a page of 140 megapixels: 11,800 x 11,800 pixels.

#include "session/history.h"

#include <benchmark/benchmark.h>

#include <cmath>

#include "calibration/axis_calibration.h"
#include "workspace/do.h"
#include "workspace/plot_mouse.h"
#include "workspace/replay.h"

namespace graphize {
namespace {

constexpr int kSide = 11'800;

Desktop QuietDesktop() {
  Desktop desktop;
  desktop.ShowMessage = [](const Message&) { return Answer::Ok; };
  desktop.ShowNow = desktop.Pump = [] {};
  desktop.EscapeHeld = [] { return false; };
  return desktop;
}

/// A page with one curve, its axes and the mode for capturing.
struct Page {
  Workspace Ws;
  Desktop Quiet = QuietDesktop();
  History Past;

  Page() {
    StartReplay(Ws);
    const auto inHand = std::make_shared<PictureInHand>();
    inHand->Picture = Raster::Filled(kSide, kSide, kWhitePixel);
    for (int x = 200; x < kSide - 200; ++x)
      for (int i = 0; i < 3; ++i)
        inHand->Picture.Row(kSide / 2 + i + static_cast<int>(1000 * std::sin(x / 900.0)))[x] =
            kBlackPixel;
    Past.Begin(Ws);
    Step(OpenStep{.InHand = inHand});
    Step(ModeStep{Mode::AxisDef});
    Step(AxisStep{0, 100, kSide - 100, "0", "0"});
    Step(AxisStep{1, kSide - 100, kSide - 100, "10", "0"});
    Step(AxisStep{2, 100, 100, "0", "10"});
    Step(ModeStep{Mode::Graphize});
  }

  void Step(graphize::Step step) {
    Do(Ws, Quiet, std::move(step));
    Past.Commit(Ws);
  }
};

/// With this many points in the store.
void Capture(Page& page, std::int64_t points) {
  while (page.Ws.store.CaptureCount < points)
    page.Step(PointStep{static_cast<float>(page.Ws.store.CaptureCount % 9000), 300});
}

/// A command that changed nothing: what every move of the pointer costs.
void CommitNothing(benchmark::State& state) {
  Page page;
  Capture(page, state.range(0));
  for (auto _ : state) page.Past.Commit(page.Ws);
}
BENCHMARK(CommitNothing)->Arg(1000)->Arg(32000)->Unit(benchmark::kMicrosecond);

void CommitCapture(benchmark::State& state) {
  Page page;
  Capture(page, state.range(0));
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
void BackAndForth(benchmark::State& state, Page& page) {
  for (auto _ : state) {
    page.Past.Undo(page.Ws);
    page.Past.Redo(page.Ws);
  }
}

void UndoRedoCapture(benchmark::State& state) {
  Page page;
  Capture(page, 1000);
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoCapture)->Unit(benchmark::kMicrosecond);

void UndoRedoTrace(benchmark::State& state) {
  Page page;
  page.Step(TraceStep{200, kSide / 2 + 221, {}});
  state.counters["points"] = page.Ws.store.CaptureCount;
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoTrace)->Unit(benchmark::kMicrosecond);

void UndoRedoImageTool(benchmark::State& state) {
  Page page;
  page.Step(ImageToolStep{PictureTool::Negate, 0});
  BackAndForth(state, page);
}
BENCHMARK(UndoRedoImageTool)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace graphize
