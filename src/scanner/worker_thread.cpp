#include "scanner/worker_thread.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace graphize {

struct WorkerThread::Queue {
  std::mutex Mutex;
  std::condition_variable Changed;
  std::deque<std::function<void()>> Jobs;
  bool Ending = false, Ended = false;
};

WorkerThread::WorkerThread() : queue_(std::make_shared<Queue>()) {
  thread_ = std::thread([queue = queue_] { RunJobs(*queue); });
}

bool WorkerThread::End(std::chrono::milliseconds patience) {
  std::unique_lock lock(queue_->Mutex);
  queue_->Ending = true;
  queue_->Changed.notify_all();
  const bool ended = queue_->Changed.wait_for(lock, patience, [this] { return queue_->Ended; });
  lock.unlock();
  if (thread_.joinable()) ended ? thread_.join() : thread_.detach();
  return ended;
}

void WorkerThread::Post(std::function<void()> job) {
  const std::lock_guard lock(queue_->Mutex);
  if (queue_->Ended) return;
  queue_->Jobs.push_back(std::move(job));
  queue_->Changed.notify_all();
}

void WorkerThread::RunJobs(Queue& queue) {
  std::unique_lock lock(queue.Mutex);
  for (;;) {
    queue.Changed.wait(lock, [&] { return queue.Ending || !queue.Jobs.empty(); });
    if (queue.Jobs.empty()) break;
    {
      const std::function<void()> job = std::move(queue.Jobs.front());
      queue.Jobs.pop_front();
      lock.unlock();
      job();
    }  // what the job held goes outside the lock, too: it may post
    lock.lock();
  }
  queue.Ended = true;
  queue.Changed.notify_all();
}

}  // namespace graphize
