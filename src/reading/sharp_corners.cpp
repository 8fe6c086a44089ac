#include "reading/sharp_corners.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

#include "base/vector.h"

namespace graphize {

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kLeastTurn = 20 * kDegree;
constexpr double kMostTurn = 150 * kDegree;  // beyond, it is a narrow peak
constexpr std::size_t kFewest = 4;           // points of an arm

Vector PlaceOf(const CurvePoint& point) {
  return {point.X, point.Y};
}

/// A straight part of the course, the way that this goes.
struct StraightArm {
  Vector Middle, Way;  // Way of length 1
  double Rms = 0;      // across it, pixels
};

/// The least squares' line, which has no favourite direction.
StraightArm ArmThrough(const CurvePoint* first, const CurvePoint* last) {
  const auto count = static_cast<double>(last - first + 1);
  StraightArm arm;
  for (const CurvePoint* at = first; at <= last; ++at)
    arm.Middle = arm.Middle + 1 / count * PlaceOf(*at);
  double xx = 0, xy = 0, yy = 0;
  for (const CurvePoint* at = first; at <= last; ++at) {
    const Vector away = PlaceOf(*at) - arm.Middle;
    xx += away.X * away.X, xy += away.X * away.Y, yy += away.Y * away.Y;
  }
  const double angle = 0.5 * std::atan2(2 * xy, xx - yy);
  arm.Way = {std::cos(angle), std::sin(angle)};
  if (Dot(arm.Way, PlaceOf(*last) - PlaceOf(*first)) < 0) arm.Way = -1 * arm.Way;
  const double across =
      arm.Way.X * arm.Way.X * yy + arm.Way.Y * arm.Way.Y * xx - 2 * arm.Way.X * arm.Way.Y * xy;
  arm.Rms = std::sqrt(std::max(across, 0.0) / count);
  return arm;
}

/// Where two arms meet, sharply or on a small arc.
struct Corner {
  Vector At;
  std::array<Vector, 5> Way;  // from the last point before it to the first one behind it
  StraightArm Before, Behind;
  std::size_t First = 0, Last = 0;  // the points that it takes the place of
  double Turn = 0;                  // from the one to the other, radians
  double Sigma = 0;

  /// Of length 1, out of the bend.
  Vector Out() const { return Unit(Before.Way - Behind.Way); }
};

class CornerFinder {
 public:
  CornerFinder(const InkMap& map, const StrokeKind& kind, const std::vector<CurvePoint>& points)
      : map_(map), kind_(kind), points_(points), way_(points.size()) {
    for (std::size_t i = 1; i < points.size(); ++i)
      way_[i] = way_[i - 1] + Distance(points[i], points[i - 1]);
  }

  std::vector<Corner> Find() const {
    std::vector<Corner> corners;
    const double beside = Beside(kLeastTurn);
    std::vector<double> turns(points_.size());
    for (std::size_t i = 0; i < points_.size(); ++i) turns[i] = TurnAt(i, beside);
    for (std::size_t i = 0; i < points_.size(); ++i) {
      if (turns[i] < kLeastTurn || !IsMost(turns, i, beside)) continue;
      const auto corner = CornerAt(i);
      if (!corner) continue;
      // What is disturbed by a corner may look like another one, that turns less.
      const bool overlaps = !corners.empty() && corner->First <= corners.back().Last + 1;
      if (overlaps && corner->Turn < corners.back().Turn) continue;
      if (overlaps) corners.pop_back();
      corners.push_back(*corner);
    }
    return corners;
  }

 private:
  /// How far along an arm a cut has ink of the other, pixels.
  double Beside(double turn) const {
    return 0.5 * kind_.Width * (1 + std::tan(0.5 * std::min(turn, kMostTurn))) + 1.5;
  }

  /// The point that lies so far along the way, or the last one before.
  std::size_t PointAt(double way) const {
    const auto behind = std::ranges::upper_bound(way_, way);
    return behind == way_.begin() ? 0 : static_cast<std::size_t>(behind - way_.begin()) - 1;
  }

  /// How far the course turns at a point, from what lies before and behind its corner, if it is
  /// one.
  double TurnAt(std::size_t i, double beside) const {
    constexpr double kLength = 6;
    if (way_[i] < beside + kLength || way_.back() - way_[i] < beside + kLength) return 0;
    const auto way = [&](double from, double to) {
      return PlaceOf(points_[PointAt(way_[i] + to)]) - PlaceOf(points_[PointAt(way_[i] + from)]);
    };
    return AngleOf(way(-beside - kLength, -beside), way(beside, beside + kLength)) * kDegree;
  }

  /// Whether it turns nowhere near by more; the middle of those that turn as much.
  bool IsMost(const std::vector<double>& turns, std::size_t i, double beside) const {
    const std::size_t first = PointAt(way_[i] - beside), last = PointAt(way_[i] + beside);
    constexpr double kAlike = 1e-3;
    std::size_t alikeFirst = i, alikeLast = i;
    for (std::size_t j = first; j <= last; ++j) {
      if (turns[j] > turns[i] + kAlike) return false;
      if (turns[j] < turns[i] - kAlike) continue;
      alikeFirst = std::min(alikeFirst, j);
      alikeLast = std::max(alikeLast, j);
    }
    return i == (alikeFirst + alikeLast) / 2;
  }

  /// The longest straight arm that begins so far from a point, before or behind it, or where the
  /// stroke is seen again.
  std::optional<StraightArm> ArmFrom(std::size_t i, double beside, int step) const {
    const double most = kind_.IsHard ? 0.4 : 0.15;  // rms, pixels
    double near = way_[i] + step * beside;
    if (near < 0 || near > way_.back()) return std::nullopt;
    const std::size_t seen = BeyondBridge(PointAt(near), step);
    if (points_[seen].IsBridged) return std::nullopt;
    near = way_[seen];
    for (const double length : {18.0, 12.0, 8.0, 5.0}) {
      const double far = near + step * length;
      if (far < 0 || far > way_.back()) continue;
      const std::size_t first = PointAt(std::min(near, far)), last = PointAt(std::max(near, far));
      if (last - first + 1 < kFewest) return std::nullopt;
      if (std::any_of(&points_[first], &points_[last] + 1,
                      [](const CurvePoint& at) { return at.IsBridged; }))
        continue;
      const StraightArm arm = ArmThrough(&points_[first], &points_[last]);
      if (arm.Rms <= most) return arm;
    }
    return std::nullopt;
  }

  /// From a point on, step by step, the first one that is seen, as far as a corner may hide it.
  std::size_t BeyondBridge(std::size_t i, int step) const {
    const double most = 2 * kind_.Width + 6;
    std::size_t seen = i;
    while (points_[seen].IsBridged && seen > 0 && seen + 1 < points_.size() &&
           std::fabs(way_[seen] - way_[i]) < most)
      seen += static_cast<std::size_t>(step);
    return seen;
  }

  std::optional<Corner> CornerAt(std::size_t i) const {
    Corner corner;
    double& turn = corner.Turn;
    turn = kLeastTurn;
    // The sharper it turns, the farther away its arms are undisturbed.
    for (int round = 0; round < 2; ++round) {
      const auto before = ArmFrom(i, Beside(turn), -1), behind = ArmFrom(i, Beside(turn), 1);
      if (!before || !behind) return std::nullopt;
      corner.Before = *before;
      corner.Behind = *behind;
      turn = AngleOf(before->Way, behind->Way) * kDegree;
      if (turn < kLeastTurn || turn > kMostTurn) return std::nullopt;
    }
    const Vector &u = corner.Before.Way, &v = corner.Behind.Way;
    const Vector across = corner.Behind.Middle - corner.Before.Middle;
    const double along = Cross(across, v) / Cross(u, v), back = Cross(across, u) / Cross(u, v);
    if (along <= 0 || back >= 0) return std::nullopt;
    corner.At = corner.Before.Middle + along * u;
    const auto away = [&](std::size_t j) { return (PlaceOf(points_[j]) - corner.At).Length(); };
    if (away(i) > kind_.Width + 2) return std::nullopt;
    const auto missing = MissingAt(corner);
    if (!missing) return std::nullopt;
    std::size_t first = i, last = i;
    while (first > 1 && away(first - 1) < Beside(turn)) --first;
    while (last + 2 < points_.size() && away(last + 1) < Beside(turn)) ++last;
    first = BeyondBridge(first - 1, -1) + 1;
    last = BeyondBridge(last + 1, 1) - 1;
    corner.First = first;
    corner.Last = last;
    Round(corner, *missing);
    if (!IsOff(corner) || !IsAlone(corner)) return std::nullopt;
    corner.Sigma = std::hypot(0.1, 0.25 * *missing,
                              std::max({corner.Before.Rms, corner.Behind.Rms,
                                        points_[first - 1].Sigma, points_[last + 1].Sigma}));
    return corner;
  }

  /// Puts the way on the arms and the arc that leaves so much of the corner out.
  void Round(Corner& corner, double missing) const {
    const Vector from = PlaceOf(points_[corner.First - 1]), to = PlaceOf(points_[corner.Last + 1]);
    const double half = 0.5 * corner.Turn;
    const double reach = std::min({missing * std::tan(half) / (1 / std::cos(half) - 1),
                                   (from - corner.At).Length(), (to - corner.At).Length()});
    corner.Way = {from, corner.At - reach * corner.Before.Way, corner.At - missing * corner.Out(),
                  corner.At + reach * corner.Behind.Way, to};
  }

  /// How far a place is from the way over the corner, pixels.
  static double Away(const Corner& corner, Vector place) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < corner.Way.size(); ++i) {
      const Vector way = corner.Way[i] - corner.Way[i - 1], there = place - corner.Way[i - 1];
      const double squared = Dot(way, way);
      const double part = squared > 0 ? std::clamp(Dot(there, way) / squared, 0.0, 1.0) : 0;
      least = std::min(least, (there - part * way).Length());
    }
    return least;
  }

  /// Whether any of the points lies beside the way over the corner, or is not seen.
  bool IsOff(const Corner& corner) const {
    constexpr double kLeast = 0.25;
    return std::any_of(
        &points_[corner.First], &points_[corner.Last] + 1,
        [&](const CurvePoint& at) { return at.IsBridged || Away(corner, PlaceOf(at)) > kLeast; });
  }

  /// Whether there is no other ink than the stroke's around it, such as a symbol's.
  bool IsAlone(const Corner& corner) const {
    const Vector &from = corner.Way.front(), &to = corner.Way.back();
    const double most = 0.5 * kind_.Width + 1;
    const auto [left, right] = std::minmax({from.X, to.X, corner.At.X});
    const auto [top, bottom] = std::minmax({from.Y, to.Y, corner.At.Y});
    for (int y = static_cast<int>(top - most); y <= bottom + most; ++y)
      for (int x = static_cast<int>(left - most); x <= right + most; ++x) {
        const Vector place{static_cast<double>(x), static_cast<double>(y)};
        if (!map_.IsClear(x, y) || Away(corner, place) <= most) continue;
        const auto isBehind = [&](Vector end) {  // where the arm goes on
          return Dot(place - end, end - corner.At) >= 0;
        };
        if (!isBehind(from) && !isBehind(to)) return false;
      }
    return true;
  }

  /// How much less ink lies beyond the corner than half a stroke, pixels; nothing where the ink
  /// does not end as a corner's does, or is not seen.
  std::optional<double> MissingAt(const Corner& corner) const {
    constexpr double kStep = 0.125;
    const double half = 0.5 * kind_.Width, cosine = std::cos(0.5 * corner.Turn);
    const Vector out = corner.Out();
    const double mitred = half / cosine + (kind_.IsHard ? 1 : 0.6);
    double ink = 0;
    for (double t = 0.5 * kStep; t < mitred + 1; t += kStep) {
      const auto share = ShareAt(corner.At + t * out);
      if (!share) return std::nullopt;
      ink += *share * kStep;
    }
    const double missing = half - ink;
    // Cuts through an arc whose inner edge is round, too, are as good as others.
    const double slightly = 0.3 + 0.05 * kind_.Width + (kind_.IsHard ? 0.4 : 0);
    const double tight = half * (1 / cosine - 1);
    if (ink > mitred || missing > std::max(slightly, tight)) return std::nullopt;
    return std::max(missing, 0.0);
  }

  /// Between four pixels; nothing where one is hidden.
  std::optional<double> ShareAt(Vector place) const {
    const double left = std::floor(place.X), top = std::floor(place.Y);
    const double u = place.X - left, v = place.Y - top;
    double share = 0;
    for (int j = 0; j < 2; ++j)
      for (int i = 0; i < 2; ++i) {
        const int column = static_cast<int>(left) + i, row = static_cast<int>(top) + j;
        if (map_.At(column, row) > InkMap::kFull) return std::nullopt;
        share += map_.Share(column, row) * (i == 0 ? 1 - u : u) * (j == 0 ? 1 - v : v);
      }
    return share;
  }

  const InkMap& map_;
  const StrokeKind& kind_;
  const std::vector<CurvePoint>& points_;
  std::vector<double> way_;  // to each point, pixels
};

/// At each whole column, or row where it is steep, from the one place up to the other.
void AddStraight(Vector from, Vector to, CurvePoint point, std::vector<CurvePoint>& points) {
  const Vector way = to - from, unit = Unit(way);
  const bool steep = std::fabs(way.Y) > std::fabs(way.X);
  const double begin = steep ? from.Y : from.X, end = steep ? to.Y : to.X;
  const int step = end > begin ? 1 : -1;
  for (int at = static_cast<int>(step > 0 ? std::floor(begin) : std::ceil(begin)) + step;
       (end - at) * step >= 0; at += step) {
    const Vector place = from + (at - begin) / (end - begin) * way;
    point.X = place.X;
    point.Y = place.Y;
    point.AcrossX = -unit.Y;
    point.AcrossY = unit.X;
    points.push_back(point);
  }
}

/// The points that take the place of a corner's.
std::vector<CurvePoint> PointsOver(const Corner& corner) {
  constexpr double kApart = 0.2;
  std::vector<CurvePoint> all, apart;
  for (std::size_t i = 1; i < corner.Way.size(); ++i) {
    CurvePoint at{.X = corner.Way[i].X, .Y = corner.Way[i].Y, .Sigma = corner.Sigma};
    AddStraight(corner.Way[i - 1], corner.Way[i], at, all);
    if (i != 2) continue;  // on the corner
    at.AcrossX = corner.Out().X;
    at.AcrossY = corner.Out().Y;
    all.push_back(at);
  }
  const CurvePoint end{.X = corner.Way.back().X, .Y = corner.Way.back().Y};
  for (const CurvePoint& at : all)
    if (Distance(at, end) >= kApart && (apart.empty() || Distance(at, apart.back()) >= kApart))
      apart.push_back(at);
  return apart;
}

}  // namespace

void SharpenCorners(const InkMap& map, const StrokeKind& kind, std::vector<CurvePoint>& points) {
  constexpr double kThin = 1.2;  // whose corners are less than half a pixel off
  if (kind.Width < kThin || kind.IsDotted || points.size() < 2 * kFewest) return;
  const std::vector<Corner> corners = CornerFinder(map, kind, points).Find();
  if (corners.empty()) return;
  std::vector<CurvePoint> sharp;
  auto next = points.begin();
  for (const Corner& corner : corners) {
    sharp.insert(sharp.end(), next, points.begin() + static_cast<std::ptrdiff_t>(corner.First));
    const std::vector<CurvePoint> over = PointsOver(corner);
    sharp.insert(sharp.end(), over.begin(), over.end());
    next = points.begin() + static_cast<std::ptrdiff_t>(corner.Last) + 1;
  }
  sharp.insert(sharp.end(), next, points.end());
  points = std::move(sharp);
}

}  // namespace graphize
