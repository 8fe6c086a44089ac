#include "reading/free_follower.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <unordered_map>

namespace graphize {

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kHiddenShare = 0.55;  // what is not seen speaks neither for nor against a way
constexpr double kLeastAhead = 0.5;    // share of ink on the way ahead
constexpr std::size_t kMostPlaces = 400000;

struct Heading {
  double X = 0, Y = 0, Angle = 0;
};

class Follower {
 public:
  Follower(const InkMap& map, const StrokeKind& kind)
      : map_(map),
        width_(std::clamp(kind.Width, 1.0, 40.0)),
        step_(std::clamp(0.5 * width_, 1.0, 4.0)),
        ahead_(3 * width_ + 8),
        gap_(20 + 2 * width_) {}

  bool IsClosed = false;

  /// Both ways from the start, one place after the other.
  std::vector<Heading> Follow(PathPixel start, const PictureOperation& operation) {
    Heading here{static_cast<double>(start.X), static_cast<double>(start.Y), 0};
    here = Centred({here.X, here.Y, BestDirection(here)});
    std::vector<Heading> there = Walk(here, 1, operation);
    if (IsClosed) return there;
    std::vector<Heading> places =
        Walk({here.X, here.Y, here.Angle + std::numbers::pi}, -1, operation);
    std::reverse(places.begin(), places.end());
    if (!places.empty()) places.pop_back();
    places.insert(places.end(), there.begin(), there.end());
    return places;
  }

 private:
  double Ink(double x, double y) const {
    const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
    const double s = x - left, t = y - top;
    const auto at = [&](int column, int row) {
      const std::uint8_t value = map_.At(column, row);
      return value == InkMap::kWall     ? -1.0
             : value >= InkMap::kBeside ? kHiddenShare
                                        : value / static_cast<double>(InkMap::kFull);
    };
    return (1 - t) * ((1 - s) * at(left, top) + s * at(left + 1, top)) +
           t * ((1 - s) * at(left, top + 1) + s * at(left + 1, top + 1));
  }

  /// Mean ink along an arc that turns by `turn` over `length`.
  double InkAlong(const Heading& from, double turn, double length) const {
    const int count = static_cast<int>(length);
    double x = from.X, y = from.Y, sum = 0;
    for (int i = 0; i < count; ++i) {
      const double angle = from.Angle + turn * (i + 0.5) / count;
      x += std::cos(angle);
      y += std::sin(angle);
      sum += Ink(x, y);
    }
    return sum / count;
  }

  double BestDirection(const Heading& from) const {
    double best = -1, angle = 0;
    for (int degrees = 0; degrees < 360; degrees += 5) {
      const double there = InkAlong({from.X, from.Y, degrees * kDegree}, 0, ahead_);
      const double back = InkAlong({from.X, from.Y, (degrees + 180) * kDegree}, 0, ahead_);
      const double ink = there + 0.5 * back;
      if (ink <= best) continue;
      best = ink;
      angle = degrees * kDegree;
    }
    return angle;
  }

  /// Moved across to the middle of the stroke, where it is alone.
  Heading Centred(Heading at) const {
    const double nx = -std::sin(at.Angle), ny = std::cos(at.Angle);
    const double reach = 0.5 * width_ + 1.5;
    double ink = 0, moment = 0;
    for (double t = -reach; t <= reach; t += 0.5) {
      const double share = std::max(Ink(at.X + t * nx, at.Y + t * ny), 0.0);
      ink += 0.5 * share;
      moment += 0.5 * share * t;
    }
    if (ink < 0.4 * width_ || ink > 1.35 * width_ + 0.8) return at;
    const double shift = std::clamp(moment / ink, -0.5, 0.5);
    at.X += shift * nx;
    at.Y += shift * ny;
    at.Angle += std::atan(shift / ahead_);
    return at;
  }

  std::vector<Heading> Walk(Heading here, int side, const PictureOperation& operation) {
    std::vector<Heading> places = {here};
    Note(here, 0);
    double bend = 0, along = 0, doubled = 0;  // radians per pixel, pixels
    double doubledFrom = 0;
    std::size_t keep = 1;
    while (!operation.Stopped && places.size() < kMostPlaces) {
      double best = -1, turn = 0;
      for (int degrees = -70; degrees <= 70; degrees += 5) {
        const double ink = InkAlong(here, degrees * kDegree, ahead_);
        const double score = ink - 0.0016 * std::fabs(degrees - bend * ahead_ / kDegree);
        if (score <= best) continue;
        best = score;
        turn = degrees * kDegree;
      }
      if (InkAlong(here, turn, ahead_) < kLeastAhead) {
        // As far as the ink goes, then round a corner or over a gap.
        if (InkAlong(here, turn, std::max(2.0, step_)) < kLeastAhead) {
          const auto next = Resumed(here);
          if (!next) break;
          along += std::hypot(next->X - here.X, next->Y - here.Y);
          here = *next;
          bend = 0;
          places.push_back(here);
          Note(here, side * along);
          continue;
        }
      }
      const double part = step_ / ahead_;
      const double middle = here.Angle + 0.5 * turn * part;
      here = Centred({here.X + step_ * std::cos(middle), here.Y + step_ * std::sin(middle),
                      here.Angle + turn * part});
      bend += step_ / 12 * (turn / ahead_ - bend);
      along += step_;
      places.push_back(here);
      if (const auto met = Met(here, side * along)) {
        if (doubled == 0) {
          keep = places.size();
          doubledFrom = *met;
        }
        doubled += step_;
        if (doubled > 2 * width_ + 10) {
          places.resize(keep);
          IsClosed = std::fabs(doubledFrom) < ahead_;
          return places;
        }
      } else {
        doubled = 0;
      }
      Note(here, side * along);
    }
    return places;
  }

  /// Where the ink goes on after it has ended here: round a corner, or beyond a gap straight ahead.
  std::optional<Heading> Resumed(const Heading& here) const {
    std::optional<Heading> next;
    double least = 1e9;
    const auto consider = [&](const Heading& at, double cost) {
      if (cost >= least || InkAlong(at, 0, ahead_) < 0.75 || IsTaken(at)) return;
      least = cost;
      next = at;
    };
    for (int degrees = 20; degrees <= 150; degrees += 10)
      for (const int way : {-1, 1})
        for (const double back : {0.0, -0.5 * width_, -width_}) {
          const Heading corner{here.X + back * std::cos(here.Angle),
                               here.Y + back * std::sin(here.Angle),
                               here.Angle + way * degrees * kDegree};
          consider(corner, 0.1 * degrees);
        }
    if (next) return next;
    for (double distance = 2; distance <= gap_; ++distance)
      for (int degrees = -25; degrees <= 25; degrees += 5) {
        const double angle = here.Angle + degrees * kDegree;
        const double x = here.X + distance * std::cos(angle);
        const double y = here.Y + distance * std::sin(angle);
        for (const int turned : {-20, -10, 0, 10, 20})
          consider({x, y, angle + turned * kDegree},
                   distance + 0.3 * std::abs(degrees) + 0.1 * std::abs(turned));
      }
    return next;
  }

  // The way that was gone, by cells.

  struct Visit {
    Heading At;
    double Along = 0;  // pixels from the start, negative to the other side
  };
  static constexpr int kCell = 8;
  static std::int64_t CellOf(double x, double y) {
    return static_cast<std::int64_t>(std::floor(y / kCell)) * 100000 +
           static_cast<std::int64_t>(std::floor(x / kCell));
  }
  void Note(const Heading& at, double along) { visits_[CellOf(at.X, at.Y)].push_back({at, along}); }

  template <class Holds>
  std::optional<double> FindVisit(const Heading& at, const Holds& holds) const {
    const double near = 0.5 * width_ + 1;
    const int reach = static_cast<int>(near / kCell) + 1;
    for (int dy = -reach; dy <= reach; ++dy)
      for (int dx = -reach; dx <= reach; ++dx) {
        const auto cell = visits_.find(CellOf(at.X + dx * kCell, at.Y + dy * kCell));
        if (cell == visits_.end()) continue;
        for (const Visit& visit : cell->second)
          if (std::hypot(visit.At.X - at.X, visit.At.Y - at.Y) <= near && holds(visit))
            return visit.Along;
      }
    return std::nullopt;
  }
  /// Where this place on the way lies on a stretch that was gone before, and along it.
  std::optional<double> Met(const Heading& at, double along) const {
    return FindVisit(at, [&](const Visit& visit) {
      return std::fabs(visit.Along - along) > 3 * width_ + 12 &&
             std::fabs(std::cos(visit.At.Angle - at.Angle)) > 0.9;
    });
  }
  /// Whether the way from there is one that was gone already.
  bool IsTaken(const Heading& from) const {
    const double far = 0.6 * ahead_;
    const Heading at{from.X + far * std::cos(from.Angle), from.Y + far * std::sin(from.Angle),
                     from.Angle};
    return FindVisit(at,
                     [&](const Visit& visit) {
                       return std::fabs(std::cos(visit.At.Angle - at.Angle)) > 0.9;
                     })
        .has_value();
  }

  const InkMap& map_;
  double width_, step_, ahead_, gap_;
  std::unordered_map<std::int64_t, std::vector<Visit>> visits_;
};

/// Whether the way goes back in x round a corner.
bool HasTip(const std::vector<Heading>& places) {
  constexpr double kReach = 6, kTurned = 0.4;  // pixels to both sides; the cosine
  std::size_t before = 0, behind = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto away = [&](std::size_t k) {
      return std::hypot(places[k].X - places[i].X, places[k].Y - places[i].Y);
    };
    while (before + 1 < i && away(before + 1) >= kReach) ++before;
    behind = std::max(behind, i);
    while (behind + 1 < places.size() && away(behind) < kReach) ++behind;
    const double ax = places[i].X - places[before].X, ay = places[i].Y - places[before].Y;
    const double bx = places[behind].X - places[i].X, by = places[behind].Y - places[i].Y;
    const double lengths = std::hypot(ax, ay) * std::hypot(bx, by);
    if (lengths > 0.25 * kReach * kReach && ax * bx < 0 && ax * bx + ay * by < kTurned * lengths)
      return true;
  }
  return false;
}

}  // namespace

FreePath FollowFreely(const InkMap& map, PathPixel start, const StrokeKind& kind,
                      const PictureOperation& operation) {
  Follower follower(map, kind);
  const std::vector<Heading> places = follower.Follow(start, operation);
  std::vector<PathPixel> path;
  const auto add = [&](double x, double y) {
    const PathPixel pixel{static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
    if (path.empty() || !(path.back() == pixel)) path.push_back(pixel);
  };
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (i > 0) {
      const Heading &a = places[i - 1], &b = places[i];
      const int steps =
          static_cast<int>(std::ceil(2 * std::max(std::fabs(b.X - a.X), std::fabs(b.Y - a.Y))));
      for (int k = 1; k < steps; ++k)
        add(a.X + (b.X - a.X) * k / steps, a.Y + (b.Y - a.Y) * k / steps);
    }
    add(places[i].X, places[i].Y);
  }
  return {std::move(path), follower.IsClosed, HasTip(places)};
}

}  // namespace graphize
