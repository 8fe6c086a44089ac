#include "reading/read_curve.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/translation.h"
#include "reading/plot_lines.h"
#include "reading/read_stroke.h"
#include "reading/written.h"

namespace graphize {

namespace {

constexpr double kOnLine = 2;        // pixels from a click to the line that it is on
constexpr int kBesideFrame = 5;      // pixels; what is read begins so near beside a frame
constexpr double kBesideLine = 2.5;  // pixels by which what is read lies farther away

/// The ink pixel to start at: near the click, and full rather than nearest.
std::optional<PathPixel> StartNear(const InkMap& map, double x, double y) {
  std::optional<PathPixel> best;
  double most = 0;
  const int cx = static_cast<int>(std::lround(x)), cy = static_cast<int>(std::lround(y));
  for (int row = cy - kClickReach; row <= cy + kClickReach; ++row) {
    for (int column = cx - kClickReach; column <= cx + kClickReach; ++column) {
      const double share = map.Share(column, row);
      const double distance = std::hypot(column - x, row - y);
      if (share < 0.3 || distance > kClickReach) continue;
      const double score = share / (1 + 0.5 * distance);
      if (score <= most) continue;
      most = score;
      best = {column, row};
    }
  }
  return best;
}

/// How far the nearest ink is, at most kClickReach.
double DistanceToInk(const InkMap& map, double x, double y) {
  double nearest = kClickReach;
  const int cx = static_cast<int>(std::lround(x)), cy = static_cast<int>(std::lround(y));
  for (int row = cy - kClickReach; row <= cy + kClickReach; ++row)
    for (int column = cx - kClickReach; column <= cx + kClickReach; ++column)
      if (map.Share(column, row) >= 0.3)
        nearest = std::min(nearest, std::hypot(column - x, row - y));
  return nearest;
}

/// What a reading is that lies in words, or is a sample in dashes.
std::string NameOfWritten(const CurveReading& reading, const PlotSurroundings& around) {
  int seen = 0, within = 0;
  for (const CurvePoint& point : reading.Points) {
    if (point.IsBridged) continue;
    const double u = around.Turn.U(point.X, point.Y), v = around.Turn.V(point.X, point.Y);
    ++seen;
    within += std::ranges::any_of(around.Texts,
                                  [&](const TextBox& text) { return text.Distance(u, v) <= 1.5; })
                  ? 1
                  : 0;
  }
  if (10 * within > 6 * seen) return Tr("a word, no curve");
  return IsLegendSample(BoxOf(reading.Points), around) ? Tr("a sample of the legend, no curve")
                                                       : std::string();
}

}  // namespace

CurveReading ReadCurve(const Raster& picture, const AxesFrame& frame,
                       const PlotSurroundings& around, const ReadingRequest& request,
                       PictureOperation& operation) {
  const double x = request.X, y = request.Y;
  CurveReading reading;
  const auto refused = [&](const std::string& found) {
    reading.Refusal = Tr("near %1 there is %2", PlaceText(x, y), found);
    return std::move(reading);
  };
  const auto stopped = [] {
    CurveReading none;
    none.IsStopped = true;
    return none;
  };
  const Paper paper = PaperOf(picture, &operation);
  if (operation.Stopped) return stopped();
  const std::vector<Rgb> directions = InkDirections(picture, paper, &operation);
  if (operation.Stopped) return stopped();
  const std::optional<Ink> ink = InkAt(picture, paper, directions, x, y, kClickReach);
  if (!ink)
    return refused(directions.empty() ? Tr("no curve: the picture has one colour")
                                      : Tr("only paper, no curve"));
  operation.To = 0.6;
  reading.Map = MapOf(picture, paper, directions, *ink, request.Tolerance, operation);
  InkMap& map = reading.Map;
  if (operation.Stopped) return stopped();
  DrawWalls(map, request.Walls);
  const double toInk = DistanceToInk(map, x, y);
  const auto nameAt = [&](const std::optional<PathPixel>& at) {
    const auto piece = at ? PieceAt(map, *at, std::max(map.Width, map.Height) / 2) : std::nullopt;
    return piece ? NameOfWritten(map, *piece, around) : std::string();
  };
  // Lines that are taken out cut a box, or a sample, in pieces.
  const std::string uncut = nameAt(StartNear(map, x, y));
  const std::vector<PlotLine> lines = TakeOutLines(map, frame, x, y, operation);
  operation.Advance(1);
  if (operation.Stopped) return stopped();
  const int column = static_cast<int>(std::lround(x)), row = static_cast<int>(std::lround(y));
  const std::optional<PathPixel> start = StartNear(map, x, y);
  // What lies beside the line that was clicked is not what was meant.
  if (!start || (toInk <= kOnLine && DistanceToInk(map, x, y) > toInk + kBesideLine) ||
      IsOnFrame(map, lines, frame, x, y, kBesideFrame)) {
    if (map.At(column, row) == InkMap::kWall)
      return refused(Tr("the frame, or what lies outside it"));
    return refused(Tr("a line of the grid or the frame, no curve"));
  }
  if (!uncut.empty()) return refused(uncut);
  if (const std::string written = nameAt(start); !written.empty()) return refused(written);
  WipeWritten(map, around);
  const InkBlends blends(picture, paper, directions, *ink);
  CurveReading found = ReadStroke(map, blends, *start, request, operation);
  if (found.IsStopped) return stopped();
  if (found.Points.empty()) return refused(Tr("too little ink for a curve: a letter or a symbol"));
  if (const std::string written = NameOfWritten(found, around); !written.empty())
    return refused(written);
  found.Map = std::move(map);
  found.Start = *start;
  for (const Rgb& direction : directions)
    found.Inks.push_back(paper.Colour - ink->Strength * direction);
  operation.Advance(1);
  return found;
}

}  // namespace graphize
