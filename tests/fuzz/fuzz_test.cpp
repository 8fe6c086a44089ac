// What each reader promises of any input, held for sound input and for some thousand broken ones;
// ./fuzz goes on from there.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "fuzz/targets.h"

namespace graphize::test {
namespace {

/// A few bytes other, gone, doubled or from another input.
std::string Broken(std::string input, const std::string& other, std::mt19937& random) {
  const auto pick = [&](std::size_t count) { return random() % std::max<std::size_t>(count, 1); };
  for (auto i = 1 + pick(4); i > 0; --i) {
    const std::size_t at = pick(input.size()), length = std::min(input.size() - at, pick(24));
    switch (pick(5)) {
      case 0:
        input.erase(at, length);
        break;
      case 1:
        input.insert(at, input.substr(at, length));
        break;
      case 2:
        input.insert(at, other.substr(pick(other.size()), length));
        break;
      default:
        if (!input.empty()) input[at] = static_cast<char>(random());
    }
  }
  return input;
}

class FuzzTest : public ::testing::TestWithParam<FuzzTarget> {};

TEST_P(FuzzTest, PromisesAreKept) {
  const std::vector<std::string> seeds = SeedsOf(GetParam());
  std::mt19937 random(20);
  for (const std::string& seed : seeds) EXPECT_TRUE(GetParam().Read(GetParam(), seed));
  for (int i = 0; i < 200; ++i) {
    const std::string& seed = seeds[random() % seeds.size()];
    GetParam().Read(GetParam(), Broken(seed, seeds[random() % seeds.size()], random));
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzTest, ::testing::ValuesIn(FuzzTargets()),
                         [](const auto& target) {
                           std::string name = target.param.Name;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace graphize::test
