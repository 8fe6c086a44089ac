#include "reading/sharp_corners.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

namespace graphize {

namespace {

constexpr double kLeastTurn = 20 * std::numbers::pi / 180;
constexpr double kMostTurn = 150 * std::numbers::pi / 180;  // beyond, it is a narrow peak
constexpr std::size_t kFewest = 4;                          // points of an arm

struct Place {
  double X = 0, Y = 0;
};

double Angle(const Place& from, const Place& to) {
  return std::fabs(std::atan2(from.X * to.Y - from.Y * to.X, from.X * to.X + from.Y * to.Y));
}

/// A straight part of the course, the way that this goes.
struct StraightArm {
  Place Middle, Way;  // Way of length 1
  double Rms = 0;     // across it, pixels
};

/// The least squares' line, which has no favourite direction.
StraightArm ArmThrough(const CurvePoint* first, const CurvePoint* last) {
  const auto count = static_cast<double>(last - first + 1);
  StraightArm arm;
  for (const CurvePoint* at = first; at <= last; ++at) {
    arm.Middle.X += at->X / count;
    arm.Middle.Y += at->Y / count;
  }
  double xx = 0, xy = 0, yy = 0;
  for (const CurvePoint* at = first; at <= last; ++at) {
    const double x = at->X - arm.Middle.X, y = at->Y - arm.Middle.Y;
    xx += x * x, xy += x * y, yy += y * y;
  }
  const double angle = 0.5 * std::atan2(2 * xy, xx - yy);
  arm.Way = {std::cos(angle), std::sin(angle)};
  if (arm.Way.X * (last->X - first->X) + arm.Way.Y * (last->Y - first->Y) < 0)
    arm.Way = {-arm.Way.X, -arm.Way.Y};
  const double across =
      arm.Way.X * arm.Way.X * yy + arm.Way.Y * arm.Way.Y * xx - 2 * arm.Way.X * arm.Way.Y * xy;
  arm.Rms = std::sqrt(std::max(across, 0.0) / count);
  return arm;
}

/// Where two arms meet, sharply or on a small arc.
struct Corner {
  Place At;
  std::array<Place, 5> Way;  // from the last point before it to the first one behind it
  StraightArm Before, Behind;
  std::size_t First = 0, Last = 0;  // the points that it takes the place of
  double Turn = 0;                  // from the one to the other, radians
  double Sigma = 0;

  /// Of length 1, out of the bend.
  Place Out() const {
    const double x = Before.Way.X - Behind.Way.X, y = Before.Way.Y - Behind.Way.Y;
    const double length = std::hypot(x, y);
    return {x / length, y / length};
  }
};

class CornerFinder {
 public:
  CornerFinder(const InkMap& map, const StrokeKind& kind, const std::vector<CurvePoint>& points)
      : map_(map), kind_(kind), points_(points), way_(points.size()) {
    for (std::size_t i = 1; i < points.size(); ++i)
      way_[i] =
          way_[i - 1] + std::hypot(points[i].X - points[i - 1].X, points[i].Y - points[i - 1].Y);
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
      const CurvePoint &a = points_[PointAt(way_[i] + from)], &b = points_[PointAt(way_[i] + to)];
      return Place{b.X - a.X, b.Y - a.Y};
    };
    return Angle(way(-beside - kLength, -beside), way(beside, beside + kLength));
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
      turn = Angle(before->Way, behind->Way);
      if (turn < kLeastTurn || turn > kMostTurn) return std::nullopt;
    }
    const Place &p = corner.Before.Middle, &u = corner.Before.Way;
    const Place &q = corner.Behind.Middle, &v = corner.Behind.Way;
    const double cross = u.X * v.Y - u.Y * v.X;
    const double along = ((q.X - p.X) * v.Y - (q.Y - p.Y) * v.X) / cross;
    const double back = ((q.X - p.X) * u.Y - (q.Y - p.Y) * u.X) / cross;
    if (along <= 0 || back >= 0) return std::nullopt;
    corner.At = {p.X + along * u.X, p.Y + along * u.Y};
    const auto away = [&](std::size_t j) {
      return std::hypot(points_[j].X - corner.At.X, points_[j].Y - corner.At.Y);
    };
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
    const Place &sharp = corner.At, &u = corner.Before.Way, &v = corner.Behind.Way;
    const CurvePoint &from = points_[corner.First - 1], &to = points_[corner.Last + 1];
    const double half = 0.5 * corner.Turn;
    const double most = std::min(std::hypot(from.X - sharp.X, from.Y - sharp.Y),
                                 std::hypot(to.X - sharp.X, to.Y - sharp.Y));
    const double reach = std::min(missing * std::tan(half) / (1 / std::cos(half) - 1), most);
    const Place out = corner.Out();
    corner.Way = {{{from.X, from.Y},
                   {sharp.X - reach * u.X, sharp.Y - reach * u.Y},
                   {sharp.X - missing * out.X, sharp.Y - missing * out.Y},
                   {sharp.X + reach * v.X, sharp.Y + reach * v.Y},
                   {to.X, to.Y}}};
  }

  /// How far a place is from the way over the corner, pixels.
  static double Away(const Corner& corner, double x, double y) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < corner.Way.size(); ++i) {
      const Place &from = corner.Way[i - 1], &to = corner.Way[i];
      const double dx = to.X - from.X, dy = to.Y - from.Y, u = x - from.X, v = y - from.Y;
      const double squared = dx * dx + dy * dy;
      const double part = squared > 0 ? std::clamp((u * dx + v * dy) / squared, 0.0, 1.0) : 0;
      least = std::min(least, std::hypot(u - part * dx, v - part * dy));
    }
    return least;
  }

  /// Whether any of the points lies beside the way over the corner, or is not seen.
  bool IsOff(const Corner& corner) const {
    constexpr double kLeast = 0.25;
    return std::any_of(
        &points_[corner.First], &points_[corner.Last] + 1,
        [&](const CurvePoint& at) { return at.IsBridged || Away(corner, at.X, at.Y) > kLeast; });
  }

  /// Whether there is no other ink than the stroke's around it, such as a symbol's.
  bool IsAlone(const Corner& corner) const {
    const CurvePoint &from = points_[corner.First - 1], &to = points_[corner.Last + 1];
    const double most = 0.5 * kind_.Width + 1;
    const auto [left, right] = std::minmax({from.X, to.X, corner.At.X});
    const auto [top, bottom] = std::minmax({from.Y, to.Y, corner.At.Y});
    for (int y = static_cast<int>(top - most); y <= bottom + most; ++y)
      for (int x = static_cast<int>(left - most); x <= right + most; ++x) {
        if (!map_.IsClear(x, y) || Away(corner, x, y) <= most) continue;
        const auto isBehind = [&](const CurvePoint& end) {  // where the arm goes on
          return (x - end.X) * (end.X - corner.At.X) + (y - end.Y) * (end.Y - corner.At.Y) >= 0;
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
    const Place out = corner.Out();
    const double mitred = half / cosine + (kind_.IsHard ? 1 : 0.6);
    double ink = 0;
    for (double t = 0.5 * kStep; t < mitred + 1; t += kStep) {
      const auto share = ShareAt(corner.At.X + t * out.X, corner.At.Y + t * out.Y);
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
  std::optional<double> ShareAt(double x, double y) const {
    const double left = std::floor(x), top = std::floor(y), u = x - left, v = y - top;
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

double Distance(const CurvePoint& a, const CurvePoint& b) {
  return std::hypot(a.X - b.X, a.Y - b.Y);
}

/// At each whole column, or row where it is steep, from the one place up to the other.
void AddStraight(const Place& from, const Place& to, CurvePoint point,
                 std::vector<CurvePoint>& points) {
  const double dx = to.X - from.X, dy = to.Y - from.Y, length = std::hypot(dx, dy);
  const bool steep = std::fabs(dy) > std::fabs(dx);
  const double begin = steep ? from.Y : from.X, end = steep ? to.Y : to.X;
  const int step = end > begin ? 1 : -1;
  for (int at = static_cast<int>(step > 0 ? std::floor(begin) : std::ceil(begin)) + step;
       (end - at) * step >= 0; at += step) {
    const double part = (at - begin) / (end - begin);
    point.X = from.X + part * dx;
    point.Y = from.Y + part * dy;
    point.AcrossX = -dy / length;
    point.AcrossY = dx / length;
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
  // From the last on: the places of those before stay what they are.
  for (auto corner = corners.rbegin(); corner != corners.rend(); ++corner) {
    const auto first = points.begin() + static_cast<std::ptrdiff_t>(corner->First);
    const auto last = points.begin() + static_cast<std::ptrdiff_t>(corner->Last) + 1;
    const std::vector<CurvePoint> over = PointsOver(*corner);
    points.insert(points.erase(first, last), over.begin(), over.end());
  }
}

}  // namespace graphize
