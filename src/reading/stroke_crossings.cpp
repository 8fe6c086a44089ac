#include "reading/stroke_crossings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

#include "base/translation.h"
#include "reading/polynomial.h"
#include "reading/stroke_fit.h"

namespace graphize {

namespace {

constexpr int kArm = 34;     // samples on either side of a crossing that tell its arms' bend
constexpr int kApart = 2;    // samples beside a crossing that its other stroke may reach into
constexpr int kMerged = 90;  // samples for which two strokes may be one
constexpr double kNoArm = std::numeric_limits<double>::infinity();
constexpr double kNoBend = 1e6;  // of an arm that turns back
constexpr int kMostCrossings = 60;
// Pixels, by BendOf: two arms are one smooth stroke's; where no second stroke is seen whole; for
// sure.
constexpr double kSmooth = 0.8, kGoesOn = 0.25, kStraight = 0.02;

/// Samples `First` to before `End`, where the stroke is merged with other ink.
struct Crossing {
  int First = 0, End = 0;
  int NearEnd =
      0;  // where it is crowded no longer: before `End` when the strokes are one for a while

  bool IsLong() const { return NearEnd < End; }
};

/// Whether other ink lies within `far` pixels beside the sample's stroke.
bool HasOtherBeside(const InkMap& map, const StrokeSample& sample, const StrokeKind& kind,
                    double far) {
  const double chord = kind.Width * std::sqrt(1 + sample.Slope * sample.Slope);
  const double edge = 0.5 * chord + 1.2;
  for (double away = edge; away < edge + far; away += 0.7) {
    for (const int way : {-1, 1}) {
      const int across = static_cast<int>(std::lround(sample.Middle + way * away));
      const int x = sample.AlongRow ? across : sample.At, y = sample.AlongRow ? sample.At : across;
      if (map.Share(x, y) > 0.5) return true;
    }
  }
  return false;
}

/// The first one from sample `from` on that has an arm on both sides.
std::optional<Crossing> NextCrossing(const InkMap& map, const StrokeKind& kind,
                                     const std::vector<StrokeSample>& samples, int from) {
  const int count = static_cast<int>(samples.size());
  const auto endOf = [&](int first) -> std::optional<int> {
    int end = first, seen = 0;
    // Until the stroke is alone for a while.
    for (int k = first; k < count && seen < 3; ++k) {
      seen = samples[k].IsSeen ? seen + 1 : 0;
      if (!samples[k].IsSeen) end = k + 1;
    }
    return seen < 3 ? std::nullopt : std::optional(end);
  };
  const auto nextCrowded = [&](int first, int last) {
    for (int i = first; i < std::min(last, count); ++i)
      if (samples[i].IsCrowded) return i;
    return -1;
  };
  const int first = nextCrowded(std::max(from, 1), count);
  if (first < 0) return std::nullopt;
  auto end = endOf(first);
  Crossing crossing{first, end.value_or(count), end.value_or(count)};
  while (end) {
    crossing.End = *end;
    bool parts = false;
    for (int i = crossing.End; i < std::min(crossing.End + 5, count); ++i)
      parts = parts || HasOtherBeside(map, samples[i], kind, kind.Width + 5);
    const int again = parts ? -1 : nextCrowded(crossing.End, crossing.End + kMerged);
    if (again < 0) {
      if (!crossing.IsLong()) return crossing;
      // Where the gap between them is narrow, the path may change over.
      const auto isClose = [&](int i) {
        return i > 1 && i + 1 < count && HasOtherBeside(map, samples[i], kind, 1.5);
      };
      for (int i = 0; i < kArm && isClose(crossing.First - 1); ++i) --crossing.First;
      for (int i = 0; i < kArm && isClose(crossing.End); ++i) ++crossing.End;
      return crossing;
    }
    end = endOf(again);
  }
  if (crossing.End == count) return std::nullopt;
  crossing.End = crossing.NearEnd;
  return crossing;
}

using Arm = std::vector<PolynomialNode>;  // columns and rows, away from the crossing

/// The seen samples from `first` on, `step` by `step`.
Arm ArmOf(const std::vector<StrokeSample>& samples, int first, int step) {
  Arm arm;
  const int count = static_cast<int>(samples.size());
  for (int i = first; i >= 0 && i < count && std::abs(i - first) < kArm; i += step)
    if (samples[i].IsSeen) arm.push_back({samples[i].X(), samples[i].Y()});
  return arm;
}

/// How much a course bends from one arm to the other: the rms distance, in pixels, of both from one
/// polynomial along the way from end to end; infinite where one of them is missing.
double BendOf(const Arm& before, const Arm& behind) {
  if (before.size() < 6 || behind.size() < 6) return kNoArm;
  const PolynomialNode &a = before.back(), &b = behind.back();
  const double length = std::hypot(b.T - a.T, b.F - a.F);
  if (length <= 0) return kNoBend;
  const double cx = (b.T - a.T) / length, cy = (b.F - a.F) / length;
  std::vector<PolynomialNode> nodes;
  const auto add = [&](const PolynomialNode& at) {
    const double x = at.T - a.T, y = at.F - a.F;
    nodes.push_back({x * cx + y * cy, y * cx - x * cy});
  };
  std::for_each(before.rbegin(), before.rend(), add);
  std::for_each(behind.begin(), behind.end(), add);
  // An arm that turns back is no way on.
  if (nodes[before.size() - 1].T >= nodes[before.size()].T) return kNoBend;
  const auto fit = FitPolynomial(nodes, nodes.size() >= 24 ? 3 : 2);
  return fit ? fit->Rms : kNoBend;
}

/// Whether the arm ends on the stroke of these samples.
bool EndsOn(const Arm& arm, const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  const PolynomialNode& end = arm.back();
  return std::any_of(samples.begin(), samples.end(), [&](const StrokeSample& sample) {
    return std::hypot(sample.X() - end.T, sample.Y() - end.F) < 0.5 * kind.Width + 1;
  });
}

/// Whether there is a stroke within these samples, and no leap over paper.
bool IsInked(const std::vector<StrokeSample>& samples, int first, int end) {
  const int count = static_cast<int>(samples.size());
  if (first >= count) return false;
  return std::count_if(samples.begin() + first, samples.begin() + std::min(end, count),
                       [](const StrokeSample& sample) { return sample.IsGap; }) <= 8;
}

/// A wall across the stroke at the samples from `first` on, `step` by `step`: long enough that no
/// path goes round it at little cost.
MapWalls WallAcross(InkMap& map, const std::vector<StrokeSample>& samples, int first, int step) {
  constexpr int kLength = 15, kMargin = 2;
  MapWalls walls;
  const int count = static_cast<int>(samples.size());
  for (int i = first; i >= 0 && i < count && std::abs(i - first) < kLength; i += step) {
    const StrokeSample& sample = samples[i];
    if (sample.IsCrowded) break;
    for (const int side : {-1, 1}) {
      int beyond = 0;
      for (int k = side < 0 ? 0 : 1; k < 60 && beyond < kMargin; ++k) {
        const int across = static_cast<int>(std::lround(sample.Middle)) + side * k;
        const int x = sample.AlongRow ? across : sample.At;
        const int y = sample.AlongRow ? sample.At : across;
        if (!map.Contains(x, y)) break;
        const std::uint8_t value = map.At(x, y);
        if (beyond > 0 && value > 0) break;  // another arm's ink
        beyond += value == 0 ? 1 : 0;
        walls.Add(map, x, y);
      }
    }
  }
  return walls;
}

class Crossings {
 public:
  Crossings(InkMap& map, int step, const PathCosts& costs, std::span<const PathPixel> through,
            const StrokeKind& kind, const PictureOperation& operation)
      : map_(map),
        step_(step),
        costs_(costs),
        through_(through),
        kind_(kind),
        operation_(operation) {}

  HalfStroke Follow(PathPixel start, MapWalls& walls, std::vector<std::string>& doubts) {
    HalfStroke half;
    half.Path = FindHalfPath(map_, start, step_, costs_, through_, operation_);
    std::vector<StrokeSample> samples = SamplesOf(map_, half.Path, kind_);
    // The turns of a noisy record are no crossings.
    if (IsRecord(samples, kind_)) return half;
    int from = 0;
    for (int round = 0; round < kMostCrossings && !operation_.Stopped; ++round) {
      auto crossing = NextCrossing(map_, kind_, samples, from);
      if (!crossing) break;
      const PathPixel at = half.Path[Index(samples[crossing->First - 1])];
      Choice choice = Judge(half.Path, samples, *crossing);
      if (crossing->IsLong() && !choice.IsWhole) {
        crossing->End = crossing->NearEnd;
        choice = Judge(half.Path, samples, *crossing);
      }
      from = crossing->End;
      if (choice.IsDoubtful)
        doubts.push_back(
            Tr("at %1,%2 the curve meets another of its colour, and either may go on", at.X, at.Y));
      if (choice.IsOther) {
        walls.TakeOver(WallAcross(map_, samples, crossing->End + 1, 1));
        half.Path = Rerouted(half.Path, Index(samples[crossing->First - 1]),
                             std::numeric_limits<int>::max());
        samples = SamplesOf(map_, half.Path, kind_);
      }
      if (crossing->IsLong() && crossing->End < static_cast<int>(samples.size()))
        half.Merged.emplace_back(samples[crossing->First].Pixel, samples[crossing->End].Pixel);
    }
    return half;
  }

 private:
  struct Choice {
    bool IsOther = false, IsDoubtful = false;
    bool IsWhole = false;  // the other stroke was seen before and behind
  };

  static std::size_t Index(const StrokeSample& sample) {
    return static_cast<std::size_t>(sample.Pixel);
  }
  /// The path up to pixel `back`, and on from there as the map leads.
  std::vector<PathPixel> Rerouted(const std::vector<PathPixel>& path, std::size_t back,
                                  int mostColumns) const {
    std::vector<PathPixel> other(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(back));
    const std::vector<PathPixel> rest =
        FindHalfPath(map_, path[back], step_, costs_, through_, operation_, mostColumns);
    other.insert(other.end(), rest.begin(), rest.end());
    return other;
  }

  /// Which arms belong together.
  Choice Judge(const std::vector<PathPixel>& path, const std::vector<StrokeSample>& samples,
               const Crossing& crossing) {
    const Arm before = ArmOf(samples, crossing.First - kApart, -1);
    const Arm behind = ArmOf(samples, crossing.End + kApart, 1);
    const double own = BendOf(before, behind);
    if (own == kNoArm || own < kStraight) return {};
    const int reach = crossing.End - crossing.First + 2 * kArm;

    // The way that there is without the arm behind.
    const std::size_t back = Index(samples[crossing.First - 1]);
    MapWalls wall = WallAcross(map_, samples, crossing.End + 1, 1);
    const std::vector<StrokeSample> others = SamplesOf(map_, Rerouted(path, back, reach), kind_);
    wall.TakeDown(map_);
    if (!IsInked(others, crossing.First, crossing.End + 12)) return {};
    int end = crossing.First;
    for (int i = crossing.First; i < std::min(crossing.End + kArm, static_cast<int>(others.size()));
         ++i)
      if (others[i].IsCrowded) end = i + 1;
    const Arm otherBehind = ArmOf(others, std::max(end, crossing.End - kApart) + kApart, 1);
    const double other = BendOf(before, otherBehind);
    // No other way leads back onto this one.
    if (other == kNoArm || EndsOn(otherBehind, samples, kind_)) return {};

    // The other stroke, where it comes from.
    Arm otherBefore = OtherBefore(path, samples, crossing, reach);
    if (!otherBefore.empty() && EndsOn(otherBefore, samples, kind_)) otherBefore.clear();
    const double ownRest = BendOf(otherBefore, otherBehind);
    const double otherRest = BendOf(otherBefore, behind);
    const bool isWhole = ownRest != kNoArm && otherRest != kNoArm;
    if (!isWhole && own < kGoesOn) return {};
    const double ownBend = isWhole ? std::hypot(own, ownRest) : own;
    const double otherBend = isWhole ? std::hypot(other, otherRest) : other;
    Choice choice{.IsWhole = isWhole};
    choice.IsOther = isWhole ? otherBend < 0.8 * ownBend
                             : otherBend < (otherBend < kSmooth ? 0.8 : 0.4) * ownBend;
    choice.IsDoubtful =
        ownBend < 4 * kSmooth && otherBend < 1.6 * ownBend && ownBend < 1.6 * otherBend;
    return choice;
  }

  Arm OtherBefore(const std::vector<PathPixel>& path, const std::vector<StrokeSample>& samples,
                  const Crossing& crossing, int reach) {
    MapWalls wall = WallAcross(map_, samples, crossing.First - kApart, -1);
    const PathPixel from = path[Index(samples[std::min<std::size_t>(
        static_cast<std::size_t>(crossing.End), samples.size() - 1)])];
    const std::vector<StrokeSample> back =
        SamplesOf(map_, FindHalfPath(map_, from, -step_, costs_, {}, operation_, reach), kind_);
    wall.TakeDown(map_);
    const int length = crossing.End - crossing.First;
    if (!IsInked(back, 0, length + 12)) return {};
    int end = std::max(length - kApart, 0);
    for (int i = 0; i < std::min(length + kArm, static_cast<int>(back.size())); ++i)
      if (back[i].IsCrowded) end = std::max(end, i + 1);
    return ArmOf(back, end + kApart, 1);
  }

  InkMap& map_;
  int step_;
  const PathCosts& costs_;
  std::span<const PathPixel> through_;
  const StrokeKind& kind_;
  const PictureOperation& operation_;
};

}  // namespace

HalfStroke FollowThroughCrossings(InkMap& map, PathPixel start, int step, const PathCosts& costs,
                                  std::span<const PathPixel> through, const StrokeKind& kind,
                                  const PictureOperation& operation, MapWalls& walls,
                                  std::vector<std::string>& doubts) {
  return Crossings(map, step, costs, through, kind, operation).Follow(start, walls, doubts);
}

}  // namespace graphize
