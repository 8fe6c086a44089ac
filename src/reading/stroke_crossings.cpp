#include "reading/stroke_crossings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

#include "base/translation.h"
#include "reading/stroke_arms.h"
#include "reading/stroke_tolerance.h"

namespace graphize {

namespace {

constexpr int kApart = 2;        // samples beside a crossing that its other stroke may reach into
constexpr double kNarrow = 2.2;  // pixels of a gap that a path may change over
constexpr int kMostNarrow = 60;  // samples beside such a gap
constexpr int kMerged = 90;      // samples for which two strokes may be one
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
      // Where the gap between them is narrow, the path may change over.
      const auto isClose = [&](int i) {
        return i > 1 && i + 1 < count && HasOtherBeside(map, samples[i], kind, kNarrow);
      };
      for (int i = 0; i < kMostNarrow && isClose(crossing.First - 1); ++i) --crossing.First;
      for (int i = 0; i < kMostNarrow && isClose(crossing.End); ++i) ++crossing.End;
      return crossing;
    }
    end = endOf(again);
  }
  if (crossing.End == count) return std::nullopt;
  crossing.End = crossing.NearEnd;
  return crossing;
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
  constexpr int kLength = 15, kMargin = 2, kRise = InkMap::kFull / 10;
  MapWalls walls;
  const int count = static_cast<int>(samples.size());
  for (int i = first; i >= 0 && i < count && std::abs(i - first) < kLength; i += step) {
    const StrokeSample& sample = samples[i];
    if (sample.IsCrowded) break;
    for (const int side : {-1, 1}) {
      int beyond = 0;
      std::uint8_t last = InkMap::kFull;
      for (int k = side < 0 ? 0 : 1; k < 60 && beyond < kMargin; ++k) {
        const int across = static_cast<int>(std::lround(sample.Middle)) + side * k;
        const int x = sample.AlongRow ? across : sample.At;
        const int y = sample.AlongRow ? sample.At : across;
        if (!map.Contains(x, y)) break;
        const std::uint8_t value = map.At(x, y);
        // Another arm's ink, across paper or a narrow gap.
        if ((beyond > 0 && value > 0) || (last < InkMap::kFull / 2 && value > last + kRise)) break;
        last = value;
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
    half.Path = WayFrom(start, std::numeric_limits<int>::max());
    if (operation_.Stopped) return half;
    SampledPath path(map_, half.Path, kind_);
    // The turns of a noisy record are no crossings.
    if (ToleranceOf(path.Samples(), kind_).IsData) return half;
    int from = 0;
    for (int round = 0; round < kMostCrossings && !operation_.Stopped; ++round) {
      auto crossing = NextCrossing(map_, kind_, path.Samples(), from);
      if (!crossing) break;
      const PathPixel at = path.Path()[PixelBefore(path, *crossing)];
      Choice choice = Judge(path, *crossing);
      if (crossing->IsLong() && !choice.IsWhole) {
        crossing->End = crossing->NearEnd;
        choice = Judge(path, *crossing);
      }
      from = crossing->End;
      if (choice.IsOther) {
        MapWalls wall = WallAcross(map_, path.Samples(), crossing->End + 1, 1);
        const std::size_t back = PixelBefore(path, *crossing);
        const std::vector<PathPixel> other =
            WayFrom(path.Path()[back], std::numeric_limits<int>::max());
        // A way that soon ends was walled off as well.
        if (2 * other.size() > path.Path().size() - back) {
          walls.TakeOver(std::move(wall));
          path.Exchange(back, path.Path().size(), other);
        } else {
          wall.TakeDown(map_);
          choice.IsDoubtful = true;
        }
      }
      if (choice.IsDoubtful)
        doubts.push_back(
            Tr("at %1,%2 the curve meets another of its colour, and either may go on", at.X, at.Y));
      const std::vector<StrokeSample>& samples = path.Samples();
      if (crossing->End >= static_cast<int>(samples.size())) continue;
      if (!KeepToCourse(path, *crossing) && crossing->IsLong())
        half.Merged.emplace_back(samples[crossing->First].Pixel, samples[crossing->End].Pixel);
    }
    half.Path = path.Path();
    return half;
  }

 private:
  struct Choice {
    bool IsOther = false, IsDoubtful = false;
    bool IsWhole = false;  // the other stroke was seen before and behind
  };

  /// Of the path, where it meets the crossing.
  static std::size_t PixelBefore(const SampledPath& path, const Crossing& crossing) {
    return static_cast<std::size_t>(path.Samples()[crossing.First - 1].Pixel);
  }
  /// As the map leads from a pixel on.
  std::vector<PathPixel> WayFrom(PathPixel from, int mostColumns) const {
    return FindHalfPath(map_, from, step_, costs_, through_, operation_, mostColumns);
  }

  /// Leads the path where the arms lead: while two strokes are one, or nearly so, it may run on
  /// either. False where they do not tell where.
  bool KeepToCourse(SampledPath& path, const Crossing& crossing) const {
    const std::vector<StrokeSample>& samples = path.Samples();
    const Arm before = ArmOf(samples, crossing.First - kApart, -1);
    const Arm behind = ArmOf(samples, crossing.End + kApart, 1);
    constexpr std::size_t kLeast = 10;
    constexpr double kMostRms = 0.2;
    if (before.size() < kLeast || behind.size() < kLeast) return false;
    std::optional<Course> course;
    for (const int degree : {3, 5})
      if (!course || course->Across.Rms > kMostRms) course = CourseOver(before, behind, degree);
    if (!course || course->Across.Rms > kMostRms) return false;
    std::vector<PathPixel> led;
    std::size_t paper = 0;
    bool isInside = true;
    const auto at = [&](double t) {
      const PathPixel pixel = course->PixelAt(t);
      if (!led.empty() && led.back() == pixel) return;
      isInside = isInside && map_.Contains(pixel.X, pixel.Y);
      led.push_back(pixel);
      paper += map_.At(pixel.X, pixel.Y) < InkMap::kFull / 5 ? 1 : 0;
    };
    constexpr double kStep = 0.4;
    for (double t = course->First; t <= course->Last; t += kStep) at(t);
    at(course->Last);
    if (!isInside || 10 * paper > led.size()) return false;
    // Between the innermost pixels of both arms.
    const std::vector<PathPixel>& pixels = path.Path();
    const auto nearest = [&](PathPixel to) {
      const auto distance = [&](PathPixel from) {
        return std::hypot(from.X - to.X, from.Y - to.Y);
      };
      return std::ranges::min_element(pixels, {}, distance) - pixels.begin();
    };
    const auto first = nearest(led.front()), last = nearest(led.back());
    if (first >= last) return false;
    path.Exchange(static_cast<std::size_t>(first), static_cast<std::size_t>(last) + 1, led);
    return true;
  }

  /// Which arms belong together.
  Choice Judge(const SampledPath& path, const Crossing& crossing) {
    const std::vector<StrokeSample>& samples = path.Samples();
    const Arm before = ArmOf(samples, crossing.First - kApart, -1);
    const Arm behind = ArmOf(samples, crossing.End + kApart, 1);
    const double own = BendOf(before, behind);
    if (own == kNoArm || own < kStraight) return {};
    const int reach = crossing.End - crossing.First + 2 * kArm;

    // The way that there is without the arm behind.
    const std::size_t back = PixelBefore(path, crossing);
    MapWalls wall = WallAcross(map_, samples, crossing.End + 1, 1);
    SampledPath walledOff = path;
    walledOff.Exchange(back, path.Path().size(), WayFrom(path.Path()[back], reach));
    wall.TakeDown(map_);
    const std::vector<StrokeSample>& others = walledOff.Samples();
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
    Arm otherBefore = OtherBefore(path, crossing, reach);
    if (!otherBefore.empty() && EndsOn(otherBefore, samples, kind_)) otherBefore.clear();
    const Parting parting = PartingOf(before, otherBefore, behind, otherBehind);
    Choice choice{.IsWhole = parting.AsTheyAre != kNoArm};
    if (choice.IsWhole) {
      constexpr double kScatter = 0.03;
      const double kept = parting.AsTheyAre + kScatter, changed = parting.Crossed + kScatter;
      choice.IsOther = changed < kept;
      choice.IsDoubtful = changed < 1.6 * kept && kept < 1.6 * changed;
      return choice;
    }
    if (own < kGoesOn) return {};
    choice.IsOther = other < (other < kSmooth ? 0.8 : 0.4) * own;
    choice.IsDoubtful = own < 4 * kSmooth && other < 1.6 * own && own < 1.6 * other;
    return choice;
  }

  Arm OtherBefore(const SampledPath& path, const Crossing& crossing, int reach) {
    const std::vector<StrokeSample>& samples = path.Samples();
    MapWalls wall = WallAcross(map_, samples, crossing.First - kApart, -1);
    const StrokeSample& first =
        samples[std::min(static_cast<std::size_t>(crossing.End), samples.size() - 1)];
    const PathPixel from = path.Path()[static_cast<std::size_t>(first.Pixel)];
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
