#include "speed.h"

#include <algorithm>
#include <chrono>
#include <functional>

#include "bare_reads.h"
#include "support/extraction_records.h"
#include "support/quiet_desktop.h"
#include "tracing/curve_tracer.h"

namespace graphize::accuracy {

namespace {

/// The shortest of some runs, which nothing else on the machine has disturbed.
double ShortestSeconds(const std::function<void()>& prepare, const std::function<void()>& work) {
  double shortest = 1e9;
  for (int i = 0; i < 15; ++i) {
    prepare();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    shortest = std::min(shortest, time.count());
  }
  return shortest;
}

}  // namespace

double TraceTimePerBareReads() {
  test::ExtractionRecords records(WideCurve());
  records.Check(true, false, false);
  records.Options.RefreshList = 0;
  const Desktop desktop = test::QuietDesktop();
  const auto ink = InkOf(records.Image);
  volatile unsigned black = 0;
  const double bare = ShortestSeconds([] {}, [&] { black = ReadBarely(records.Image, ink).Black; });
  const double trace = ShortestSeconds(
      [&] {
        ClearMarks(records.Image);
        records.Store = {};
      },
      [&] { TraceNew(records.With(desktop), 0, 1000); });
  return trace / bare;
}

}  // namespace graphize::accuracy
