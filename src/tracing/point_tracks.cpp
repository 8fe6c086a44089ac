#include "tracing/point_tracks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/polynomial.h"
#include "tracing/traced_stroke.h"

namespace graphize {

namespace {

constexpr double kApart = 40, kColumnsApart = 12;  // pixels between neighbours at most
constexpr std::size_t kShortest = 12;              // points of a track that are judged together
constexpr int kMostPerColumn = 3;                  // a trace's centre and edges

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

/// Holds the points of one track against their stroke.
class TrackJudge {
 public:
  TrackJudge(InkSight& sight, std::span<const PlotPosition> points, const Track& track,
             const std::optional<PlotFrame>& frame, std::vector<InkVerdict>& verdicts)
      : track_(track),
        verdicts_(verdicts),
        stroke_(sight, PlacesOf(points, track), frame),
        isSound_(track.size()) {}

  void Judge() {
    BridgeGaps();
    PassTouches();
    FindGaps();
    FindThick();
    FindJumps();
    FindLeaps();
    FindDetours();
  }

 private:
  static std::vector<Vector> PlacesOf(std::span<const PlotPosition> points, const Track& track) {
    std::vector<Vector> places;
    for (const std::size_t point : track)
      places.push_back({points[point].Column, points[point].Row});
    return places;
  }

  /// Calls `flag(first, end)` for each stretch of points for which `holds`.
  template <class Holds, class Flag>
  void ForStretches(const Holds& holds, const Flag& flag) const {
    for (std::size_t first = 0; first < stroke_.Size(); ++first) {
      if (!holds(first)) continue;
      std::size_t end = first + 1;
      while (end < stroke_.Size() && holds(end)) ++end;
      flag(first, end);
      first = end;
    }
  }
  void Mark(std::size_t first, std::size_t end, InkVerdict verdict) const {
    for (std::size_t i = first; i < end; ++i)
      if (verdicts_[track_[i]] == InkVerdict::OnInk && !isSound_[i]) verdicts_[track_[i]] = verdict;
  }

  /// A straight way over a short gap, as between two dashes, is on the stroke.
  void BridgeGaps() const {
    constexpr double kLongest = 16, kStraight = 1.5;  // pixels
    const auto isOff = [&](std::size_t i) { return verdicts_[track_[i]] == InkVerdict::NotOnInk; };
    ForStretches(isOff, [&](std::size_t first, std::size_t end) {
      if (first == 0 || end == stroke_.Size() ||
          stroke_.LengthAt(end) - stroke_.LengthAt(first - 1) > kLongest)
        return;
      const Vector unit = Unit(stroke_.At(end) - stroke_.At(first - 1));
      for (std::size_t i = first; i < end; ++i)
        if (AsideOf(stroke_.At(i) - stroke_.At(first - 1), unit) > kStraight) return;
      for (std::size_t i = first; i < end; ++i) verdicts_[track_[i]] = InkVerdict::OnInk;
    });
  }

  /// What bends to the frame and back, as an extreme that lies on its line, is on the stroke: one
  /// smooth course leads from before to behind it.
  void PassTouches() {
    constexpr double kLeast = 12, kMost = 60, kAside = 2;  // pixels
    const auto isTouching = [&](std::size_t i) {
      return verdicts_[track_[i]] == InkVerdict::OnFrame;
    };
    ForStretches(isTouching, [&](std::size_t first, std::size_t end) {
      const double begin = stroke_.LengthAt(first), back = stroke_.LengthAt(end - 1);
      const double flank = std::clamp(back - begin, kLeast, kMost);
      if (std::min(begin, stroke_.Length() - back) < 0.5 * flank) return;
      const std::size_t from = stroke_.FirstAt(begin - flank),
                        to = std::min(stroke_.FirstAt(back + flank), stroke_.Size() - 1);
      const Vector unit = Unit(stroke_.At(to) - stroke_.At(from));
      const auto nodeAt = [&](std::size_t i) {  // along and across the line from end to end
        const Vector d = stroke_.At(i) - stroke_.At(from);
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
      for (std::size_t i = first; i < end; ++i) verdicts_[track_[i]] = InkVerdict::OnInk;
      // The frame, which goes straight on there, is no other stroke.
      for (std::size_t i = from; i <= to; ++i) isSound_[i] = true;
    });
  }

  /// Where paper lies between the ink above and below.
  void FindGaps() {
    constexpr std::size_t kEnough = 5;  // more than grain or a hole in the ink
    const auto isBetween = [&](std::size_t i) {
      const Vector at = stroke_.At(i);
      for (const double dx : {-1.0, 0.0, 1.0})
        if (stroke_.HasInk({at.X + dx, at.Y}, 0.5)) return false;
      const auto inkWithin = [&](int sign) {
        for (int row = 1; row <= 3; ++row)
          if (stroke_.HasInk({at.X, at.Y + sign * row}, 0.5)) return true;
        return false;
      };
      return inkWithin(-1) && inkWithin(1);
    };
    ForStretches(isBetween, [&](std::size_t first, std::size_t end) {
      if (end - first >= kEnough) Mark(first, end, InkVerdict::BetweenStrokes);
    });
  }

  /// Where the ink is far thicker than the stroke for longer than a symbol on it.
  void FindThick() const {
    const auto isThick = [&](std::size_t i) {
      return stroke_.ThicknessAt(i) > 2 * stroke_.UsualThickness() + 3;
    };
    ForStretches(isThick, [&](std::size_t first, std::size_t end) {
      double thickest = 0;
      for (std::size_t i = first; i < end; ++i)
        thickest = std::max(thickest, stroke_.ThicknessAt(i));
      if (stroke_.LengthAt(end - 1) - stroke_.LengthAt(first) > 2 * thickest + 4)
        Mark(first, end, InkVerdict::BetweenStrokes);
    });
  }

  /// Where neighbours lie apart aside of the course, and nothing is drawn from one to the other.
  void FindJumps() {
    constexpr double kFar = 6;
    for (std::size_t i = 1; i < stroke_.Size(); ++i) {
      const Vector step = stroke_.At(i) - stroke_.At(i - 1);
      if (step.Length() <= kFar || stroke_.LengthAt(i - 1) < kFar) continue;
      const Vector before =
          stroke_.At(i - 1) - stroke_.AtLength(stroke_.LengthAt(i - 1) - 2 * kFar);
      if (AngleOf(before, step) < 35) continue;
      int ink = 0, all = 0;
      for (double k = 2; k < step.Length() - 1; ++k, ++all)
        ink += stroke_.HasInk(stroke_.At(i - 1) + k * Unit(step), 1) ? 1 : 0;
      if (2 * ink < all) Mark(i - 1, i + 1, InkVerdict::Leap);
    }
  }

  /// Where the track leaves the smooth course on either side of it, though the course has the
  /// stroke's ink: over what touches the stroke, such as a letter.
  void FindDetours() {
    constexpr double kAway = 2.4;       // pixels
    constexpr std::size_t kEnough = 2;  // points
    std::vector<bool> isAside(stroke_.Size());
    for (std::size_t i = 0; i < stroke_.Size(); ++i) {
      for (const double h : {6.0, 10.0, 15.0}) {
        const double here = stroke_.LengthAt(i);
        if (here < 2 * h || here > stroke_.Length() - 2 * h) break;
        const Vector a = stroke_.AtLength(here - 2 * h), b = stroke_.AtLength(here - h),
                     c = stroke_.AtLength(here + h), d = stroke_.AtLength(here + 2 * h);
        // The sides of a narrow peak are no course across it.
        if ((c - b).Length() < 0.7 * h) continue;
        // The cubic through the four at even intervals.
        const Vector course = (1 / 6.0) * (4 * (b + c) - (a + d));
        if (AsideOf(stroke_.At(i) - course, Unit(c - b)) < kAway) continue;
        if (!stroke_.HasInk(course, 0.5, stroke_.ShadeOn(here - 2 * h, here - h)) &&
            !stroke_.HasInk(course, 0.5, stroke_.ShadeOn(here + h, here + 2 * h)))
          continue;
        // A sharp bend has no ink where it would be without it.
        const Vector middle = 0.5 * (b + c);
        if ((middle - course).Length() > 1.5 && !stroke_.HasInk(middle, 0.5)) continue;
        isAside[i] = true;
        break;
      }
    }
    ForStretches([&](std::size_t i) { return isAside[i]; },
                 [&](std::size_t first, std::size_t end) {
                   if (end - first >= kEnough) Mark(first, end, InkVerdict::Leap);
                 });
  }

  /// Where the track bends, and ink goes straight on both from before and from behind: it crosses,
  /// and the track has changed over.
  void FindLeaps() {
    constexpr double kWindow = 12;              // pixels by which a direction is told
    constexpr double kLeast = 15, kPlain = 25;  // degrees
    const double aside = 0.5 * stroke_.UsualThickness() + 2;
    const double reach = aside + kWindow;
    double looked = -1e9;
    for (std::size_t i = 0; i < stroke_.Size(); ++i) {
      const double here = stroke_.LengthAt(i);
      if (here < reach || here > stroke_.Length() - reach || here < looked + 2) continue;
      const Vector from = stroke_.AtLength(here - aside), to = stroke_.AtLength(here + aside);
      const Vector before = from - stroke_.AtLength(here - reach),
                   after = stroke_.AtLength(here + reach) - to;
      const double angle = AngleOf(before, after);
      if (angle < kLeast) continue;
      looked = here;
      const double ahead =
          stroke_.GoesOn(from, before, here, 1, angle, stroke_.ShadeOn(here - reach, here - aside));
      const double behind = stroke_.GoesOn(to, -1 * after, here, -1, angle,
                                           stroke_.ShadeOn(here + aside, here + reach));
      // Dashes show less of themselves; at a plain bend, what is solid on one side is enough.
      const bool isPlain = angle >= kPlain && std::max(ahead, behind) >= 0.85;
      if (std::min(ahead, behind) < 0.5 && !isPlain) continue;
      if (stroke_.TurnAt(here, aside, reach + kWindow) < 0.6 * angle) continue;
      std::size_t first = i, end = i + 1;
      while (first > 0 && stroke_.LengthAt(first - 1) >= here - aside) --first;
      while (end < stroke_.Size() && stroke_.LengthAt(end) <= here + aside) ++end;
      Mark(first, end, InkVerdict::Leap);
    }
  }

  const Track& track_;
  std::vector<InkVerdict>& verdicts_;
  TracedStroke stroke_;
  std::vector<bool> isSound_;  // whatever else is drawn there
};

}  // namespace

void CheckTracks(InkSight& sight, std::span<const PlotPosition> points,
                 const std::optional<PlotFrame>& frame, std::vector<InkVerdict>& verdicts) {
  for (const Track& track : TracksOf(points))
    TrackJudge(sight, points, track, frame, verdicts).Judge();
}

}  // namespace graphize
