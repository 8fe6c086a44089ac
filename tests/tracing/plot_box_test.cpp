#include "tracing/plot_box.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/calibrated.h"
#include "support/extraction_records.h"
#include "support/plot_drawing.h"
#include "support/scripted_desktop.h"
#include "tracing/curve_tracer.h"
#include "tracing/scan.h"
#include "tracing/smooth_tracer.h"

namespace graphize::test {
namespace {

constexpr int kWidth = 500, kHeight = 360;

/// Axis points at (u, v), at (uEnd, v) and at (u, vEnd), with these values.
AxisCalibration PointsAt(const PlotDrawing& drawing, double u, double v, double uEnd, double vEnd) {
  const auto point = [&](double across, double up) {
    const PixelPosition at = drawing.Place(across, up);
    return std::pair(ToInt32(at.X), kHeight - ToInt32(at.Y));
  };
  const auto text = [](double value) { return ShortestText(static_cast<float>(value)); };
  const auto [ox, oy] = point(u, v);
  const auto [xx, xy] = point(uEnd, v);
  const auto [yx, yy] = point(u, vEnd);
  const std::string values[] = {text(u), text(v), text(uEnd), text(vEnd)};
  return Calibrate({{{ox, oy, values[0].c_str(), values[1].c_str()},
                     {xx, xy, values[2].c_str(), values[1].c_str()},
                     {yx, yy, values[0].c_str(), values[3].c_str()}}});
}

TEST(PlotBox, TracesAndScansEndAtTheFrameOrWhereTheAxesEnd) {
  const auto frame = [](PlotDrawing& drawing) { drawing.Frame({.Thickness = 2}, 5, 8); };
  const auto inwards = [](PlotDrawing& drawing) {
    drawing.Frame({.Thickness = 3}, 5, -8);
    drawing.LinesAtU(Linear(4), {});
    drawing.LinesAtV(Linear(4), {});
  };
  const auto axes = [](PlotDrawing& drawing) {
    drawing.Polyline({drawing.Place(0, 1), drawing.Place(0, 0), drawing.Place(1, 0)}, {});
  };
  const auto crossed = [](PlotDrawing& drawing) {
    drawing.Polyline({drawing.Place(0, 0.4), drawing.Place(1, 0.4)}, {});
    drawing.Polyline({drawing.Place(0.3, 0), drawing.Place(0.3, 1)}, {});
  };
  const auto nothing = [](PlotDrawing&) {};
  // The plot, its axis points, and the greatest u and v that lie inside of it.
  const struct {
    const char* Name;
    void (*Draw)(PlotDrawing&);
    double U, V, UEnd, VEnd, Right, Top;
  } cases[] = {{"frame", frame, 0, 0, 1, 1, 1, 1},
               {"frame, points within", frame, 0.2, 0.3, 0.8, 0.7, 1, 1},
               {"grid", inwards, 0, 0, 0.75, 0.5, 1, 1},
               {"two axes", axes, 0, 0, 0.8, 0.8, 1, 1},
               {"crossed axes", crossed, 0.3, 0.4, 0.9, 0.9, 1, 1},
               {"nothing drawn", nothing, 0, 0, 0.7, 0.6, 0.7, 0.6}};
  for (const auto& c : cases) {
    for (const double degrees : {0.0, 3.0, -7.0}) {
      PlotDrawing drawing(kWidth, kHeight, 60, 50, 440, 310, degrees);
      c.Draw(drawing);
      // On, to what stands beside the plot.
      drawing.Polyline({drawing.Place(0.05, 0.55), drawing.Place(1.09, 0.55)}, {});
      drawing.Polyline({drawing.Place(0.45, 0.55), drawing.Place(0.45, 1.15)}, {});
      const AxisCalibration calibration = PointsAt(drawing, c.U, c.V, c.UEnd, c.VEnd);
      for (const int way : {0, 1, 2}) {
        const auto run = [&](bool inside, int x, int y) {
          const ScriptedDesktop desktop;
          PlotImage image;
          SetPicture(image, drawing.Picture());
          ExtractionRecords records(std::move(image));
          records.Calibration = calibration;
          records.Control.InsideAxes = inside;
          records.Control.Xrange = records.Control.Yrange = "1";
          const ExtractionContext context = records.With(desktop);
          if (way == 2)
            Scan(context, {.Left = -2, .Top = -2, .Right = kWidth + 2, .Bottom = kHeight + 2});
          else
            (way == 0 ? TraceNew : TraceSmooth)(context, static_cast<float>(x),
                                                static_cast<float>(y));
          return records;
        };
        const PixelPosition start = drawing.Place(0.5, 0.55);
        const ExtractionRecords found = run(true, ToInt32(start.X), ToInt32(start.Y));
        const PointStore& store = found.Store;
        const std::string name = std::string(c.Name) + ' ' + std::to_string(degrees) + ' ' +
                                 std::to_string(way) + ' ' + found.Status.Status;
        ASSERT_GT(store.CaptureCount, 50) << name;
        const auto ends = [&](const std::vector<float>& values) {
          const auto first = values.begin() + 1;
          const auto [least, most] = std::minmax_element(first, first + store.CaptureCount);
          return std::pair(*least, *most);
        };
        const double u = 1.0 / 380, v = 1.0 / 260;
        const bool open = c.Draw != frame && c.Draw != inwards;  // no line ends it there
        EXPECT_LT(ends(store.CaptureX).second, c.Right + (open ? 1.6 * u : -0.4 * u)) << name;
        EXPECT_GT(ends(store.CaptureX).second, c.Right - 7 * u) << name;
        if (way == 2) {
          EXPECT_LT(ends(store.CaptureY).second, c.Top + (open ? 1.6 * v : -0.4 * v)) << name;
          EXPECT_GT(ends(store.CaptureY).second, c.Top - 7 * v) << name;
          const float leftmost = ends(store.CaptureX).first;
          EXPECT_TRUE(open || leftmost > 0.4 * u) << name << leftmost;
          EXPECT_GT(run(false, 0, 0).Store.CaptureCount, store.CaptureCount) << name;
        } else {
          const PixelPosition beside = drawing.Place(1.05, 0.55);
          const auto outside = run(true, ToInt32(beside.X), ToInt32(beside.Y));
          EXPECT_EQ(outside.Store.CaptureCount, 0) << name;
          EXPECT_EQ(outside.Status.Status, kOnlyInside) << name;
        }
      }
    }
  }
}

}  // namespace
}  // namespace graphize::test
