#include "tracing/point_tracks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

#include "base/median.h"
#include "base/polynomial.h"

namespace graphize {

namespace {

constexpr double kApart = 40, kColumnsApart = 12;  // pixels between neighbours at most
constexpr std::size_t kShortest = 12;              // points of a track that are judged together
constexpr int kMostPerColumn = 3;                  // a trace's centre and edges
constexpr int kThickest = 60;                      // pixels that a stroke's thickness is followed

struct Vector {
  double X = 0, Y = 0;

  double Length() const { return std::hypot(X, Y); }
};
Vector operator-(Vector a, Vector b) {
  return {a.X - b.X, a.Y - b.Y};
}
Vector operator+(Vector a, Vector b) {
  return {a.X + b.X, a.Y + b.Y};
}
Vector operator*(double k, Vector a) {
  return {k * a.X, k * a.Y};
}
Vector Unit(Vector a) {
  const double length = a.Length();
  return length > 0 ? (1 / length) * a : Vector{};
}

/// Points along one stroke, by their numbers.
using Track = std::vector<std::size_t>;

/// Whether the points lie side by side; those that were clicked by hand do not.
bool IsDense(std::span<const PlotPosition> points, const Track& track) {
  constexpr double kMost = 2;  // columns from one to the next, on average
  double columns = 0;
  for (std::size_t i = 1; i < track.size(); ++i)
    columns += std::abs(points[track[i]].Column - points[track[i - 1]].Column);
  return columns <= kMost * static_cast<double>(track.size());
}

/// What was captured column by column, one to three points in each: a track for each of the three.
std::vector<Track> TracksOf(std::span<const PlotPosition> points) {
  std::vector<Track> tracks;
  std::array<Track, kMostPerColumn> open;
  std::size_t perColumn = 0;
  const auto close = [&] {
    for (Track& track : open) {
      if (track.size() >= kShortest && IsDense(points, track)) tracks.push_back(std::move(track));
      track.clear();
    }
  };
  for (std::size_t first = 0, end = 0; first < points.size(); first = end) {
    for (end = first + 1; end < points.size() && points[end].Column == points[first].Column;) ++end;
    const std::size_t count = end - first;
    const auto isNear = [&](std::size_t i) {
      const PlotPosition last = points[open[i].back()], here = points[first + i];
      return std::abs(here.Column - last.Column) <= kColumnsApart &&
             std::hypot(here.Column - last.Column, here.Row - last.Row) <= kApart;
    };
    bool goesOn = count == perColumn;
    for (std::size_t i = 0; goesOn && i < count; ++i) goesOn = isNear(i);
    if (!goesOn) close();
    perColumn = count <= kMostPerColumn ? count : 0;
    for (std::size_t i = 0; i < perColumn; ++i) open[i].push_back(first + i);
  }
  close();
  return tracks;
}

/// A track with the places and the stroke's thickness at each.
class TracedStroke {
 public:
  TracedStroke(InkSight& sight, std::span<const PlotPosition> points, const Track& track)
      : sight_(sight), track_(track) {
    for (const std::size_t point : track) {
      const Vector at{points[point].Column, points[point].Row};
      along_.push_back(at_.empty() ? 0 : along_.back() + (at - at_.back()).Length());
      at_.push_back(at);
      thickness_.push_back(ThicknessAt(at));
    }
    isSound_.resize(at_.size());
    usual_ = Median(thickness_);
  }

  void Judge(std::vector<InkVerdict>& verdicts) {
    BridgeGaps(verdicts);
    PassTouches(verdicts);
    FindGaps(verdicts);
    FindThick(verdicts);
    FindJumps(verdicts);
    FindLeaps(verdicts);
    FindDetours(verdicts);
  }

 private:
  static int Rounded(double value) { return static_cast<int>(std::lround(value)); }
  bool HasInk(Vector at, double reach) { return sight_.HasInkNear(at.X, at.Y, reach); }

  /// The shortest of the straight ways through the ink at the place; 0 where there is none.
  double ThicknessAt(Vector at) {
    std::optional<Vector> ink;
    for (const auto& [dx, dy] : {Vector{0, 0}, {0, 1}, {0, -1}, {1, 0}, {-1, 0}})
      if (!ink && sight_.IsInk(Rounded(at.X + dx), Rounded(at.Y + dy)))
        ink = Vector{at.X + dx, at.Y + dy};
    if (!ink) return 0;
    double least = kThickest;
    for (const auto& [dx, dy] : {Vector{1, 0}, {0, 1}, {1, 1}, {1, -1}}) {
      const double unit = Vector{dx, dy}.Length();
      int count = 1;
      for (const int sign : {-1, 1})
        for (int i = 1; i * unit < least && sight_.IsInk(Rounded(ink->X + sign * i * dx),
                                                         Rounded(ink->Y + sign * i * dy));
             ++i)
          ++count;
      least = std::min(least, count * unit);
    }
    return least;
  }

  /// Calls `flag(first, end)` for each stretch of points for which `holds`.
  template <class Holds, class Flag>
  void ForStretches(const Holds& holds, const Flag& flag) const {
    for (std::size_t first = 0; first < at_.size(); ++first) {
      if (!holds(first)) continue;
      std::size_t end = first + 1;
      while (end < at_.size() && holds(end)) ++end;
      flag(first, end);
      first = end;
    }
  }
  void Mark(std::vector<InkVerdict>& verdicts, std::size_t first, std::size_t end,
            InkVerdict verdict) const {
    for (std::size_t i = first; i < end; ++i)
      if (verdicts[track_[i]] == InkVerdict::OnInk && !isSound_[i]) verdicts[track_[i]] = verdict;
  }

  /// A straight way over a short gap, as between two dashes, is on the stroke.
  void BridgeGaps(std::vector<InkVerdict>& verdicts) const {
    constexpr double kLongest = 16, kStraight = 1.5;  // pixels
    const auto isOff = [&](std::size_t i) { return verdicts[track_[i]] == InkVerdict::NotOnInk; };
    ForStretches(isOff, [&](std::size_t first, std::size_t end) {
      if (first == 0 || end == at_.size() || along_[end] - along_[first - 1] > kLongest) return;
      const Vector unit = Unit(at_[end] - at_[first - 1]);
      for (std::size_t i = first; i < end; ++i)
        if (DistanceOf(at_[i] - at_[first - 1], unit) > kStraight) return;
      for (std::size_t i = first; i < end; ++i) verdicts[track_[i]] = InkVerdict::OnInk;
    });
  }

  /// What bends to the frame and back, as an extreme that lies on its line, is on the stroke: one
  /// smooth course leads from before to behind it.
  void PassTouches(std::vector<InkVerdict>& verdicts) {
    constexpr double kLeast = 12, kMost = 60, kAside = 2;  // pixels
    const auto isTouching = [&](std::size_t i) {
      return verdicts[track_[i]] == InkVerdict::OnFrame;
    };
    ForStretches(isTouching, [&](std::size_t first, std::size_t end) {
      const double flank = std::clamp(along_[end - 1] - along_[first], kLeast, kMost);
      const std::size_t from = FirstAt(along_[first] - flank),
                        to = FirstAt(along_[end - 1] + flank);
      if (along_[first] < flank || to == at_.size()) return;
      const Vector unit = Unit(at_[to] - at_[from]);
      const auto nodeAt = [&](std::size_t i) {  // along and across the line from end to end
        const Vector d = at_[i] - at_[from];
        return PolynomialNode{unit.X * d.X + unit.Y * d.Y, unit.X * d.Y - unit.Y * d.X};
      };
      std::vector<PolynomialNode> nodes;
      for (std::size_t i = from; i <= to; ++i)
        if (i < first || i >= end) nodes.push_back(nodeAt(i));
      const auto course = FitPolynomial(nodes, 3);
      if (!course) return;
      for (std::size_t i = first; i < end; ++i) {
        const PolynomialNode node = nodeAt(i);
        if (std::abs(course->At(node.T) - node.F) > kAside) return;
      }
      for (std::size_t i = first; i < end; ++i) verdicts[track_[i]] = InkVerdict::OnInk;
      // The frame, which goes straight on there, is no other stroke.
      for (std::size_t i = from; i <= to; ++i) isSound_[i] = true;
    });
  }

  /// Where paper lies between the ink above and below.
  void FindGaps(std::vector<InkVerdict>& verdicts) {
    constexpr std::size_t kEnough = 5;  // more than grain or a hole in the ink
    const auto isBetween = [&](std::size_t i) {
      const Vector at = at_[i];
      for (const double dx : {-1.0, 0.0, 1.0})
        if (HasInk({at.X + dx, at.Y}, 0.5)) return false;
      const auto inkWithin = [&](int sign) {
        for (int row = 1; row <= 3; ++row)
          if (HasInk({at.X, at.Y + sign * row}, 0.5)) return true;
        return false;
      };
      return inkWithin(-1) && inkWithin(1);
    };
    ForStretches(isBetween, [&](std::size_t first, std::size_t end) {
      if (end - first >= kEnough) Mark(verdicts, first, end, InkVerdict::BetweenStrokes);
    });
  }

  /// Where the ink is far thicker than the stroke for longer than a symbol on it.
  void FindThick(std::vector<InkVerdict>& verdicts) const {
    const auto isThick = [&](std::size_t i) { return thickness_[i] > 2 * usual_ + 3; };
    ForStretches(isThick, [&](std::size_t first, std::size_t end) {
      const double thickest =
          *std::max_element(thickness_.begin() + static_cast<std::ptrdiff_t>(first),
                            thickness_.begin() + static_cast<std::ptrdiff_t>(end));
      if (along_[end - 1] - along_[first] > 2 * thickest + 4)
        Mark(verdicts, first, end, InkVerdict::BetweenStrokes);
    });
  }

  /// Where neighbours lie apart aside of the course, and nothing is drawn from one to the other.
  void FindJumps(std::vector<InkVerdict>& verdicts) {
    constexpr double kFar = 6;
    for (std::size_t i = 1; i < at_.size(); ++i) {
      const Vector step = at_[i] - at_[i - 1];
      if (step.Length() <= kFar || along_[i - 1] < kFar) continue;
      const Vector before = at_[i - 1] - AtLength(along_[i - 1] - 2 * kFar);
      if (AngleOf(before, step) < 35) continue;
      int ink = 0, all = 0;
      for (double k = 2; k < step.Length() - 1; ++k, ++all)
        ink += HasInk(at_[i - 1] + k * Unit(step), 1) ? 1 : 0;
      if (2 * ink < all) Mark(verdicts, i - 1, i + 1, InkVerdict::Leap);
    }
  }

  /// Where the track leaves the smooth course on either side of it, though there is ink on the
  /// course: over what touches the stroke, such as a letter.
  void FindDetours(std::vector<InkVerdict>& verdicts) {
    constexpr double kAway = 2.4;       // pixels
    constexpr std::size_t kEnough = 2;  // points
    std::vector<bool> isAside(at_.size());
    for (std::size_t i = 0; i < at_.size(); ++i) {
      for (const double h : {6.0, 10.0, 15.0}) {
        const double here = along_[i];
        if (here < 2 * h || here > along_.back() - 2 * h) break;
        const Vector a = AtLength(here - 2 * h), b = AtLength(here - h), c = AtLength(here + h),
                     d = AtLength(here + 2 * h);
        // The cubic through the four at even intervals.
        const Vector course = (1 / 6.0) * (4 * (b + c) - (a + d));
        if (DistanceOf(at_[i] - course, Unit(c - b)) < kAway || !HasInk(course, 0.5)) continue;
        // A sharp bend has no ink where it would be without it.
        const Vector middle = 0.5 * (b + c);
        if ((middle - course).Length() > 1.5 && !HasInk(middle, 0.5)) continue;
        isAside[i] = true;
        break;
      }
    }
    ForStretches([&](std::size_t i) { return isAside[i]; },
                 [&](std::size_t first, std::size_t end) {
                   if (end - first >= kEnough) Mark(verdicts, first, end, InkVerdict::Leap);
                 });
  }

  /// Where the track bends, and ink goes straight on both from before and from behind: it crosses,
  /// and the track has changed over.
  void FindLeaps(std::vector<InkVerdict>& verdicts) {
    constexpr double kWindow = 12;              // pixels by which a direction is told
    constexpr double kLeast = 15, kPlain = 25;  // degrees
    const double aside = 0.5 * usual_ + 2;
    const double reach = aside + kWindow;
    double looked = -1e9;
    for (std::size_t i = 0; i < at_.size(); ++i) {
      const double here = along_[i];
      if (here < reach || here > along_.back() - reach || here < looked + 2) continue;
      const Vector from = AtLength(here - aside), to = AtLength(here + aside);
      const Vector before = from - AtLength(here - reach), after = AtLength(here + reach) - to;
      const double angle = AngleOf(before, after);
      if (angle < kLeast) continue;
      looked = here;
      const double ahead = GoesOn(from, before, here, 1, angle);
      const double behind = GoesOn(to, -1 * after, here, -1, angle);
      // Dashes show less of themselves; at a plain bend, what is solid on one side is enough.
      const bool isPlain = angle >= kPlain && std::max(ahead, behind) >= 0.85;
      if (std::min(ahead, behind) < 0.5 && !isPlain) continue;
      if (IsSmooth(here, aside, reach + kWindow, angle)) continue;
      std::size_t first = i, end = i + 1;
      while (first > 0 && along_[first - 1] >= here - aside) --first;
      while (end < at_.size() && along_[end] <= here + aside) ++end;
      Mark(verdicts, first, end, InkVerdict::Leap);
    }
  }

  /// Whether the track up to `reach` before and behind the place, but for `gap` beside it, bends
  /// evenly: a corner of that angle would lie aside of such a course by far more.
  bool IsSmooth(double here, double gap, double reach, double angle) const {
    const std::size_t from = FirstAt(here - reach),
                      to = std::min(FirstAt(here + reach), at_.size());
    const Vector start = AtLength(here - reach), unit = Unit(AtLength(here + reach) - start);
    const Vector corner = AtLength(here) - start;
    const double middle = unit.X * corner.X + unit.Y * corner.Y;
    const double slope = std::tan(std::min(angle, 120.0) / 2 * std::numbers::pi / 180);
    std::vector<PolynomialNode> nodes, corners;
    for (std::size_t i = from; i < to; ++i) {
      if (std::abs(along_[i] - here) < gap) continue;
      const Vector d = at_[i] - start;
      const double t = unit.X * d.X + unit.Y * d.Y;
      nodes.push_back({t, unit.X * d.Y - unit.Y * d.X});
      corners.push_back({t, slope * std::abs(t - middle)});
    }
    constexpr int kDegree = 3;
    const auto course = FitPolynomial(nodes, kDegree), bent = FitPolynomial(corners, kDegree);
    return course && bent && course->Rms < 0.5 * bent->Rms;
  }

  /// How much of the way straight ahead of `from` is ink, where it is away from the track on that
  /// side of `here`; 0 where it soon ends.
  double GoesOn(Vector from, Vector way, double here, int side, double angle) {
    constexpr int kEnough = 12;
    const double away = 0.5 * usual_ + 2.5;
    const double farthest =
        std::min(60.0, away / std::sin(std::min(angle, 90.0) * std::numbers::pi / 180) + 26);
    const Vector unit = Unit(way);
    // What the track may come near to.
    const double end = here + side * (farthest + 20);
    const std::size_t first = FirstAt(std::min(here, end)), last = FirstAt(std::max(here, end));
    int ink = 0, all = 0, gap = 0;
    for (double k = 1; k <= farthest && all < kEnough + 6; ++k) {
      const Vector at = from + k * unit;
      bool isAway = true;
      for (std::size_t i = first; isAway && i < std::min(last + 1, at_.size()); ++i)
        isAway = (at_[i] - at).Length() > away;
      if (!isAway) continue;
      ++all;
      const bool isInk = HasInk(at, 1 + k / 16);
      ink += isInk ? 1 : 0;
      gap = isInk ? 0 : gap + 1;
      if (gap > 8) return 0;
    }
    return all >= kEnough ? static_cast<double>(ink) / all : 0;
  }

  /// The first point that is so many pixels along the track, or their number.
  std::size_t FirstAt(double length) const {
    return static_cast<std::size_t>(std::lower_bound(along_.begin(), along_.end(), length) -
                                    along_.begin());
  }
  /// The place so many pixels along the track.
  Vector AtLength(double length) const {
    if (length <= 0) return at_.front();
    const auto next = std::upper_bound(along_.begin(), along_.end(), length);
    if (next == along_.end()) return at_.back();
    const auto i = static_cast<std::size_t>(next - along_.begin());
    const double part = (length - along_[i - 1]) / (along_[i] - along_[i - 1]);
    return at_[i - 1] + part * (at_[i] - at_[i - 1]);
  }
  /// How far a place lies aside of a direction.
  static double DistanceOf(Vector place, Vector unit) {
    return std::abs(unit.X * place.Y - unit.Y * place.X);
  }
  /// Degrees between two directions, 0 to 180.
  static double AngleOf(Vector a, Vector b) {
    const double turn = std::atan2(a.X * b.Y - a.Y * b.X, a.X * b.X + a.Y * b.Y);
    return std::abs(turn) * 180 / std::numbers::pi;
  }

  InkSight& sight_;
  const Track& track_;
  std::vector<Vector> at_;
  std::vector<double> along_;      // pixels from the first point
  std::vector<double> thickness_;  // pixels
  std::vector<bool> isSound_;      // whatever else is drawn there
  double usual_ = 0;
};

}  // namespace

void CheckTracks(InkSight& sight, std::span<const PlotPosition> points,
                 std::vector<InkVerdict>& verdicts) {
  for (const Track& track : TracksOf(points)) TracedStroke(sight, points, track).Judge(verdicts);
}

}  // namespace graphize
