#pragma once

#include <algorithm>
#include <atomic>
#include <future>
#include <optional>
#include <utility>
#include <vector>

#include "base/cores.h"
#include "base/free_beside.h"
#include "base/raster.h"
#include "base/start_beside.h"
#include "raster/picture_operation.h"

namespace graphize {

/// Calls `work(first, end)` for bands of rows that make up 0 to `rows`, on as many threads as there
/// are processors, or the system gives. The operation is told how far it is and stops between two
/// bands, which are a few milliseconds of work. False when it was stopped.
template <class Work>
bool ParallelRows(int width, int rows, PictureOperation& operation, const Work& work) {
  constexpr int kBandPixels = 1 << 18;
  const int bandRows = std::max(kBandPixels / std::max(width, 1), 1);
  const int bands = (rows + bandRows - 1) / bandRows;
  std::atomic<int> taken = 0, done = 0;
  const auto run = [&](bool reports) {
    for (int band; !operation.Stopped && (band = taken++) < bands;) {
      work(band * bandRows, std::min((band + 1) * bandRows, rows));
      ++done;
      // Only one thread: progress never goes back.
      if (reports) operation.Advance(static_cast<double>(done) / bands);
    }
  };
  std::vector<std::future<void>> helpers;
  const int threads = std::min(CoreCount(), bands);
  for (int i = 1; i < threads; ++i) helpers.push_back(StartBeside([&run] { run(false); }));
  run(true);
  for (std::future<void>& helper : helpers) helper.get();
  if (operation.Stopped) return false;
  operation.Advance(1);  // the last band may have been another thread's
  return true;
}

/// A raster of which `fill(raster, first, end)` makes the rows, by ParallelRows. Nothing when the
/// operation was stopped.
template <class Fill>
std::optional<Raster> RasterByRows(int width, int height, PictureOperation& operation,
                                   const Fill& fill) {
  Raster raster(width, height);
  if (ParallelRows(width, height, operation, [&](int first, int end) { fill(raster, first, end); }))
    return raster;
  FreeBeside(std::move(raster));
  return std::nullopt;
}

}  // namespace graphize
