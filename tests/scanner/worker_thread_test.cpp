#include "scanner/worker_thread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <vector>

namespace graphize {
namespace {

using namespace std::chrono_literals;

const PictureProgress kGoOn = [](int) { return true; };

TEST(WorkerThread, RunsAllJobsInOrderOnOneThreadOfItsOwn) {
  std::vector<int> order;
  std::vector<std::thread::id> threads;
  {
    WorkerThread thread;
    for (int i = 0; i < 100; ++i)
      thread.Post([&, i] {
        order.push_back(i);
        threads.push_back(std::this_thread::get_id());
        if (i == 99) thread.Post([&] { order.push_back(100); });
      });
  }
  ASSERT_EQ(order.size(), 101u) << "none is forgotten at the end";
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  EXPECT_NE(threads.front(), std::this_thread::get_id());
  EXPECT_THAT(threads, testing::Each(threads.front()));
}

TEST(WorkerThread, TheCallerSeesProgressResultAndError) {
  WorkerThread thread;
  std::promise<void> seen;
  int last = 0;
  const auto result = RunOn(
      thread,
      [&](int percent) {
        if (percent == 40 && last != 40) seen.set_value();
        last = percent;
        return true;
      },
      1h,
      [&](PictureOperation& operation) {
        operation.Advance(0.4);
        seen.get_future().wait();
        return 7;
      });
  EXPECT_EQ(result, 7);
  EXPECT_EQ(RunOn(thread, {}, 0ms, [](PictureOperation&) { return 8; }), 8);
  for (const PictureProgress& progress : {kGoOn, PictureProgress()})
    EXPECT_THROW(
        RunOn(thread, progress, 1h, [](PictureOperation&) -> int { throw RunTimeError("no"); }),
        RunTimeError);
}

TEST(WorkerThread, AStopIsWaitedForUntilPatienceEnds) {
  WorkerThread thread;
  std::atomic<bool> began = false;
  const PictureProgress stopOnceBegun = [&began](int) { return !began; };
  bool heard = false;
  const auto obedient = [&](PictureOperation& operation) {
    began = true;
    while (!operation.Stopped) std::this_thread::sleep_for(1ms);
    heard = true;
    return 1;
  };
  EXPECT_EQ(RunOn(thread, stopOnceBegun, 1h, obedient), std::nullopt);
  EXPECT_TRUE(heard);

  // Work that does not hear is left behind. What was asked of the thread since, and given up
  // before it began, does not begin any more.
  std::promise<void> release;
  began = false;
  EXPECT_EQ(RunOn(thread, stopOnceBegun, 0ms,
                  [&began, deaf = release.get_future().share()](PictureOperation&) {
                    began = true;
                    deaf.wait();
                    return 1;
                  }),
            std::nullopt);
  bool beganLate = false;
  EXPECT_EQ(RunOn(thread, stopOnceBegun, 0ms,
                  [&beganLate](PictureOperation&) { return beganLate = true; }),
            std::nullopt);
  release.set_value();
  EXPECT_EQ(RunOn(thread, kGoOn, 1h, [](PictureOperation&) { return 2; }), 2);
  EXPECT_FALSE(beganLate);
}

TEST(WorkerThread, TheEndLeavesAJobThatHangsBehind) {
  WorkerThread thread;
  std::promise<void> release;
  thread.Post([deaf = release.get_future().share()] { deaf.wait(); });
  EXPECT_FALSE(thread.End(0ms));
  release.set_value();
  EXPECT_TRUE(thread.End(1h));
}

}  // namespace
}  // namespace graphize
