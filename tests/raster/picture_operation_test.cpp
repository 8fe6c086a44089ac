#include "raster/picture_operation.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace graphize {
namespace {

TEST(PictureOperation, TheWorkGoesOnBesideUntilItHearsThatItIsToStop) {
  int calls = 0;
  const auto here = std::this_thread::get_id();
  const bool stopped = RunBeside(
      [&](int percent) {
        EXPECT_EQ(std::this_thread::get_id(), here);
        return percent != 25 || ++calls < 3;
      },
      [&](PictureOperation& operation) {
        EXPECT_NE(std::this_thread::get_id(), here);
        operation.Advance(0.25);
        while (!operation.Stopped) std::this_thread::yield();
        return true;
      });
  EXPECT_TRUE(stopped);
  EXPECT_GE(calls, 3);
}

TEST(PictureOperation, WithoutAProgressTheWorkRunsHere) {
  const auto here = std::this_thread::get_id();
  EXPECT_EQ(RunBeside({}, [](PictureOperation&) { return std::this_thread::get_id(); }), here);
}

TEST(PictureOperation, ErrorsPassAndEndTheWork) {
  const auto fails = [](PictureOperation&) -> int { throw RunTimeError("broken"); };
  EXPECT_THROW(RunBeside([](int) { return true; }, fails), RunTimeError);
  EXPECT_THROW(RunBeside({}, fails), RunTimeError);
  bool ended = false;
  const auto endless = [&](PictureOperation& operation) {
    while (!operation.Stopped) std::this_thread::yield();
    ended = true;
    return 0;
  };
  EXPECT_THROW(RunBeside([](int) -> bool { throw std::logic_error("window"); }, endless),
               std::logic_error);
  EXPECT_TRUE(ended);
}

TEST(PictureOperation, ProgressNeverGoesBackAndStaysInItsStretch) {
  PictureOperation operation;
  operation.To = 0.5;
  std::vector<int> percents;
  for (double part : {0.5, 0.2, 7.0, -1.0}) {
    operation.Advance(part);
    percents.push_back(operation.Percent);
  }
  EXPECT_EQ(percents, (std::vector{25, 25, 50, 50}));
}

}  // namespace
}  // namespace graphize
