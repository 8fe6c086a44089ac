#include "reading/stroke_dots.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/median.h"
#include "reading/ink_pieces.h"

namespace graphize {

namespace {

constexpr int kLargest = 40;  // pixels of a dot

StrokeDot DotOf(const InkMap& map, const InkPiece& piece) {
  StrokeDot dot;
  double mass = 0;
  for (int y = piece.Top - 1; y <= piece.Bottom + 1; ++y)
    for (int x = piece.Left - 1; x <= piece.Right + 1; ++x) {
      const double share = map.Share(x, y);
      mass += share;
      dot.X += share * x;
      dot.Y += share * y;
    }
  dot.X /= mass;
  dot.Y /= mass;
  dot.Width = std::sqrt(mass);
  return dot;
}

}  // namespace

std::vector<StrokeDot> DotsOn(const InkMap& map, const std::vector<PathPixel>& path) {
  constexpr std::size_t kFewest = 6;
  std::vector<StrokeDot> dots;
  std::optional<InkPiece> last;
  std::size_t runs = 0;
  const auto isOn = [&](std::size_t i) { return map.IsClear(path[i].X, path[i].Y); };
  for (std::size_t first = 0; first < path.size(); ++first) {
    if (!isOn(first)) continue;
    std::size_t end = first + 1;
    while (end < path.size() && isOn(end)) ++end;
    const PathPixel at = path[(first + end) / 2];
    first = end;
    const auto isSame = [&](const InkPiece& piece) {
      return at.X >= piece.Left && at.X <= piece.Right && at.Y >= piece.Top && at.Y <= piece.Bottom;
    };
    if (last && isSame(*last)) continue;
    ++runs;
    last = PieceAt(map, at, kLargest);
    // As wide in one direction as in the other, the corners of a square included.
    if (last && last->Extent() <= 1.6 * std::sqrt(last->Area) + 1)
      dots.push_back(DotOf(map, *last));
  }
  if (dots.size() < kFewest || 10 * dots.size() < 8 * runs) return {};
  // What something covers in part has its centre elsewhere.
  const double least = 0.85 * WidthOf(dots);
  std::erase_if(dots, [&](const StrokeDot& dot) { return dot.Width < least; });
  return dots;
}

double WidthOf(const std::vector<StrokeDot>& dots) {
  std::vector<double> widths;
  for (const StrokeDot& dot : dots) widths.push_back(dot.Width);
  return Median(std::move(widths));
}

void TakeCentres(std::vector<StrokeSample>& samples, const std::vector<StrokeDot>& dots,
                 double width) {
  constexpr double kSteepest = 1.5;  // pixels per pixel; a steeper way has its cuts across it
  if (dots.size() < 2) return;
  for (StrokeSample& sample : samples) sample.IsSeen = sample.IsPart = false;
  for (std::size_t i = 0; i < dots.size(); ++i) {
    const bool isEnd = i == 0 || i + 1 == dots.size();
    const StrokeDot &before = dots[i == 0 ? 0 : i - 1], &behind = dots[isEnd && i > 0 ? i : i + 1];
    const double dx = behind.X - before.X, dy = behind.Y - before.Y;
    const double reach = isEnd ? 0.5 * width : std::max(0.5, 0.3 * width);
    for (StrokeSample& sample : samples) {
      const double along = sample.AlongRow ? dots[i].Y : dots[i].X;
      if (std::fabs(sample.At - along) > reach ||
          std::fabs(sample.Middle - (sample.AlongRow ? dots[i].X : dots[i].Y)) > 2 * width)
        continue;
      const double on = sample.AlongRow ? dy : dx, across = sample.AlongRow ? dx : dy;
      if (on == 0 && across == 0) continue;
      const double slope = on == 0 ? 0 : std::clamp(across / on, -kSteepest, kSteepest);
      sample.Middle = (sample.AlongRow ? dots[i].X : dots[i].Y) + slope * (sample.At - along);
      sample.IsSeen = true;
      sample.IsGap = sample.IsCrowded = false;
    }
  }
}

}  // namespace graphize
