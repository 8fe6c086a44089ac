#include "reading/stroke_samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace graphize {
namespace {

/// A wave with steep flanks, lines of its ink across it, and patches that hide it.
InkMap Wave(bool isHard) {
  InkMap map{600, 300, SparseBytes(std::size_t{600} * 300)};
  const auto middle = [](double x) { return 150 + 120 * std::sin(x / 25); };
  for (int x = 0; x < map.Width; ++x)
    for (int y = 0; y < map.Height; ++y) {
      const double slope = 120.0 / 25 * std::cos(x / 25.0);
      const double away = std::fabs(y - middle(x)) / std::hypot(1, slope);
      const double share = isHard ? (away < 2 ? 1 : 0) : std::clamp(2.5 - away, 0.0, 1.0);
      map.Cell(x, y) = static_cast<std::uint8_t>(share * InkMap::kFull);
      if (x % 97 == 0 || y % 83 == 0) map.Cell(x, y) = InkMap::kFull;
      if (x % 131 < 3) map.Cell(x, y) = InkMap::kHidden;
    }
  return map;
}

TEST(SampledPath, PartsThatChangedAreSampledAsIfAllWere) {
  for (const bool isHard : {false, true}) {
    const InkMap map = Wave(isHard);
    const auto path = FindPath(map, {20, 237}, kSolidStroke, {}, PictureOperation());
    ASSERT_GT(path.size(), 600u);
    const StrokeKind kind{4, isHard, false};
    SampledPath sampled(map, path, kind);
    std::mt19937 random(1);
    const auto below = [&](std::size_t end) { return random() % end; };
    for (int round = 0; round < 300; ++round) {
      // Some pixels up or down, left out or doubled; often near an end, or all to the end.
      const std::vector<PathPixel> now = sampled.Path();
      const std::size_t first = below(now.size() + 1);
      const std::size_t end = round % 7 == 0 ? now.size() : std::min(first + below(60), now.size());
      std::vector<PathPixel> pixels;
      const int by = static_cast<int>(below(7)) - 3;
      for (std::size_t i = first; i < end; ++i) {
        if (below(12) == 0) continue;
        pixels.push_back({now[i].X, now[i].Y + by});
        if (below(12) == 0) pixels.push_back({now[i].X, now[i].Y + by + 1});
      }
      sampled.Exchange(first, end, pixels);
      std::vector<PathPixel> wanted(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(first));
      wanted.insert(wanted.end(), pixels.begin(), pixels.end());
      wanted.insert(wanted.end(), now.begin() + static_cast<std::ptrdiff_t>(end), now.end());
      ASSERT_EQ(sampled.Path(), wanted);
      if (wanted.empty()) break;
      ASSERT_EQ(sampled.Samples(), SamplesOf(map, wanted, kind)) << round << ' ' << isHard;
    }
  }
}

}  // namespace
}  // namespace graphize
