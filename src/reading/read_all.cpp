#include "reading/read_all.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "base/bit_map.h"
#include "reading/plot_lines.h"

namespace graphize {

namespace {

constexpr double kLeastPart = 0.2;    // of the plot's width or height that a curve goes along
constexpr int kMostTries = 14;        // of one ink
constexpr double kSameCourse = 0.9;   // part of a curve that lies on others: it was read before
constexpr double kMostOutside = 0.1;  // part of a curve outside the plot: else labels, a legend

/// What hangs together of an ink.
struct Piece {
  int Left = 0, Right = 0, Top = 0, Bottom = 0;
  PathPixel Start;  // on it, in its middle column

  int Extent() const { return std::max(Right - Left, Bottom - Top); }
};

std::vector<Piece> PiecesOf(const InkMap& map) {
  constexpr std::uint8_t kClear = InkMap::kFull * 2 / 5;
  BitMap seen(map.Width, map.Height);
  std::vector<Piece> pieces;
  std::vector<PathPixel> rim, pixels;
  for (int y = 0; y < map.Height; ++y)
    for (int x = 0; x < map.Width; ++x) {
      const auto take = [&](int u, int v) {
        const std::uint8_t value = map.At(u, v);
        if (value < kClear || value > InkMap::kFull || seen.Get(u, v)) return;
        seen.Set(u, v);
        rim.push_back({u, v});
      };
      take(x, y);
      if (rim.empty()) continue;
      Piece piece{x, x, y, y, {x, y}};
      pixels.clear();
      while (!rim.empty()) {
        const PathPixel at = rim.back();
        rim.pop_back();
        pixels.push_back(at);
        piece.Left = std::min(piece.Left, at.X);
        piece.Right = std::max(piece.Right, at.X);
        piece.Bottom = std::max(piece.Bottom, at.Y);
        for (int v = -1; v <= 1; ++v)
          for (int u = -1; u <= 1; ++u) take(at.X + u, at.Y + v);
      }
      const int middle = (piece.Left + piece.Right) / 2;
      piece.Start = *std::min_element(pixels.begin(), pixels.end(), [&](PathPixel a, PathPixel b) {
        const auto key = [&](PathPixel at) {
          return std::pair(std::abs(at.X - middle), -static_cast<int>(map.At(at.X, at.Y)));
        };
        return key(a) < key(b);
      });
      pieces.push_back(piece);
    }
  return pieces;
}

/// Whether so little of it is seen that it is single symbols; of dotted curves it is a third.
bool IsScattered(const CurveReading& reading) {
  const auto bridged = std::count_if(reading.Points.begin(), reading.Points.end(),
                                     [](const CurvePoint& point) { return point.IsBridged; });
  return 10 * bridged > 7 * static_cast<std::ptrdiff_t>(reading.Points.size());
}

/// How much of a curve lies outside the plot, 0 to 1. Strokes that end on its frame reach a little
/// beyond.
double PartOutside(const CurveReading& reading, const AxesFrame& frame) {
  const double reach = 3 + 0.5 * reading.Kind.Width;
  const auto outside =
      std::count_if(reading.Points.begin(), reading.Points.end(), [&](const CurvePoint& point) {
        const double u = frame.U(point.X, point.Y), v = frame.V(point.X, point.Y);
        return u < frame.Left - reach || u > frame.Right + reach || v < frame.Top - reach ||
               v > frame.Bottom + reach;
      });
  return static_cast<double>(outside) / static_cast<double>(reading.Points.size());
}

/// How much of a curve lies on the pixels, 0 to 1.
double PartAmong(const CurveReading& reading, const BitMap& taken) {
  std::size_t among = 0;
  for (const CurvePoint& point : reading.Points)
    among +=
        taken.Get(static_cast<int>(std::lround(point.X)), static_cast<int>(std::lround(point.Y)))
            ? 1
            : 0;
  return static_cast<double>(among) / static_cast<double>(reading.Points.size());
}

/// Sets the pixels within `reach` of the curve's course.
void Take(BitMap& taken, const CurveReading& reading, int reach) {
  for (const CurvePoint& point : reading.Points)
    for (int v = -reach; v <= reach; ++v)
      for (int u = -reach; u <= reach; ++u) {
        const int x = static_cast<int>(std::lround(point.X)) + u,
                  y = static_cast<int>(std::lround(point.Y)) + v;
        if (x >= 0 && x < taken.Width() && y >= 0 && y < taken.Height()) taken.Set(x, y);
      }
}

/// Where the samples of a legend lie: short level strokes that begin in one column, of different
/// inks. A row for each ink, absent where it has none.
std::vector<std::optional<int>> LegendRows(const std::vector<std::vector<Piece>>& pieces) {
  const auto isSample = [](const Piece& piece) {
    const int width = piece.Right - piece.Left + 1, height = piece.Bottom - piece.Top + 1;
    return width >= 10 && width <= 90 && height <= 12 && width >= 3 * height;
  };
  std::map<int, std::size_t> inksAt;
  for (const auto& ofInk : pieces) {
    std::vector<int> columns;
    for (const Piece& piece : ofInk)
      if (isSample(piece))
        for (int x = piece.Left - 1; x <= piece.Left + 1; ++x) columns.push_back(x);
    std::sort(columns.begin(), columns.end());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
    for (const int x : columns) ++inksAt[x];
  }
  const auto best =
      std::max_element(inksAt.begin(), inksAt.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  std::vector<std::optional<int>> rows(pieces.size());
  if (best == inksAt.end() || best->second < 2) return rows;
  for (std::size_t i = 0; i < pieces.size(); ++i)
    for (const Piece& piece : pieces[i])
      if (!rows[i] && isSample(piece) && std::abs(piece.Left - best->first) <= 1)
        rows[i] = piece.Top;
  return rows;
}

}  // namespace

PlotReading ReadAllCurves(const Raster& picture, const AxisCalibration& calibration,
                          const std::vector<ReadingWall>& walls, PictureOperation& operation) {
  PlotReading all;
  const auto stopped = [] {
    PlotReading none;
    none.IsStopped = true;
    return none;
  };
  const Paper paper = PaperOf(picture, &operation);
  const std::vector<Rgb> directions = InkDirections(picture, paper, &operation);
  if (operation.Stopped) return stopped();
  const std::vector<PictureInk> inks = InksOf(picture, paper);
  const AxesFrame frame = FrameOf(calibration, picture.Width(), picture.Height());
  const double u = 0.5 * (frame.Left + frame.Right), v = 0.5 * (frame.Top + frame.Bottom);
  const double middleX = u * frame.Cos - v * frame.Sin, middleY = u * frame.Sin + v * frame.Cos;
  // Axis points need not stand at the plot's ends, and may stand close together.
  const double wide = std::max(frame.Right - frame.Left, 0.5 * picture.Width()),
               high = std::max(frame.Bottom - frame.Top, 0.5 * picture.Height());
  const bool isSpanned = wide == frame.Right - frame.Left && high == frame.Bottom - frame.Top;
  const auto isInside = [&](const Piece& piece) {
    return !isSpanned || (std::fabs(frame.U(piece.Start.X, piece.Start.Y) - u) <= 0.8 * wide &&
                          std::fabs(frame.V(piece.Start.X, piece.Start.Y) - v) <= 0.8 * high);
  };
  std::vector<std::vector<Piece>> pieces;
  std::vector<std::size_t> inkOf;  // each curve's
  BitMap courses(picture.Width(), picture.Height());
  for (std::size_t i = 0; i < inks.size() && !operation.Stopped; ++i) {
    const auto part = [&](double done) {
      return (static_cast<double>(i) + done) / static_cast<double>(inks.size());
    };
    operation.From = part(0);
    operation.To = part(0.3);
    InkMap map = MapOf(picture, paper, directions, inks[i].Of, 1, operation);
    if (operation.Stopped) break;
    TakeOutLines(map, frame, middleX, middleY, operation);
    std::vector<Piece>& ofInk = pieces.emplace_back(PiecesOf(map));
    std::vector<Piece> starts = ofInk;
    std::erase_if(starts, [&](const Piece& piece) { return !isInside(piece); });
    std::stable_sort(starts.begin(), starts.end(),
                     [](const Piece& a, const Piece& b) { return a.Extent() > b.Extent(); });
    BitMap taken(picture.Width(), picture.Height());
    int tries = 0;
    for (const Piece& piece : starts) {
      if (tries >= kMostTries || operation.Stopped) break;
      if (piece.Extent() < 3 || taken.Get(piece.Start.X, piece.Start.Y)) continue;
      operation.From = part(0.3 + 0.7 * tries / kMostTries);
      operation.To = part(0.3 + 0.7 * (tries + 1) / kMostTries);
      ++tries;
      const ReadingRequest request{.X = static_cast<double>(piece.Start.X),
                                   .Y = static_cast<double>(piece.Start.Y),
                                   .Walls = walls};
      CurveReading reading = ReadCurve(picture, calibration, request, operation);
      reading.Map = {};
      if (reading.IsStopped || reading.Points.empty() || IsScattered(reading) ||
          PartAmong(reading, taken) > 0.5)
        continue;
      if (isSpanned && PartOutside(reading, frame) > kMostOutside) continue;
      Take(taken, reading, 2 + static_cast<int>(std::ceil(0.5 * reading.Kind.Width)));
      // Compression makes several inks of one: the same stroke is read once.
      if (PartAmong(reading, courses) > kSameCourse) continue;
      const auto [left, right] =
          std::minmax_element(reading.Points.begin(), reading.Points.end(),
                              [](const CurvePoint& a, const CurvePoint& b) { return a.X < b.X; });
      const auto [top, bottom] =
          std::minmax_element(reading.Points.begin(), reading.Points.end(),
                              [](const CurvePoint& a, const CurvePoint& b) { return a.Y < b.Y; });
      if (right->X - left->X < kLeastPart * wide && bottom->Y - top->Y < kLeastPart * high)
        continue;
      Take(courses, reading, 1);
      all.Curves.push_back({inks[i].Colour, request.X, request.Y, std::move(reading)});
      inkOf.push_back(i);
    }
  }
  if (operation.Stopped) return stopped();
  // By the legend; what is not in it comes behind, from the top.
  const std::vector<std::optional<int>> rows = LegendRows(pieces);
  std::vector<std::pair<std::pair<int, double>, std::size_t>> order;
  for (std::size_t i = 0; i < all.Curves.size(); ++i) {
    const int row = rows[inkOf[i]].value_or(picture.Height());
    order.push_back({{row, all.Curves[i].Reading.Points.front().Y}, i});
  }
  std::sort(order.begin(), order.end());
  std::vector<PlotCurve> sorted;
  for (const auto& [key, i] : order) sorted.push_back(std::move(all.Curves[i]));
  all.Curves = std::move(sorted);
  return all;
}

}  // namespace graphize
