#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "batch/job.h"

namespace graphize {

/// A page that is done but for its files.
struct DonePage {
  std::size_t Job = 0;
  JobResult Result = {};
  std::string Error = {};
};

/// Has threads of its own finish pages: a disk takes longer than it works, and several in the time
/// of one. No more wait for them than there are threads.
class PagesToFinish {
 public:
  using Finish = std::function<void(DonePage&)>;

  /// `finish` is called by several threads and does not throw.
  PagesToFinish(std::size_t threads, Finish finish);
  /// Waits for all pages.
  ~PagesToFinish();
  PagesToFinish(const PagesToFinish&) = delete;
  PagesToFinish& operator=(const PagesToFinish&) = delete;

  /// Without any thread, the caller's finishes it. Where there is no memory, bad_alloc, and the
  /// page is not finished.
  void Add(DonePage page);

 private:
  void FinishThem();

  const Finish finish_;
  std::mutex mutex_;
  std::condition_variable hasPages_, hasRoom_;
  std::deque<DonePage> pages_;
  bool isEnded_ = false;
  std::vector<std::jthread> threads_;  // the last member: they end before the rest goes
};

}  // namespace graphize
