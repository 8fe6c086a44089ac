#include "calibration/axes_grid.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "calibration/transform.h"

namespace graphize {

namespace {

constexpr double kLines = 8;
constexpr int kMostLines = 60;

struct RoundValue {
  double Value = 0;
  bool HasText = true;
};

/// times * 10^power, as the decimal number that it is.
double Decimal(double times, int power) {
  return power < 0 ? times / std::pow(10.0, -power) : times * std::pow(10.0, power);
}

std::vector<RoundValue> Linear(double from, double to) {
  const double about = (to - from) / kLines;
  const int power = static_cast<int>(std::floor(std::log10(about)));
  double times = 10;
  for (const double candidate : {5.0, 2.0, 1.0})
    if (Decimal(candidate, power) >= about) times = candidate;
  const double step = Decimal(times, power);
  std::vector<RoundValue> values;
  const double first = std::ceil(from / step), last = std::floor(to / step);
  for (double number = first; number <= last && values.size() < kMostLines; ++number)
    values.push_back({Decimal(number * times, power) + 0.0});
  return values;
}

/// From and to are decades.
std::vector<RoundValue> Logarithmic(double from, double to) {
  const double decades = to - from;
  if (decades < 0.7) return Linear(std::pow(10.0, from), std::pow(10.0, to));
  const int step = std::max(static_cast<int>(std::ceil(decades / (1.5 * kLines))), 1);
  constexpr double kFewDecades = 2, kManyDecades = 6;
  std::vector<RoundValue> values;
  for (int power = static_cast<int>(std::floor(from)); power <= to; ++power) {
    if (power % step != 0) continue;
    for (int times = 1; times < 10; ++times) {
      if (times > 1 && decades > kManyDecades) break;
      const double value = Decimal(times, power);
      const double place = std::log10(value);
      const bool isRound = times == 1 || (decades < kFewDecades && (times == 2 || times == 5));
      if (place >= from && place <= to && values.size() < kMostLines)
        values.push_back({value, isRound});
    }
  }
  return values;
}

/// Where a x + b y = c crosses the box, if it does.
struct Chord {
  double X0 = 0, Y0 = 0, X1 = 0, Y1 = 0;
};
std::optional<Chord> ChordOf(double a, double b, double c, const PicturePart& box) {
  // The foot of the perpendicular from the origin, and the direction of the line.
  const double square = a * a + b * b;
  const double x = a * c / square, y = b * c / square;
  double first = -HUGE_VAL, last = HUGE_VAL;
  const auto clip = [&](double place, double way, double low, double high) {
    if (way == 0) return place >= low && place <= high;
    const auto [from, to] = std::minmax({(low - place) / way, (high - place) / way});
    first = std::max(first, from);
    last = std::min(last, to);
    return true;
  };
  if (!clip(x, -b, box.Left, box.Right) || !clip(y, a, box.Top, box.Bottom) || first >= last)
    return std::nullopt;
  return Chord{x - b * first, y + a * first, x - b * last, y + a * last};
}

}  // namespace

std::vector<ValueLine> AxesGrid(const AxisCalibration& calibration, int pictureHeight,
                                const PicturePart& part) {
  std::vector<ValueLine> lines;
  if (!calibration.IsComplete() || !(part.Left < part.Right && part.Top < part.Bottom))
    return lines;
  const AffineMap scale = ScaleOf(calibration);
  const auto add = [&](bool ofX, bool log, double perColumn, double perRow, double start) {
    if (!std::isfinite(perColumn) || !std::isfinite(perRow) || !std::isfinite(start) ||
        (perColumn == 0 && perRow == 0))
      return;
    // Row downward from here on.
    start += perRow * pictureHeight;
    perRow = -perRow;
    const auto at = [&](double x, double y) { return perColumn * x + perRow * y + start; };
    const auto [from, to] = std::minmax({at(part.Left, part.Top), at(part.Right, part.Top),
                                         at(part.Left, part.Bottom), at(part.Right, part.Bottom)});
    constexpr double kMostDecades = 300;
    if (log && (to > kMostDecades || from < -kMostDecades)) return;
    for (const auto& [value, hasText] : log ? Logarithmic(from, to) : Linear(from, to)) {
      const double place = log ? std::log10(value) : value;
      const auto chord = ChordOf(perColumn, perRow, place - start, part);
      if (!chord) continue;
      ValueLine line{ofX,       value,    hasText ? ShortestText(value) : "", chord->X0, chord->Y0,
                     chord->X1, chord->Y1};
      if (ofX ? line.FromRow > line.ToRow : line.FromColumn > line.ToColumn) {
        std::swap(line.FromColumn, line.ToColumn);
        std::swap(line.FromRow, line.ToRow);
      }
      lines.push_back(std::move(line));
    }
  };
  add(true, calibration.XLog, scale.XX, scale.XY, scale.X);
  add(false, calibration.YLog, scale.YX, scale.YY, scale.Y);
  return lines;
}

}  // namespace graphize
