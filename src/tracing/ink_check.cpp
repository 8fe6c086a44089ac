#include "tracing/ink_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/translation.h"
#include "tracing/extraction_context.h"
#include "tracing/ink_sight.h"
#include "tracing/plot_box.h"
#include "tracing/point_jumps.h"
#include "tracing/point_tracks.h"

namespace graphize {

namespace {

/// Pixels by which a point may miss the ink: what is farther off is wrong.
constexpr double kBeside = 2;

/// Whether the place is the middle of something round or square that is drawn around it, as of a
/// hollow symbol.
bool IsInSymbol(InkSight& sight, PlotPosition at) {
  constexpr int kFarthest = 15;
  static constexpr std::array<std::array<int, 2>, 4> kWays = {{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};
  double least = 1e9, most = 0;
  for (const std::array<int, 2>& way : kWays) {
    const int dx = way[0], dy = way[1];
    const double unit = std::hypot(dx, dy);
    const auto distance = [&](int sign) {
      for (int i = 1; i <= kFarthest; ++i)
        if (sight.HasInkNear(double{at.Column} + sign * i * dx, double{at.Row} + sign * i * dy,
                             0.5))
          return i * unit;
      return 1e9;
    };
    const double ahead = distance(1), behind = distance(-1);
    if (ahead + behind > 1e6 || std::abs(ahead - behind) > 2 + 0.2 * (ahead + behind)) return false;
    least = std::min(least, ahead + behind);
    most = std::max(most, ahead + behind);
  }
  return most <= 2 * least;
}

/// Points on one side of the frame; what lies on it over a stretch of its length is not the curve.
class FrameSide {
 public:
  /// `depth` is how far the point lies beyond the side's inner edge, `along` where on the side.
  void Note(std::size_t point, float column, double along, double depth, double thickness) {
    if (depth >= 0) touching_.push_back({along, point, column, depth > thickness});
  }
  void Judge(std::vector<InkVerdict>& verdicts) {
    std::sort(touching_.begin(), touching_.end(),
              [](const Touching& a, const Touching& b) { return a.Along < b.Along; });
    for (std::size_t first = 0, end = 0; first < touching_.size(); first = end) {
      for (end = first + 1;
           end < touching_.size() && AreNeighbours(touching_[end - 1], touching_[end]);)
        ++end;
      const bool isStretch = touching_[end - 1].Along - touching_[first].Along >= kStretch;
      for (std::size_t i = first; i < end; ++i)
        if ((isStretch || touching_[i].Beyond) && verdicts[touching_[i].Point] == InkVerdict::OnInk)
          verdicts[touching_[i].Point] = InkVerdict::OnFrame;
    }
  }

 private:
  static constexpr double kNeighbours = 4;  // pixels apart
  static constexpr double kStretch = 12;  // more than a curve that ends at the frame touches of it
  struct Touching {
    double Along;
    std::size_t Point;
    float Column;
    bool Beyond;
  };
  /// Beside each other, or one after the other in a trace that falls down the side, of one to three
  /// points in a column.
  static bool AreNeighbours(const Touching& a, const Touching& b) {
    const std::size_t between = std::max(a.Point, b.Point) - std::min(a.Point, b.Point);
    return b.Along - a.Along <= kNeighbours || (between <= 5 && std::abs(b.Column - a.Column) <= 2);
  }
  std::vector<Touching> touching_;
};

void CheckFrame(const PlotFrame& frame, std::span<const PlotPosition> points,
                std::vector<InkVerdict>& verdicts) {
  const AxesFrame &inner = frame.Inner, &outer = frame.Outer;
  std::array<FrameSide, 4> sides;
  const std::array<double, 4> thickness = {inner.Left - outer.Left, outer.Right - inner.Right,
                                           inner.Top - outer.Top, outer.Bottom - inner.Bottom};
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double u = inner.U(points[i].Column, points[i].Row);
    const double v = inner.V(points[i].Column, points[i].Row);
    const std::array<double, 4> depth = {inner.Left - u, u - inner.Right, inner.Top - v,
                                         v - inner.Bottom};
    for (std::size_t side = 0; side < sides.size(); ++side)
      if (thickness[side] > 0)
        sides[side].Note(i, points[i].Column, side < 2 ? v : u, depth[side], thickness[side]);
  }
  for (FrameSide& side : sides) side.Judge(verdicts);
}

}  // namespace

const char* WordOf(InkVerdict verdict) {
  static constexpr const char* kWords[] = {"ink", "none", "frame", "between", "leap"};
  return kWords[static_cast<std::size_t>(verdict)];
}

std::vector<InkVerdict> CheckInk(const Raster& picture, const AxisCalibration& calibration,
                                 std::span<const PlotPosition> points) {
  std::vector<InkVerdict> verdicts(points.size(), InkVerdict::OnInk);
  if (picture.IsEmpty() || points.empty()) return verdicts;
  InkSight sight(picture);
  for (std::size_t i = 0; i < points.size(); ++i)
    if (!sight.HasInkNear(points[i].Column, points[i].Row, kBeside) &&
        !IsInSymbol(sight, points[i]))
      verdicts[i] = InkVerdict::NotOnInk;
  std::optional<PlotFrame> frame;
  if (calibration.IsComplete()) {
    const InkTest isInk = [&](int x, int y) { return sight.IsInk(x, y); };
    frame = FindPlotFrame(isInk, sight.Width(), sight.Height(), calibration);
    CheckFrame(*frame, points, verdicts);
  }
  CheckTracks(sight, points, frame, verdicts);
  CheckJumps(sight, points, verdicts);
  return verdicts;
}

bool InkCheck::AnyDoubtful() const {
  return std::any_of(Verdicts.begin(), Verdicts.end(),
                     [](InkVerdict verdict) { return verdict != InkVerdict::OnInk; });
}

PointSet InkCheck::Doubtful() const {
  std::vector<PointId> ids;
  for (std::size_t i = 0; i < Ids.size(); ++i)
    if (Verdicts[i] != InkVerdict::OnInk) ids.push_back(Ids[i]);
  return PointSet(std::move(ids));
}

std::string InkCheckText(std::span<const InkVerdict> verdicts) {
  static constexpr std::pair<InkVerdict, const char*> kTexts[] = {
      {InkVerdict::NotOnInk, Marked("%1 not on ink")},
      {InkVerdict::OnFrame, Marked("%1 on the frame")},
      {InkVerdict::BetweenStrokes, Marked("%1 between two strokes")},
      {InkVerdict::Leap, Marked("%1 where the direction leaps")}};
  std::string faults;
  for (const auto& [verdict, words] : kTexts)
    if (const auto count = std::count(verdicts.begin(), verdicts.end(), verdict); count > 0)
      faults += (faults.empty() ? "" : ", ") + Tr(words, count);
  return PointCount(static_cast<long long>(verdicts.size())) + ": " +
         (faults.empty() ? Tr("all on ink") : faults);
}

}  // namespace graphize
