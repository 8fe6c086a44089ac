#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "raster/picture_operation.h"

namespace graphize {

/// One thread that runs jobs in the order in which they come: the owner of a library that only one
/// thread may call.
class WorkerThread {
 public:
  WorkerThread();
  ~WorkerThread() { End(std::chrono::seconds(2)); }
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  /// After the end nothing is taken any more.
  void Post(std::function<void()> job);

  /// Runs what has come and ends the thread. False when a job hangs beyond `patience`: it is left
  /// to itself then, and is a danger to whatever tears down what it works with.
  bool End(std::chrono::milliseconds patience);

 private:
  struct Queue;
  static void RunJobs(Queue& queue);

  std::shared_ptr<Queue> queue_;
  std::thread thread_;
};

/// Runs `work(PictureOperation&)` on `thread`, calls `progress` here meanwhile and returns the
/// result. Nothing after `progress` stopped it; work that does not end within `patience` then goes
/// on alone, and its result is dropped. Without a progress the caller waits.
template <class Work>
auto RunOn(WorkerThread& thread, const PictureProgress& progress,
           std::chrono::milliseconds patience, Work work)
    -> std::optional<decltype(work(std::declval<PictureOperation&>()))> {
  using Clock = std::chrono::steady_clock;
  using Result = decltype(work(std::declval<PictureOperation&>()));
  // Shared: work that is left behind still looks at it.
  const auto operation = std::make_shared<PictureOperation>();
  const auto task =
      std::make_shared<std::packaged_task<Result()>>([operation, work = std::move(work)] {
        return operation->Stopped ? Result() : work(*operation);
      });
  std::future<Result> result = task->get_future();
  thread.Post([task] { (*task)(); });
  struct StopOnThrow {
    PictureOperation& Running;
    ~StopOnThrow() { Running.Stopped = true; }
  } stop{*operation};
  Clock::time_point stoppedAt;
  while (progress && result.wait_for(kBetweenProgress) != std::future_status::ready) {
    if (operation->Stopped && Clock::now() - stoppedAt > patience) return std::nullopt;
    if (progress(operation->Percent) || operation->Stopped) continue;
    operation->Stopped = true;
    stoppedAt = Clock::now();
  }
  if (operation->Stopped) return std::nullopt;
  return result.get();
}

}  // namespace graphize
