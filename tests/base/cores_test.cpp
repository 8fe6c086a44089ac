#include "base/cores.h"

#include <gtest/gtest.h>

#include <sched.h>

namespace graphize {
namespace {

TEST(CoreCount, IsOfThoseThatTheProgramMayUse) {
  cpu_set_t all, one;
  ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
  EXPECT_EQ(CoreCount(), CPU_COUNT(&all));
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(CoreCount(), 1);
  EXPECT_EQ(sched_setaffinity(0, sizeof all, &all), 0);
}

}  // namespace
}  // namespace graphize
