#include "reading/stroke_crowds.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace graphize {

namespace {

/// Whether what crowds a sample is the stroke's own ink, because the way turns there, back or from
/// columns to rows: no clear ink is farther from the way than half a stroke and a pixel.
bool IsOwnTurn(const InkMap& map, const std::vector<PathPixel>& path, double width,
               const std::vector<StrokeSample>& samples, std::ptrdiff_t i) {
  constexpr std::ptrdiff_t kNear = 3;
  const StrokeSample& sample = samples[i];
  const StrokeSample& before = samples[std::max(i - kNear, std::ptrdiff_t{0})];
  const StrokeSample& behind = samples[std::min(i + kNear, std::ssize(samples) - 1)];
  const bool isEven = before.AlongRow == sample.AlongRow && behind.AlongRow == sample.AlongRow &&
                      (sample.At - before.At) * (behind.At - sample.At) > 0;
  if (isEven) return false;
  const int reach = 6 + static_cast<int>(std::lround(2 * width));
  const auto first = path.begin() + std::max(sample.Pixel - reach, 0);
  const auto last =
      path.begin() + std::min(sample.Pixel + reach + 1, static_cast<int>(path.size()));
  const double most = 0.5 * width + 1;
  for (const int step : {-1, 1})
    for (PathPixel at = path[static_cast<std::size_t>(sample.Pixel)]; map.Share(at.X, at.Y) > 0;
         (sample.AlongRow ? at.X : at.Y) += step)
      if (map.IsClear(at.X, at.Y) && std::none_of(first, last, [&](PathPixel own) {
            return std::hypot(own.X - at.X, own.Y - at.Y) <= most;
          }))
        return false;
  return true;
}

}  // namespace

void HideBesideCrowds(const InkMap& map, const std::vector<PathPixel>& path, double width,
                      std::vector<StrokeSample>& samples) {
  constexpr std::ptrdiff_t kBeside = 2;
  const auto count = static_cast<std::ptrdiff_t>(samples.size());
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    if (!samples[i].IsCrowded || IsOwnTurn(map, path, width, samples, i)) continue;
    for (std::ptrdiff_t k = std::max(i - kBeside, std::ptrdiff_t{0});
         k <= std::min(i + kBeside, count - 1); ++k)
      samples[k].IsSeen = false;
  }
}

}  // namespace graphize
