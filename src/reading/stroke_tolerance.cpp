#include "reading/stroke_tolerance.h"

#include <algorithm>
#include <cmath>

#include "base/median.h"

namespace graphize {

namespace {

bool AreNeighbours(const StrokeSample& a, const StrokeSample& b) {
  return a.AlongRow == b.AlongRow && a.IsSeen && b.IsSeen && std::abs(a.At - b.At) == 1;
}

}  // namespace

Tolerance ToleranceOf(const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  std::vector<double> thirds;
  for (std::size_t i = 3; i < samples.size(); ++i) {
    bool whole = true;
    for (std::size_t k = i - 2; k <= i; ++k)
      whole = whole && AreNeighbours(samples[k - 1], samples[k]);
    if (!whole) continue;
    const double cosine = 1 / std::sqrt(1 + samples[i].Slope * samples[i].Slope);
    const auto f = [&](std::size_t back) { return samples[i - back].Middle; };
    thirds.push_back(std::fabs(f(0) - 3 * f(1) + 3 * f(2) - f(3)) * cosine);
  }
  if (thirds.empty()) return {0.1, 0.3, false};
  const double noise = std::max(Median(thirds) / (0.6745 * std::sqrt(20.0)), 0.012);
  // Swings up and down of more than the raster's.
  constexpr double kSwing = 2.5;
  int turns = 0;
  double way = 0, extreme = samples.front().Y(), left = samples.front().X(), right = left;
  for (const StrokeSample& sample : samples) {
    left = std::min(left, sample.X());
    right = std::max(right, sample.X());
    const double step = sample.Y() - extreme;
    if (way == 0 ? std::fabs(step) >= kSwing : step * way <= -kSwing) {
      turns += way == 0 ? 0 : 1;
      way = step > 0 ? 1 : -1;
      extreme = sample.Y();
    } else if (step * way > 0) {
      extreme = sample.Y();
    }
  }
  const bool isData = turns > 8 && 1000 * turns > 45 * (right - left);
  if (kind.IsHard) return {0.31, 0.62, isData};
  return {1.35 * noise + 0.006, 3.8 * noise + 0.03, isData};
}

}  // namespace graphize
