#include "tracing/running_trace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "base/run_time_error.h"
#include "support/extraction_records.h"
#include "support/quiet_desktop.h"
#include "support/trace_cases.h"
#include "tracing/curve_tracer.h"
#include "tracing/smooth_tracer.h"

namespace graphize::test {
namespace {

/// A wave of 600 columns, two rows thick.
PlotImage Wave() {
  Raster raster = Raster::Filled(600, 120, kWhitePixel);
  for (int x = 0; x < raster.Width(); ++x)
    for (int y = 0; y < 2; ++y)
      raster.Row(static_cast<int>(60 + 40 * std::sin(x / 60.0)) + y)[x] = kBlackPixel;
  PlotImage image;
  SetPicture(image, std::move(raster));
  return image;
}

/// What a trace leaves where a message, an error or its end shows it.
auto Left(const ExtractionRecords& records) {
  const PointStore& store = records.Store;
  return std::tuple(records.Captured(), store.CurrentX, store.CurrentY, store.CurrentPlace.Column,
                    store.CurrentPlace.Row, store.LastPixelX, store.LastPixelY,
                    records.Cursor.ErrorX, records.Cursor.PlotX, records.Cursor.PlotY,
                    records.View.X, records.View.Y, records.Image.Marks, records.Image.Dirty.Right,
                    records.Image.Dirty.Top);
}

TEST(RunningTrace, PointsThatWaitAreLikePointsCapturedOneByOne) {
  struct Case {
    const char* Name;
    int Room;
    float EndX;    // the value 200 pixels from the origin
    int Captured;  // of three in each column
    bool Fails;
  };
  constexpr float kLargest = std::numeric_limits<float>::max();
  for (const auto& [name, room, endX, captured, fails] :
       {Case{"to the end", 32767, 200, 0, false}, Case{"no room", 0, 200, 0, false},
        Case{"room for less than is looked at at once", 100, 200, 100, false},
        Case{"room for more", 1001, 200, 1001, false},
        Case{"no values from column 301 on", 32767, kLargest / 1.5f, 903, true},
        Case{"nor room", 903, kLargest / 1.5f, 903, true},
        Case{"no room before", 902, kLargest / 1.5f, 902, false}}) {
    for (const Tracer tracer : {static_cast<Tracer>(TraceNew), static_cast<Tracer>(TraceSmooth)}) {
      const auto run = [&](bool oneByOne, bool percent) {
        ExtractionRecords records(Wave());
        records.Check(true, true, true);
        records.Cursor.Percent = percent;
        records.Options.RefreshList = oneByOne ? -1 : 0;
        records.Store.MaxPoints = static_cast<std::int16_t>(room);
        records.Calibration.ValueX[1] = endX;
        records.Calibration.XAxisLength = 200;
        records.View = {.X = 0, .Y = 0, .Width = 150, .Height = 60};
        ResetScrBars(records.View, records.Image.Width(), records.Image.Height());
        Desktop desktop = QuietDesktop();
        decltype(Left(records)) told;
        desktop.ShowMessage = [&](const Message&) {
          told = Left(records);
          return Answer::Ok;
        };
        if (fails)
          EXPECT_THROW(tracer(records.With(desktop), 0, 60), RunTimeError) << name;
        else
          tracer(records.With(desktop), 0, 60);
        if (captured > 0) {
          EXPECT_EQ(records.Store.CaptureCount, captured) << name;
          EXPECT_EQ(records.Image.Marks.size(), static_cast<std::size_t>(captured) + 1) << name;
        }
        return std::pair(Left(records), told);
      };
      for (const bool percent : {false, true}) {
        EXPECT_EQ(run(false, percent), run(true, percent)) << name;
      }
    }
  }
}

}  // namespace
}  // namespace graphize::test
