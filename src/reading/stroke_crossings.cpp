#include "reading/stroke_crossings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "reading/polynomial.h"
#include "reading/stroke_fit.h"

namespace graphize {

namespace {

constexpr int kArm = 18;  // samples on either side of a crossing that tell its arms' bend
constexpr double kNoArm = std::numeric_limits<double>::infinity();
constexpr double kNoBend = 1e6;  // of an arm that turns back
constexpr int kMostCrossings = 60;
constexpr double kSmooth = 0.8;  // pixels: two arms are one smooth stroke's by BendOf

/// Samples `first` to before `end`, where the stroke is merged with other ink.
struct Crossing {
  int First = 0, End = 0;
};

/// The first one from sample `from` on that has an arm on both sides.
std::optional<Crossing> NextCrossing(const std::vector<StrokeSample>& samples, int from) {
  const int count = static_cast<int>(samples.size());
  for (int i = std::max(from, 1); i < count; ++i) {
    if (!samples[i].IsCrowded) continue;
    int end = i, seen = 0;
    // Until the stroke is alone for a while.
    for (int k = i; k < count && seen < 3; ++k) {
      seen = samples[k].IsSeen ? seen + 1 : 0;
      if (!samples[k].IsSeen) end = k + 1;
    }
    if (seen < 3) return std::nullopt;
    return Crossing{i, end};
  }
  return std::nullopt;
}

/// How much a course bends from the samples before a crossing to those behind: the rms distance,
/// in pixels, of both arms from one quadratic; infinite where one of them is missing.
double BendOf(const std::vector<StrokeSample>& samples, const Crossing& crossing) {
  std::vector<const StrokeSample*> arms;
  const int count = static_cast<int>(samples.size());
  for (int i = std::max(crossing.First - kArm, 0); i < crossing.First; ++i)
    if (samples[i].IsSeen) arms.push_back(&samples[i]);
  const std::size_t before = arms.size();
  for (int i = crossing.End; i < std::min(crossing.End + kArm, count); ++i)
    if (samples[i].IsSeen) arms.push_back(&samples[i]);
  if (before < 6 || arms.size() - before < 6) return kNoArm;
  // Along the arm before, which is as straight as it goes.
  const StrokeSample &a = *arms[0], &b = *arms[before - 1];
  const double length = std::hypot(b.X() - a.X(), b.Y() - a.Y());
  if (length <= 0) return kNoArm;
  const double cx = (b.X() - a.X()) / length, cy = (b.Y() - a.Y()) / length;
  std::vector<PolynomialNode> nodes;
  for (const StrokeSample* sample : arms) {
    const double x = sample->X() - b.X(), y = sample->Y() - b.Y();
    nodes.push_back({x * cx + y * cy, y * cx - x * cy});
  }
  // An arm that turns back is no way on.
  if (nodes.back().T <= nodes[before - 1].T) return kNoBend;
  const auto fit = FitPolynomial(nodes, 2);
  return fit ? fit->Rms : kNoBend;
}

/// Whether there is a stroke from the crossing on, and no leap over paper.
bool IsInked(const std::vector<StrokeSample>& samples, const Crossing& crossing) {
  const int count = static_cast<int>(samples.size());
  if (crossing.First >= count) return false;
  const int end = std::min(crossing.End + 12, count);
  return std::count_if(samples.begin() + crossing.First, samples.begin() + end,
                       [](const StrokeSample& sample) { return sample.IsGap; }) <= 8;
}

/// A wall in the map that can be taken down.
class Wall {
 public:
  /// Across the stroke at the samples shortly behind a crossing: long enough that no path goes
  /// round it at little cost.
  Wall(InkMap& map, const std::vector<StrokeSample>& samples, const Crossing& crossing) {
    constexpr int kLength = 16, kMargin = 2;
    const int count = static_cast<int>(samples.size());
    for (int i = crossing.End + 1; i < std::min(crossing.End + kLength, count); ++i) {
      const StrokeSample& sample = samples[i];
      if (sample.IsCrowded) break;
      for (const int step : {-1, 1}) {
        int beyond = 0;
        for (int k = step < 0 ? 0 : 1; k < 60 && beyond < kMargin; ++k) {
          const int across = static_cast<int>(std::lround(sample.Middle)) + step * k;
          const int x = sample.AlongRow ? across : sample.At;
          const int y = sample.AlongRow ? sample.At : across;
          if (!map.Contains(x, y)) break;
          std::uint8_t& value = map.At(x, y);
          if (beyond > 0 && value > 0) break;  // another arm's ink
          beyond += value == 0 ? 1 : 0;
          covered_.emplace_back(&value, value);
          value = InkMap::kWall;
        }
      }
    }
  }
  void TakeDown() {
    for (auto pixel = covered_.rbegin(); pixel != covered_.rend(); ++pixel)
      *pixel->first = pixel->second;
  }

 private:
  std::vector<std::pair<std::uint8_t*, std::uint8_t>> covered_;
};

}  // namespace

std::vector<PathPixel> FollowThroughCrossings(InkMap& map, PathPixel start, int step,
                                              const PathCosts& costs,
                                              std::span<const PathPixel> through,
                                              const StrokeKind& kind,
                                              const PictureOperation& operation,
                                              std::vector<std::string>& doubts) {
  std::vector<PathPixel> path = FindHalfPath(map, start, step, costs, through, operation);
  std::vector<StrokeSample> samples = SamplesOf(map, path, kind);
  // The turns of a noisy record are no crossings.
  if (IsRecord(samples, kind)) return path;
  int from = 0;
  for (int round = 0; round < kMostCrossings && !operation.Stopped; ++round) {
    const auto crossing = NextCrossing(samples, from);
    if (!crossing) break;
    from = crossing->End;
    const double bend = BendOf(samples, *crossing);
    if (bend == kNoArm || bend < 0.25) continue;  // straight on
    // The way that there is without this arm, from before the crossing.
    const std::size_t back = static_cast<std::size_t>(samples[crossing->First - 1].Pixel);
    Wall wall(map, samples, *crossing);
    std::vector<PathPixel> other(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(back));
    const std::vector<PathPixel> rest =
        FindHalfPath(map, path[back], step, costs, through, operation);
    other.insert(other.end(), rest.begin(), rest.end());
    std::vector<StrokeSample> otherSamples = SamplesOf(map, other, kind);
    const double otherBend =
        IsInked(otherSamples, *crossing) ? BendOf(otherSamples, *crossing) : kNoArm;
    const bool isBetter = otherBend < (otherBend < kSmooth ? 0.8 : 0.4) * bend;
    if (bend < 4 * kSmooth && otherBend < 1.6 * bend && bend < 1.6 * otherBend)
      doubts.push_back("at " + std::to_string(path[back].X) + "," + std::to_string(path[back].Y) +
                       " the curve meets another of its colour, and either may go on");
    if (!isBetter) {
      wall.TakeDown();
      continue;
    }
    path = std::move(other);
    samples = std::move(otherSamples);
  }
  return path;
}

}  // namespace graphize
