// What is measured of work on a picture.

#include <algorithm>
#include <cmath>
#include <memory>

#include "bare_reads.h"
#include "finding_axes/find_surroundings.h"
#include "image_tools/picture_tools.h"
#include "page_files.h"
#include "performance/measure.h"
#include "reading/read_curve.h"
#include "support/extraction_records.h"
#include "support/quiet_desktop.h"
#include "tracing/curve_tracer.h"
#include "tracing/scan.h"

namespace graphize {

namespace {

using test::ExtractionRecords;

/// What the compiler may not leave out.
volatile std::size_t seen = 0;

Desktop WithEscape(const std::function<bool()>& held) {
  Desktop desktop = test::QuietDesktop();
  desktop.EscapeHeld = held;
  return desktop;
}

void WriteScan() {
  ExtractionRecords records(SpeckledPage(100));
  records.Control.Xrange = records.Control.Yrange = "1";
  records.CapturePressed = false;  // captured points are bounded by the list's size
  const ScanRectangle all{false, -2, -2, records.Image.Width() + 1, records.Image.Height() + 1};
  const auto scan = [&](const std::function<bool()>& held) {
    const Desktop desktop = WithEscape(held);
    const double seconds = Seconds([&] { Scan(records.With(desktop), all); });
    ClearMarks(records.Image);
    return seconds;
  };
  const Compared times = Compare(
      15, [&] { return scan([] { return false; }); },
      [&] {
        return Seconds([&] {
          const Raster& pixels = records.Image.Pixels;
          seen = static_cast<std::size_t>(
              std::count_if(pixels.Pixels(), pixels.Pixels() + pixels.PixelCount(), IsBlackPixel));
        });
      });
  WriteRow("scan at step 1, 1 pixel in 100 black", "reading the page once", times, 1.5);
  WriteRow("Escape in a scan", "", "", 1000 * LongestEscape(20, scan), 50, " ms");
}

void WriteTrace() {
  ExtractionRecords records(WideCurve());
  const auto ink = InkOf(records.Image);
  records.Check(true, false, false);
  const auto trace = [&](const std::function<bool()>& held) {
    const Desktop desktop = WithEscape(held);
    const double seconds = Seconds([&] { TraceNew(records.With(desktop), 0, 1000); });
    ClearMarks(records.Image);
    records.Store = {};
    return seconds;
  };
  const Compared times = Compare(
      101, [&] { return trace([] { return false; }); },
      [&] {
        return Seconds(
            [&] { seen = static_cast<std::size_t>(ReadBarely(records.Image, ink).Reads); });
      });
  WriteRow("trace with capture, linear axes", "its reads of pixels alone", times, 2);
  WriteRow("Escape in a trace", "", "", 1000 * LongestEscape(20, trace), 50, " ms");
}

/// As a scan in grey is: eight shades each of paper and ink.
Raster GreyPage() {
  Raster page = DrawPage(0xfff0f0f0u, 0xff202020u);
  std::uint32_t random = 1;
  for (std::size_t i = 0; i < page.PixelCount(); ++i) {
    random = random * 1664525u + 1013904223u;
    page.Pixels()[i] += (random >> 29) * 0x010101u;
  }
  return page;
}

void WriteTools() {
  const Raster page = GreyPage();
  const std::size_t memory = 4 * sizeof(std::uint32_t) * page.PixelCount();
  const auto copy = [&] {
    FindMemory(memory);
    return Seconds([&] {
      const auto pixels = std::make_unique_for_overwrite<std::uint32_t[]>(page.PixelCount());
      std::copy_n(page.Pixels(), page.PixelCount(), pixels.get());
      seen = pixels[page.PixelCount() / 2];
    });
  };
  const auto run = [&](PictureTool tool, int amount, const std::function<bool()>& held) {
    const PictureProgress progress = [&](int) { return !held(); };
    return Seconds([&] {
      const auto palette = QueryPalette(page, progress);
      auto result = RunTool(tool, amount, page, palette ? &*palette : nullptr, progress);
      if (result && palette && tool == PictureTool::Rotate)
        ReduceDepth(*result, *palette, progress);
      seen = result ? result->PixelCount() : 0;
    });
  };
  struct Case {
    const char* Words;
    PictureTool Tool;
    int Amount;
  };
  double escape = 0;
  for (const auto& [words, tool, amount] :
       {Case{"resize 139 megapixels grey to 150 %", PictureTool::Resize, 150},
        Case{"rotate them by 3 degrees", PictureTool::Rotate, 3}}) {
    WriteRow(words, "a bare copy into new memory",
             Compare(
                 5,
                 [&] {
                   FindMemory(memory);
                   return run(tool, amount, [] { return false; });
                 },
                 copy),
             2.5);
  }
  for (int tool = 0; tool < kPictureTools; ++tool)
    escape = std::max(escape, LongestEscape(
                                  6,
                                  [&](const std::function<bool()>& held) {
                                    constexpr int kAmounts[] = {5, 5, 0, 5, 5, 150, 150, 3};
                                    run(static_cast<PictureTool>(tool), kAmounts[tool], held);
                                  },
                                  memory));
  WriteRow("Escape in any image tool", "", "", 1000 * escape, 50, " ms");
}

/// Of a curve among others and a grid of its ink.
void WriteReading() {
  const Raster page = DrawPage(kWhitePixel, 0xff2040a0u);
  const ReadingRequest request{.X = 4500, .Y = kPageHeight / 2 + 5000 * std::sin(5.0)};
  const auto read = [&](const std::function<bool()>& held) {
    const PictureProgress progress = [&](int) { return !held(); };
    const CurveReading reading = RunBeside(progress, [&](PictureOperation& operation) {
      const PlotSurroundings around = FindSurroundings(page, operation);
      return ReadCurve(page, FrameOf({}, page.Width(), page.Height()), around, request, operation);
    });
    seen = reading.Points.size();
  };
  WriteRow("Escape in a reading", "", "", 1000 * LongestEscape(10, read), 50, " ms");
}

}  // namespace

void WriteWorkRows() {
  WriteScan();
  WriteTrace();
  WriteTools();
  WriteReading();
}

}  // namespace graphize
