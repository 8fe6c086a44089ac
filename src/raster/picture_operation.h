#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include "base/run_time_error.h"
#include "base/start_beside.h"
#include "base/translation.h"

namespace graphize {

/// Told how far the work is, 0 to 100 percent, every few hundredths of a second on the caller's own
/// thread, where it may pump; returns false to stop the work.
using PictureProgress = std::function<bool(int percent)>;
/// How long whoever waits for work beside waits at a time.
inline constexpr std::chrono::milliseconds kBetweenProgress{15};

/// Whether a piece of work is to stop. Counts how often the work looks, because how much is done
/// between two looks is how long Escape waits.
class StopFlag {
 public:
  StopFlag& operator=(bool stopped) {
    stopped_ = stopped;
    return *this;
  }
  operator bool() const {
    looks_.fetch_add(1, std::memory_order_relaxed);
    return stopped_;
  }
  int Looks() const { return looks_; }

 private:
  std::atomic<bool> stopped_ = false;
  mutable std::atomic<int> looks_ = 0;
};

/// A piece of work on a picture that shows how far it is, and that the caller can stop.
struct PictureOperation {
  std::atomic<int> Percent = 0;
  StopFlag Stopped;
  /// The stretch of the whole work, within 0 to 1, that Advance moves in now.
  double From = 0, To = 1;

  /// `part` of the present stretch is done, from 0 to 1. Never goes back: some coders pass twice.
  void Advance(double part) {
    const double whole = From + (To - From) * std::clamp(part, 0.0, 1.0);
    const int percent = static_cast<int>(100 * whole);
    if (percent > Percent) Percent = percent;
  }
};

/// Runs `work(PictureOperation&)` on a thread beside and calls `progress` here meanwhile, because
/// some coders say nothing for seconds. Until the work has heard that it is to stop, `progress`
/// goes on being called. Without a progress, or where the system gives no thread, the work runs
/// here.
template <class Work>
auto RunBeside(const PictureProgress& progress, const Work& work) {
  PictureOperation operation;
  if (!progress) return work(operation);
  auto result = StartBeside([&] { return work(operation); });
  struct StopOnThrow {  // the future waits for its thread
    PictureOperation& Running;
    ~StopOnThrow() { Running.Stopped = true; }
  } stop{operation};
  while (result.wait_for(kBetweenProgress) == std::future_status::timeout)
    if (!progress(operation.Percent)) operation.Stopped = true;
  return result.get();
}

/// Runs `work`; its errors get a sentence in front of their reason, with the file's name as its %1.
template <class Work>
auto NamingTheFile(const char* sentence, const std::filesystem::path& path, const Work& work) {
  const auto error = [&](const std::string& reason) {
    const std::string text = Tr(sentence, path.filename().string()) + "\r\n" + reason;
    return RunTimeError(text);
  };
  try {
    return work();
  } catch (const RunTimeError& reason) {
    throw error(reason.what());
  } catch (const std::bad_alloc&) {
    throw error(Tr("There is not enough memory."));
  }
}

/// What the system gives as its reason, when it gives one.
inline void ThrowSystemError(const std::error_code& failure) {
  if (failure) throw RunTimeError(failure.message() + '.');
}

}  // namespace graphize
