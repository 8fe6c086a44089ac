#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

#include "commands/do.h"
#include "commands/replay.h"
#include "session/history.h"
#include "support/quiet_desktop.h"

namespace graphize {

/// A square page with one curve of 3 pixels, its axes, the mode for capturing, and a history.
struct SessionPage {
  Workspace Ws;
  Desktop Quiet = test::QuietDesktop();
  History Past;

  explicit SessionPage(int side) {
    const auto inHand = std::make_shared<PictureInHand>();
    inHand->Picture = Raster::Filled(side, side, kWhitePixel);
    for (int x = kMargin; x < side - kMargin; ++x)
      for (int i = 0; i < 3; ++i) inHand->Picture.Row(CurveRow(side, x) + i)[x] = kBlackPixel;
    StartReplay(Ws);
    Past.Begin(Ws);
    const auto far = static_cast<float>(side - kMargin / 2), near = kMargin / 2.0f;
    Step(OpenStep{.InHand = inHand});
    Step(ModeStep{Mode::AxisDef});
    Step(AxisStep{0, near, far, "0", "0"});
    Step(AxisStep{1, far, far, "10", "0"});
    Step(AxisStep{2, near, near, "0", "10"});
    Step(ModeStep{Mode::Graphize});
  }

  static constexpr int kMargin = 200;  // pixels to either side of the curve
  /// Its upper row there.
  static int CurveRow(int side, int column) {
    return side / 2 + static_cast<int>(side / 12.0 * std::sin(column / 900.0));
  }

  void Step(graphize::Step step) {
    Do(Ws, Quiet, std::move(step));
    Past.Commit(Ws);
  }
  /// Until there are so many points.
  void CaptureUpTo(std::int64_t points) {
    while (Ws.store.CaptureCount < points) CaptureOne();
  }
  void CaptureOne() { Step(PointStep{static_cast<float>(Ws.store.CaptureCount % 900), 300}); }
};

}  // namespace graphize
