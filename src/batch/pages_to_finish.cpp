#include "batch/pages_to_finish.h"

#include <new>
#include <system_error>
#include <utility>

namespace graphize {

PagesToFinish::PagesToFinish(std::size_t threads, Finish finish) : finish_(std::move(finish)) {
  threads_.reserve(threads);
  try {
    while (threads_.size() < threads) threads_.emplace_back([this] { FinishThem(); });
  } catch (const std::system_error&) {
    // Those that the system gives finish all.
  } catch (const std::bad_alloc&) {
  }
}

PagesToFinish::~PagesToFinish() {
  {
    const std::scoped_lock lock(mutex_);
    isEnded_ = true;
  }
  hasPages_.notify_all();
}

void PagesToFinish::Add(DonePage page) {
  if (threads_.empty()) return finish_(page);
  {
    std::unique_lock lock(mutex_);
    hasRoom_.wait(lock, [this] { return pages_.size() < threads_.size(); });
    pages_.push_back(std::move(page));
  }
  hasPages_.notify_one();
}

void PagesToFinish::FinishThem() {
  while (true) {
    std::unique_lock lock(mutex_);
    hasPages_.wait(lock, [this] { return isEnded_ || !pages_.empty(); });
    if (pages_.empty()) return;
    DonePage page = std::move(pages_.front());
    pages_.pop_front();
    lock.unlock();
    hasRoom_.notify_one();
    finish_(page);
  }
}

}  // namespace graphize
