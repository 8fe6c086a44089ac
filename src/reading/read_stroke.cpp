#include "reading/read_stroke.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/median.h"
#include "base/translation.h"
#include "reading/frame_ends.h"
#include "reading/free_follower.h"
#include "reading/narrow_peaks.h"
#include "reading/pixel_set.h"
#include "reading/sharp_corners.h"
#include "reading/stroke_crossings.h"
#include "reading/stroke_crowds.h"
#include "reading/stroke_ends.h"
#include "reading/stroke_tips.h"
#include "reading/stroke_tolerance.h"

namespace graphize {

namespace {

constexpr double kMostGuessed = 1;  // standard uncertainty that is told, pixels
constexpr double kLeastTold = 3;    // of the ink beyond a turn, pixels
constexpr int kLeastExtent = 20;    // of a curve, pixels; less is a letter or a symbol

struct Followed {
  std::vector<StrokeSample> Samples;
  StrokeKind Kind;
  std::vector<std::string> Doubts;
  MapWalls Walls;  // that the map has for it

  std::ptrdiff_t Seen() const {
    return std::count_if(Samples.begin(), Samples.end(),
                         [](const StrokeSample& sample) { return sample.IsSeen; });
  }
};

Followed Follow(InkMap& map, const InkBlends& blends, PathPixel start, const PathCosts& costs,
                const std::vector<PathPixel>& through, const PictureOperation& operation) {
  Followed followed;
  const std::vector<PathPixel> roughly = FindPath(map, start, costs, through, operation);
  if (operation.Stopped) return followed;
  followed.Kind = KindOf(map, roughly);
  const auto half = [&](int step) {
    return FollowThroughCrossings(map, start, step, costs, through, followed.Kind, operation,
                                  followed.Walls, followed.Doubts);
  };
  const HalfStroke left = half(-1), right = half(1);
  if (operation.Stopped) return followed;
  std::vector<PathPixel> path(left.Path.rbegin(), left.Path.rend());
  path.insert(path.end(), right.Path.begin() + 1, right.Path.end());
  followed.Samples = SamplesOf(map, path, followed.Kind, &blends);
  const int middle = static_cast<int>(left.Path.size()) - 1;
  const auto hide = [&](int first, int last) {
    for (StrokeSample& sample : followed.Samples)
      if (sample.Pixel >= first && sample.Pixel <= last && sample.IsSeen) {
        sample.IsSeen = false;
        sample.IsCrowded = true;
      }
  };
  if (!ToleranceOf(followed.Samples, followed.Kind).IsData)
    SettleCrowds(map, path, followed.Kind.Width, followed.Samples);
  for (const auto& [first, last] : left.Merged) hide(middle - last, middle - first);
  for (const auto& [first, last] : right.Merged) hide(middle + first, middle + last);
  return followed;
}

/// Whether the way goes back in x by more than a stroke's width does.
bool TurnsBack(const std::vector<PathPixel>& path, const StrokeKind& kind) {
  const double least = 2 * kind.Width + 6;
  int left = path.front().X, right = left;  // since the last turn
  bool wentLeft = false, wentRight = false;
  for (const PathPixel& at : path) {
    if (at.X - left > least) wentRight = true, right = std::max(right, at.X);
    if (right - at.X > least) wentLeft = true, left = std::min(left, at.X);
    left = std::min(left, at.X);
    right = std::max(right, at.X);
    if (wentLeft && wentRight) return true;
  }
  return false;
}

/// How far a stroke may be interrupted: dashes and dots tell by their own gaps.
double LongestGap(const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  std::vector<double> gaps;
  for (std::size_t i = 0; i < samples.size();) {
    std::size_t end = i;
    while (end < samples.size() && samples[end].IsGap) ++end;
    if (end > i && i > 0 && end < samples.size())
      gaps.push_back(
          std::hypot(samples[end].X() - samples[i - 1].X(), samples[end].Y() - samples[i - 1].Y()));
    i = std::max(end, i + 1);
  }
  const double solid = 20 + 2 * kind.Width;
  if (gaps.size() < 6) return solid;
  return std::max(2.6 * Median(std::move(gaps)), 0.5 * solid);
}

/// Whether the straight way from one to the other leads over a wall.
bool IsWalledOff(const StrokeSample& from, const StrokeSample& to,
                 const std::vector<ReadingWall>& walls) {
  const double dx = to.X() - from.X(), dy = to.Y() - from.Y(), squared = dx * dx + dy * dy;
  return std::any_of(walls.begin(), walls.end(), [&](const ReadingWall& wall) {
    const double x = wall.X - from.X(), y = wall.Y - from.Y();
    const double t = squared > 0 ? std::clamp((x * dx + y * dy) / squared, 0.0, 1.0) : 0;
    return std::hypot(x - t * dx, y - t * dy) <= wall.Radius();
  });
}

/// Ends the course at walls that it went round over paper, and at gaps that are too long to be the
/// same stroke's, seen from the start on.
void CutAtGaps(Followed& followed, PathPixel start, const std::vector<ReadingWall>& walls) {
  std::vector<StrokeSample>& samples = followed.Samples;
  const double longest = LongestGap(samples, followed.Kind);
  const auto nearest = std::min_element(samples.begin(), samples.end(),
                                        [&](const StrokeSample& a, const StrokeSample& b) {
                                          const auto distance = [&](const StrokeSample& s) {
                                            return std::hypot(s.X() - start.X, s.Y() - start.Y);
                                          };
                                          return distance(a) < distance(b);
                                        });
  const int count = static_cast<int>(samples.size());
  const auto end = [&](int step) {
    int last = static_cast<int>(nearest - samples.begin());
    for (int i = last; i >= 0 && i < count; i += step) {
      const StrokeSample& sample = samples[static_cast<std::size_t>(i)];
      if (sample.IsGap) continue;
      const StrokeSample& before = samples[static_cast<std::size_t>(last)];
      if (std::abs(i - last) > 1 &&
          (std::hypot(sample.X() - before.X(), sample.Y() - before.Y()) > longest ||
           IsWalledOff(before, sample, walls)))
        break;
      last = i;
    }
    return last;
  };
  if (nearest == samples.end()) return;
  const int first = end(-1), last = end(1);
  samples = {samples.begin() + first, samples.begin() + last + 1};
}

/// Pixels of clear ink: the samples' own, and what hangs on to them that is not theirs.
struct InkCount {
  double Taken = 0, Left = 0;
};
InkCount CountInk(const InkMap& map, const std::vector<StrokeSample>& samples,
                  const StrokeKind& kind, const PictureOperation& operation) {
  InkCount count;
  PixelSet met(map.Width);
  std::vector<PathPixel> rim;
  for (const StrokeSample& sample : samples) {
    if (operation.Stopped) return count;
    const double chord = kind.Width * std::sqrt(1 + sample.Slope * sample.Slope);
    const int half = static_cast<int>(std::ceil(0.5 * chord)) + 1;
    const int middle = static_cast<int>(std::lround(sample.Middle));
    for (int across = middle - half; across <= middle + half; ++across) {
      const PathPixel at =
          sample.AlongRow ? PathPixel{across, sample.At} : PathPixel{sample.At, across};
      if (map.At(at.X, at.Y) > InkMap::kFull || !met.Add(at.X, at.Y)) continue;
      count.Taken += map.IsClear(at.X, at.Y) ? 1 : 0;
      rim.push_back(at);
    }
  }
  while (!rim.empty() && !operation.Stopped) {
    const PathPixel at = rim.back();
    rim.pop_back();
    for (int y = at.Y - 1; y <= at.Y + 1; ++y)
      for (int x = at.X - 1; x <= at.X + 1; ++x) {
        if (!map.IsClear(x, y) || !met.Add(x, y)) continue;
        ++count.Left;
        rim.push_back({x, y});
      }
  }
  return count;
}

void FinishCourse(const InkMap& map, Followed& followed, PathPixel start,
                  const std::vector<ReadingWall>& walls) {
  CutAtGaps(followed, start, walls);
  FinishEnds(map, followed.Samples, followed.Kind);
}

/// From left to right; with gaps where that finds more; and wherever it leads where a way from left
/// to right leaves much of the ink out.
Followed FollowSomehow(InkMap& map, const InkBlends& blends, PathPixel start,
                       const ReadingRequest& request, const PictureOperation& operation) {
  const std::vector<PathPixel>& through = request.Through;
  Followed followed = Follow(map, blends, start, kSolidStroke, through, operation);
  if (operation.Stopped) return followed;
  if (2 * followed.Samples.size() < static_cast<std::size_t>(map.Width)) {
    followed.Walls.TakeDown(map);
    Followed broken = Follow(map, blends, start, kBrokenStroke, through, operation);
    if (operation.Stopped) return broken;
    if (100 * broken.Seen() > 115 * followed.Seen()) {
      followed = std::move(broken);
    } else {
      broken.Walls.TakeDown(map);
      followed.Walls.PutUp(map);
    }
  }
  FinishCourse(map, followed, start, request.Walls);
  const InkCount ink = CountInk(map, followed.Samples, followed.Kind, operation);
  if (ink.Left < 0.25 * ink.Taken || operation.Stopped) return followed;
  followed.Walls.TakeDown(map);
  Followed free;
  free.Kind = followed.Kind;
  const FreePath path = FollowFreely(map, start, free.Kind, operation);
  if (operation.Stopped) return free;
  // Where two curves end at one place, the way from one to the other is a tip.
  if (path.Path.size() > 1 && TurnsBack(path.Path, free.Kind) && (path.IsClosed || !path.HasTip)) {
    free.Samples = SamplesOf(map, path.Path, free.Kind, &blends);
    FinishCourse(map, free, start, request.Walls);
    if (CountInk(map, free.Samples, free.Kind, operation).Taken > 1.12 * ink.Taken) return free;
  }
  followed.Walls.PutUp(map);
  return followed;
}

/// Where the ink goes on beyond a turn that is told, and the points there become as uncertain along
/// the way out of it.
void TellInkBeyondTurns(const std::vector<InkBeyondTurn>& turns, CurveReading& reading) {
  std::vector<InkBeyondTurn> told;
  for (const InkBeyondTurn& turn : turns) {
    for (std::size_t i = turn.First; i <= turn.Last; ++i) {
      CurvePoint& point = reading.Points[i];
      point.Sigma = std::hypot(point.Sigma, 0.5 * turn.Length);
      point.AcrossX = turn.OutX;
      point.AcrossY = turn.OutY;
    }
    if (turn.Length >= kLeastTold) told.push_back(turn);
  }
  if (told.empty()) return;
  const long most = std::lround(std::ranges::max(told, {}, &InkBeyondTurn::Length).Length);
  if (told.size() == 1) {
    reading.Doubts.push_back(Tr("at %1 its ink goes %2 pixels farther than the curve that was read",
                                PlaceText(told.front().X, told.front().Y), most));
    return;
  }
  constexpr std::size_t kMostPlaces = 6;
  std::string places;
  for (std::size_t i = 0; i < std::min(told.size(), kMostPlaces); ++i)
    places += (i > 0 ? "; " : "") + PlaceText(told[i].X, told[i].Y);
  if (told.size() > kMostPlaces) places += "; ...";
  reading.Doubts.push_back(
      Tr("at %1 turns its ink goes up to %2 pixels farther than the curve that was read: %3",
         told.size(), most, places));
}

bool LeadsThrough(const std::vector<CurvePoint>& points, PathPixel at) {
  return std::any_of(points.begin(), points.end(), [&](const CurvePoint& point) {
    return std::hypot(point.X - at.X, point.Y - at.Y) <= kClickReach;
  });
}

CurveReading ReadOneStroke(InkMap& map, const InkBlends& blends, PathPixel start,
                           const ReadingRequest& request, const PictureOperation& operation) {
  CurveReading reading;
  Followed followed = FollowSomehow(map, blends, start, request, operation);
  if (!operation.Stopped) reading.Points = FitCourse(followed.Samples, followed.Kind, operation);
  if (operation.Stopped) {
    followed.Walls.TakeDown(map);
    reading.IsStopped = true;
    return reading;
  }
  reading.Kind = followed.Kind;
  reading.Doubts = followed.Doubts;
  double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
  for (const CurvePoint& point : reading.Points) {
    left = std::min(left, point.X);
    right = std::max(right, point.X);
    top = std::min(top, point.Y);
    bottom = std::max(bottom, point.Y);
  }
  if (std::max(right - left, bottom - top) < kLeastExtent) {
    followed.Walls.TakeDown(map);
    reading.Points.clear();
    return reading;
  }
  if (!ToleranceOf(followed.Samples, followed.Kind).IsData)
    SharpenCorners(map, followed.Kind, reading.Points);
  const CurvePoint& worst = *std::ranges::max_element(
      reading.Points, {}, [](const CurvePoint& at) { return at.IsBridged ? at.Sigma : 0; });
  if (worst.IsBridged && worst.Sigma > kMostGuessed)
    reading.Doubts.push_back(TrCount("at %2 the curve is not seen, and may be off by %1 pixel",
                                     "at %2 the curve is not seen, and may be off by %1 pixels",
                                     std::lround(2 * worst.Sigma), PlaceText(worst.X, worst.Y)));
  ClimbNarrowPeaks(map, reading.Kind, reading.Points, followed.Samples);
  TellInkBeyondTurns(FindInkBeyondTurns(map, reading.Points, reading.Kind), reading);
  for (const PathPixel& at : request.Through)
    if (!LeadsThrough(reading.Points, at)) {
      reading.Missed.push_back(at);
      reading.Doubts.push_back(
          Tr("the curve was not found to go through %1", PlaceText(at.X, at.Y)));
    }
  const InkCount found = CountInk(map, followed.Samples, followed.Kind, operation);
  followed.Walls.TakeDown(map);
  if (found.Left > 0.2 * found.Taken)
    reading.Doubts.push_back(
        Tr("ink of its colour that joins the curve is left out: where a curve turns back or "
           "branches, one way is followed"));
  return reading;
}

/// Whether most of the one are places of the other, too: a course that was followed twice.
bool IsSameCourse(const std::vector<CurvePoint>& one, const std::vector<CurvePoint>& other,
                  double width) {
  constexpr std::size_t kStep = 8;  // of points about a pixel apart
  std::size_t all = 0, shared = 0;
  for (std::size_t i = 0; i < one.size(); i += kStep, ++all)
    if (std::ranges::any_of(other, [&](const CurvePoint& point) {
          return Distance(point, one[i]) < 1 + 0.5 * width;
        }))
      ++shared;
  return 2 * shared > all;
}

/// Goes on behind an end that lies in a side of the frame, where the other half of a turn that it
/// hides comes out of the same side; and says so, or that the curve may go on unseen.
void GoOnBehindFrame(CurveReading& reading, bool isLast, InkMap& map, const InkBlends& blends,
                     const ReadingRequest& request, const PictureOperation& operation) {
  std::vector<CurvePoint>& points = reading.Points;
  const auto end = FrameEndOf(map, points, isLast, reading.Kind);
  if (!end) return;
  const std::string place = PlaceText(end->At.X, end->At.Y);
  const auto tellUnseen = [&] {
    constexpr double kAlong = 0.86;  // cosine of 30 degrees
    if (end->Cosine >= kAlong)
      reading.Doubts.push_back(
          Tr("at %1 the curve goes into the frame, along which it may go on unseen", place));
  };
  const auto begin = InkBehind(map, *end);
  const bool isOwn =
      begin && std::ranges::any_of(points, [&](const CurvePoint& point) {
        return std::hypot(point.X - begin->X, point.Y - begin->Y) < 2 + reading.Kind.Width;
      });
  if (!begin || isOwn) return tellUnseen();
  constexpr double kHidden = 24;  // pixels from half to half
  CurveReading other = ReadOneStroke(map, blends, *begin, request, operation);
  if (other.Points.empty() || IsSameCourse(other.Points, points, reading.Kind.Width))
    return tellUnseen();
  const bool fromLast =
      Distance(other.Points.back(), end->At) < Distance(other.Points.front(), end->At);
  if (fromLast == isLast) std::ranges::reverse(other.Points);
  const CurvePoint& near = isLast ? other.Points.front() : other.Points.back();
  if (Distance(near, end->At) > kHidden || !FrameEndOf(map, other.Points, !isLast, other.Kind))
    return tellUnseen();
  points.insert(isLast ? points.end() : points.begin(), other.Points.begin(), other.Points.end());
  reading.Doubts.insert(reading.Doubts.end(), other.Doubts.begin(), other.Doubts.end());
  reading.Doubts.push_back(
      Tr("at %1 the frame hides where the curve turns: both halves are taken for one", place));
}

}  // namespace

std::string PlaceText(double x, double y) {
  return std::to_string(std::lround(x)) + "," + std::to_string(std::lround(y));
}

void DrawWalls(InkMap& map, const std::vector<ReadingWall>& walls) {
  for (const ReadingWall& wall : walls) {
    const double radius = wall.Radius();
    const int reach = static_cast<int>(std::ceil(radius));
    for (int y = wall.Y - reach; y <= wall.Y + reach; ++y)
      for (int x = wall.X - reach; x <= wall.X + reach; ++x)
        if (map.Contains(x, y) && std::hypot(x - wall.X, y - wall.Y) <= radius)
          map.Cell(x, y) = InkMap::kWall;
  }
}

InkPiece BoxOf(const std::vector<CurvePoint>& points) {
  const auto [left, right] = std::ranges::minmax(points, {}, &CurvePoint::X);
  const auto [top, bottom] = std::ranges::minmax(points, {}, &CurvePoint::Y);
  const auto whole = [](double at) { return static_cast<int>(std::lround(at)); };
  return {.Left = whole(left.X),
          .Right = whole(right.X),
          .Top = whole(top.Y),
          .Bottom = whole(bottom.Y)};
}

CurveReading ReadStroke(InkMap& map, const InkBlends& blends, PathPixel start,
                        const ReadingRequest& request, const PictureOperation& operation) {
  CurveReading reading = ReadOneStroke(map, blends, start, request, operation);
  if (reading.IsStopped || reading.Points.empty()) return reading;
  for (const bool isLast : {true, false})
    GoOnBehindFrame(reading, isLast, map, blends, request, operation);
  reading.IsStopped = operation.Stopped;
  return reading;
}

}  // namespace graphize
