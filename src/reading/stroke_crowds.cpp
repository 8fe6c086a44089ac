#include "reading/stroke_crowds.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace graphize {

namespace {

/// Whether what crowds a sample is the stroke's own ink, because the way turns there, back or from
/// columns to rows: no clear ink is farther from the way than the stroke's edge may be.
bool IsOwnTurn(const InkMap& map, const std::vector<PathPixel>& path, double width,
               const std::vector<StrokeSample>& samples, std::ptrdiff_t i) {
  constexpr std::ptrdiff_t kNear = 3;
  constexpr int kFarthest = 400;  // pixels of the way
  const StrokeSample& sample = samples[i];
  const StrokeSample& before = samples[std::max(i - kNear, std::ptrdiff_t{0})];
  const StrokeSample& behind = samples[std::min(i + kNear, std::ssize(samples) - 1)];
  const bool isEven = before.AlongRow == sample.AlongRow && behind.AlongRow == sample.AlongRow &&
                      (sample.At - before.At) * (behind.At - sample.At) > 0;
  if (isEven) return false;
  const bool isBend = before.AlongRow != behind.AlongRow;
  // The way may go along the inner edge of a bend.
  const double most = (isBend ? 0.75 : 0.5) * width + 1;
  for (const int step : {-1, 1}) {
    int reach = 6 + static_cast<int>(std::lround(2 * width));
    for (PathPixel at = path[static_cast<std::size_t>(sample.Pixel)]; map.Share(at.X, at.Y) > 0;
         (sample.AlongRow ? at.X : at.Y) += step) {
      const auto first = path.begin() + std::max(sample.Pixel - reach, 0);
      const auto last =
          path.begin() + std::min(sample.Pixel + reach + 1, static_cast<int>(path.size()));
      if (map.IsClear(at.X, at.Y) && std::none_of(first, last, [&](PathPixel own) {
            return std::hypot(own.X - at.X, own.Y - at.Y) <= most;
          }))
        return false;
      // Out of a bend the cut may run along a steep side, which the way has come along.
      if (isBend) reach = std::min(reach + 2, kFarthest);
    }
  }
  return true;
}

/// Takes out what its own ink crowds in a bend from rows to columns that is seen up to there on
/// both sides: a cut in the one direction runs along the stroke there, and nothing is missing.
void LeaveOutBends(std::vector<StrokeSample>& samples, const std::vector<bool>& isOwn) {
  constexpr double kFarthest = 3;  // pixels from side to side
  std::vector<StrokeSample> kept;
  for (std::size_t i = 0; i < samples.size();) {
    std::size_t end = i;
    while (end < samples.size() && isOwn[end]) ++end;
    const bool isBend = end > i && i > 0 && end < samples.size() && samples[i - 1].IsSeen &&
                        samples[end].IsSeen && samples[i - 1].AlongRow != samples[end].AlongRow &&
                        std::hypot(samples[end].X() - samples[i - 1].X(),
                                   samples[end].Y() - samples[i - 1].Y()) < kFarthest;
    end = std::max(end, i + 1);
    if (!isBend)
      kept.insert(kept.end(), samples.begin() + static_cast<std::ptrdiff_t>(i),
                  samples.begin() + static_cast<std::ptrdiff_t>(end));
    i = end;
  }
  samples = std::move(kept);
}

}  // namespace

void SettleCrowds(const InkMap& map, const std::vector<PathPixel>& path, double width,
                  std::vector<StrokeSample>& samples) {
  constexpr std::ptrdiff_t kBeside = 2;
  const auto count = static_cast<std::ptrdiff_t>(samples.size());
  std::vector<bool> isOwn(samples.size());
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    if (!samples[i].IsCrowded) continue;
    isOwn[i] = IsOwnTurn(map, path, width, samples, i);
    if (isOwn[i]) continue;
    for (std::ptrdiff_t k = std::max(i - kBeside, std::ptrdiff_t{0});
         k <= std::min(i + kBeside, count - 1); ++k)
      samples[k].IsSeen = false;
  }
  LeaveOutBends(samples, isOwn);
}

}  // namespace graphize
