#include "reading/read_all.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "base/bit_map.h"
#include "base/median.h"
#include "reading/ink_pieces.h"
#include "reading/plot_lines.h"
#include "reading/read_stroke.h"
#include "reading/written.h"

namespace graphize {

namespace {

constexpr double kLeastPart = 0.2;     // of the plot's width or height that a curve goes along
constexpr int kMostTries = 14;         // of one ink
constexpr int kMostInVain = 6;         // one after the other
constexpr double kLeastWidth = 0.4;    // of a stroke, pixels; less are the seams of other inks
constexpr float kPale = 0.5f;          // part of the strongest ink: a grid, a seam of others
constexpr double kSameCourse = 0.9;    // part of a curve that lies on others: it was read before
constexpr double kMostOutside = 0.05;  // part of a curve outside the plot: else labels, a legend

/// Whether what is seen are single symbols: little of the way, or spots that are no dots of a line,
/// far from each other.
bool IsScattered(const CurveReading& reading) {
  std::vector<double> seen, gaps;
  double length = 0, hidden = 0;
  bool wasBridged = reading.Points.front().IsBridged;
  double stretch = 0;
  for (std::size_t i = 1; i <= reading.Points.size(); ++i) {
    const bool isEnd = i == reading.Points.size();
    if (!isEnd) {
      const CurvePoint &a = reading.Points[i - 1], &b = reading.Points[i];
      const double step = std::hypot(b.X - a.X, b.Y - a.Y);
      stretch += step;
      length += step;
      if (wasBridged) hidden += step;
      if (b.IsBridged == wasBridged) continue;
    }
    (wasBridged ? gaps : seen).push_back(stretch);
    stretch = 0;
    wasBridged = !wasBridged;
  }
  const bool isLittle = 10 * hidden > 7 * length;
  if (gaps.size() < 4) return isLittle;
  constexpr double kLeastSymbol = 6;  // pixels
  const double spot = Median(seen), gap = Median(gaps), wide = reading.Kind.Width;
  // Of thick dots, little more than the middles is seen.
  if (isLittle && gap > 2 * wide) return true;
  if (wide >= kLeastSymbol && gap > 1.2 * wide && spot < 1.6 * wide) return true;
  return 2 * hidden > length && gap > 4 * wide;
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

/// Whether less than two thirds of it are seen.
bool IsBroken(const CurveReading& reading) {
  return 3 * std::ranges::count_if(reading.Points, &CurvePoint::IsBridged) >
         std::ssize(reading.Points);
}

/// Whether most of it goes straight along the axes.
bool IsOfGrid(const CurveReading& reading, const AxesFrame& frame) {
  constexpr std::size_t kOver = 10;  // points
  const auto& points = reading.Points;
  std::size_t straight = 0;
  for (std::size_t i = kOver; i < points.size(); ++i) {
    const CurvePoint &a = points[i - kOver], &b = points[i];
    const double du = std::fabs(frame.U(b.X, b.Y) - frame.U(a.X, a.Y)),
                 dv = std::fabs(frame.V(b.X, b.Y) - frame.V(a.X, a.Y));
    straight += std::min(du, dv) <= 0.05 * std::max(du, dv) ? 1 : 0;
  }
  return 10 * straight > 6 * points.size();
}

/// Where the samples of a legend lie: short level strokes that begin in one column, of different
/// inks, or that have a word beside them. One for each ink, absent where it has none.
std::vector<std::optional<InkPiece>> LegendSamples(const std::vector<std::vector<InkPiece>>& pieces,
                                                   const PlotSurroundings& around) {
  std::map<int, std::size_t> inksAt;
  for (const auto& ofInk : pieces) {
    std::vector<int> columns;
    for (const InkPiece& piece : ofInk)
      if (IsSample(piece))
        for (int x = piece.Left - 1; x <= piece.Left + 1; ++x) columns.push_back(x);
    std::sort(columns.begin(), columns.end());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
    for (const int x : columns) ++inksAt[x];
  }
  const auto best =
      std::max_element(inksAt.begin(), inksAt.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  const bool hasColumn = best != inksAt.end() && best->second >= 2;
  std::vector<std::optional<InkPiece>> samples(pieces.size());
  for (std::size_t i = 0; i < pieces.size(); ++i)
    for (const InkPiece& piece : pieces[i])
      if (!samples[i] && (hasColumn ? IsSample(piece) && std::abs(piece.Left - best->first) <= 1
                                    : IsLegendSample(piece, around)))
        samples[i] = piece;
  return samples;
}

}  // namespace

PlotReading ReadAllCurves(const Raster& picture, const AxesFrame& frame,
                          const PlotSurroundings& around, const std::vector<ReadingWall>& walls,
                          PictureOperation& operation) {
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
  const double u = 0.5 * (frame.Left + frame.Right), v = 0.5 * (frame.Top + frame.Bottom);
  // Axis points need not stand at the plot's ends, and may stand close together.
  const double wide = std::max(frame.Right - frame.Left, 0.5 * picture.Width()),
               high = std::max(frame.Bottom - frame.Top, 0.5 * picture.Height());
  const bool isSpanned = wide == frame.Right - frame.Left && high == frame.Bottom - frame.Top;
  const auto isInside = [&](const InkPiece& piece) {
    return !isSpanned || (std::fabs(frame.U(piece.Start.X, piece.Start.Y) - u) <= 0.8 * wide &&
                          std::fabs(frame.V(piece.Start.X, piece.Start.Y) - v) <= 0.8 * high);
  };
  float strongest = 0;
  for (const PictureInk& ink : inks) strongest = std::max(strongest, ink.Of.Strength);
  std::vector<std::vector<InkPiece>> pieces;
  std::vector<std::size_t> inkOf;  // each curve's
  BitMap courses(picture.Width(), picture.Height());
  const double start = operation.To;
  for (std::size_t i = 0; i < inks.size() && !operation.Stopped; ++i) {
    const auto part = [&](double done) {
      return start +
             (1 - start) * (static_cast<double>(i) + done) / static_cast<double>(inks.size());
    };
    operation.From = part(0);
    operation.To = part(0.5);
    InkMap map = MapOf(picture, paper, directions, inks[i].Of, 1, operation);
    if (operation.Stopped) break;
    DrawWalls(map, walls);
    // Lines that are taken out cut a box, or a sample, in pieces.
    std::vector<InkPiece>& ofInk = pieces.emplace_back();
    for (const InkPiece& piece : PiecesOf(map)) {
      if (piece.Width() >= 0.5 * wide || NameOfWritten(map, piece, around).empty()) continue;
      Wipe(map, piece);
      ofInk.push_back(piece);
    }
    TakeOutLines(map, frame, frame.X(u, v), frame.Y(u, v), operation);
    const InkBlends blends(picture, paper, directions, inks[i].Of);
    std::vector<InkPiece> starts = PiecesOf(map);
    ofInk.insert(ofInk.end(), starts.begin(), starts.end());
    std::erase_if(starts, [&](const InkPiece& piece) {
      if (NameOfWritten(map, piece, around).empty()) return piece.Extent() < 3 || !isInside(piece);
      Wipe(map, piece);
      return true;
    });
    std::stable_sort(starts.begin(), starts.end(),
                     [](const InkPiece& a, const InkPiece& b) { return a.Extent() > b.Extent(); });
    BitMap taken(picture.Width(), picture.Height());
    int tries = 0, inVain = 0;
    operation.From = part(0.5);
    operation.To = part(1);
    for (const InkPiece& piece : starts) {
      if (tries >= kMostTries || operation.Stopped) break;
      if (taken.Get(piece.Start.X, piece.Start.Y)) continue;
      operation.Advance(static_cast<double>(tries++) / kMostTries);
      const ReadingRequest request{.X = static_cast<double>(piece.Start.X),
                                   .Y = static_cast<double>(piece.Start.Y),
                                   .Walls = walls};
      CurveReading reading = ReadStroke(map, blends, piece.Start, request, operation);
      inVain += reading.Kind.Width < kLeastWidth ? 3 : 1;
      if (reading.IsStopped || inVain > kMostInVain) break;
      if (reading.Points.empty() || reading.Kind.Width < kLeastWidth || IsScattered(reading) ||
          PartAmong(reading, taken) > 0.5)
        continue;
      if (isSpanned && PartOutside(reading, frame) > kMostOutside) continue;
      Take(taken, reading, 2 + static_cast<int>(std::ceil(0.5 * reading.Kind.Width)));
      // Compression makes several inks of one: the same stroke is read once.
      if (PartAmong(reading, courses) > kSameCourse) continue;
      const InkPiece whole = BoxOf(reading.Points);
      if (whole.Width() < kLeastPart * wide && whole.Height() < kLeastPart * high) continue;
      if (IsLegendSample(whole, around)) {
        ofInk.push_back(whole);  // dashed or dotted
        continue;
      }
      if (inks[i].Of.Strength < kPale * strongest &&
          (IsBroken(reading) || IsOfGrid(reading, frame)))
        continue;
      inVain = 0;
      Take(courses, reading, 1);
      all.Curves.push_back({inks[i].Colour, request.X, request.Y, {}, std::move(reading)});
      inkOf.push_back(i);
    }
  }
  if (operation.Stopped) return stopped();
  // By the legend; what is not in it comes behind, from the top.
  const std::vector<std::optional<InkPiece>> samples = LegendSamples(pieces, around);
  std::vector<std::pair<std::pair<int, double>, std::size_t>> order;
  for (std::size_t i = 0; i < all.Curves.size(); ++i) {
    const auto& sample = samples[inkOf[i]];
    order.push_back(
        {{sample ? sample->Top : picture.Height(), all.Curves[i].Reading.Points.front().Y}, i});
    // Which of two curves of one ink is meant, it does not say.
    if (sample && std::ranges::count(inkOf, inkOf[i]) == 1)
      all.Curves[i].Label = LabelOf(*sample, around);
  }
  std::sort(order.begin(), order.end());
  std::vector<PlotCurve> sorted;
  for (const auto& [key, i] : order) sorted.push_back(std::move(all.Curves[i]));
  all.Curves = std::move(sorted);
  return all;
}

}  // namespace graphize
