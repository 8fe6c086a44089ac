#include "base/bit_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "grid/sheared_map.h"

namespace graphize {
namespace {

/// Random bits in clumps, so that runs of all lengths occur.
BitMap RandomMap(int width, int height, unsigned seed) {
  BitMap map(width, height);
  std::mt19937 random(seed);
  for (int x = 0; x < width; ++x) {
    bool black = false;
    for (int y = 0; y < height; ++y) {
      if (random() % 4 == 0) black = !black;
      if (black) map.Set(x, y);
    }
  }
  return map;
}

int CountBits(const BitMap& map) {
  int count = 0;
  for (int y = 0; y < map.Height(); ++y)
    for (int x = 0; x < map.WordsPerRow() * 64; ++x)
      count += ((map.Row(y)[x / 64] >> (x % 64)) & 1u) != 0 ? 1 : 0;
  return count;
}

TEST(BitMap, ReadsOutsideAreWhite) {
  BitMap map(70, 3);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 70; ++x) map.Set(x, y);
  for (const auto& [x, y] : {std::pair{-1, 0}, {70, 0}, {0, -1}, {0, 3}, {127, 1}})
    EXPECT_FALSE(map.Get(x, y)) << x << ' ' << y;
  map.Clear(69, 2);
  EXPECT_FALSE(map.Get(69, 2));
  EXPECT_EQ(CountBits(map), 3 * 70 - 1);
}

TEST(BitMap, TransposeExchangesRowsAndColumns) {
  std::mt19937_64 random(5);
  std::uint64_t words[64], turned[64];
  for (int i = 0; i < 64; ++i) turned[i] = words[i] = random();
  Transpose64(turned);
  for (int i = 0; i < 64; ++i)
    for (int j = 0; j < 64; ++j)
      ASSERT_EQ((turned[i] >> j) & 1u, (words[j] >> i) & 1u) << i << ' ' << j;
}

TEST(BitMap, ThinRunsAreTheVerticalRunsOfAtMostTheThickness) {
  for (const int height : {1, 2, 7, 60}) {
    const BitMap map = RandomMap(130, height, static_cast<unsigned>(height));
    for (const int thickness : {1, 2, 3, 6, 24}) {
      const BitMap thin = ThinRuns(map, thickness);
      for (int x = 0; x < map.Width(); ++x) {
        for (int y = 0; y < height;) {
          int end = y;
          while (map.Get(x, end)) ++end;
          for (int i = y; i < end; ++i)
            ASSERT_EQ(thin.Get(x, i), end - y <= thickness) << x << ' ' << i;
          y = end + 1;
        }
      }
      EXPECT_LE(CountBits(thin), CountBits(map));
    }
  }
}

TEST(ShearedMap, MovesEveryBitToWhereItSays) {
  const BitMap map = RandomMap(150, 90, 3);
  for (const double slope : {0.0, 0.01, -0.03, 0.4, -1.0, 1.0}) {
    const ShearedMap level = ShearMap(map, slope);
    EXPECT_EQ(CountBits(level.Bits), CountBits(map)) << slope;
    for (int y = 0; y < map.Height(); ++y) {
      for (int x = 0; x < map.Width(); ++x) {
        const MapPixel at = level.OfMap({x, y});
        ASSERT_EQ(level.Bits.Get(at.Column, at.Row), map.Get(x, y)) << slope;
        ASSERT_EQ(level.ColumnOfMap(at.Column, at.Row), x);
        ASSERT_NEAR(level.RowOfMap(x, at.Row), y, 0.51);
      }
    }
  }
}

TEST(ShearedMap, SlantingLinesBecomeLevelAndThoseAcrossUpright) {
  for (const double slope : {0.02, -0.05, 0.3}) {
    BitMap map(200, 200);
    const ShearedMap level = ShearMap(map, slope);
    const MapPixel start = level.OfMap({100, 100});
    for (int i = -60; i <= 60; ++i) {
      const int moved = static_cast<int>(std::lround(slope * i));
      EXPECT_NEAR(level.OfMap({100 + i, 100 + moved}).Row, start.Row, 1) << slope << ' ' << i;
      EXPECT_NEAR(level.OfMap({100 - moved, 100 + i}).Column, start.Column, 1.01)
          << slope << ' ' << i;
    }
  }
}

}  // namespace
}  // namespace graphize
