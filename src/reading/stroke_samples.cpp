#include "reading/stroke_samples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace graphize {

namespace {

constexpr double kLevel = 0.4;  // slope up to which an edge lies within one pixel of a cut
constexpr int kLongest = 80;    // pixels of a cut through a stroke

/// Ink in one cut through the stroke, from a path's pixel on to both sides.
struct Cut {
  double Ink = 0, Moment = 0;  // shares, and shares times distance from the pixel
  bool MeetsHidden = false;
  bool IsLong = false;  // longer than was looked at
  // Shares of the outermost pixels on both sides, and of those beside them further in.
  std::array<double, 2> End{}, Inner{1, 1};
  int Pixels = 0;

  double Middle() const { return Moment / Ink; }
  /// What the middle gains where each edge lies within one pixel, which counts in its centre while
  /// its ink lies on the inner side of it.
  double EdgeShift() const {
    constexpr double kWhole = 0.96;
    if (Pixels < 2 || (Pixels > 2 && std::min(Inner[0], Inner[1]) < kWhole)) return 0;
    return (End[0] * (1 - End[0]) - End[1] * (1 - End[1])) / (2 * Ink);
  }
};

/// `most` pixels to each side, and no farther than the ink goes on.
Cut CutAt(const InkMap& map, PathPixel at, bool alongRow, int most) {
  const auto pixel = [&](int i) {
    return alongRow ? std::pair(at.X + i, at.Y) : std::pair(at.X, at.Y + i);
  };
  // The path may run beside a thin line's fuller pixel.
  int middle = 0;
  for (const int i : {-1, 1}) {
    const auto [x, y] = pixel(i);
    const auto [mx, my] = pixel(middle);
    if (map.Share(x, y) > map.Share(mx, my)) middle = i;
  }
  Cut cut;
  const auto add = [&](int i) {
    const auto [x, y] = pixel(i);
    if (map.IsHidden(x, y)) {
      cut.MeetsHidden = true;
      return false;
    }
    const double share = map.Share(x, y);
    cut.Ink += share;
    cut.Moment += share * i;
    if (share > 0) {
      ++cut.Pixels;
      for (const std::size_t side : {0, 1}) {
        if (cut.Pixels > 1 && (i > middle) != (side == 1)) continue;
        cut.Inner[side] = cut.Pixels > 1 ? cut.End[side] : 1;
        cut.End[side] = share;
      }
    }
    return share > 0;
  };
  if (!add(middle)) return cut;
  for (const int step : {-1, 1}) {
    double last = 1;
    for (int i = 1;; ++i) {
      if (i > most) {
        cut.IsLong = true;
        break;
      }
      const auto [x, y] = pixel(middle + step * i);
      const double share = map.Share(x, y);
      // Beyond the edge it grows again: another stroke's.
      if (share > last + 0.25 && last < 0.5) break;
      last = share;
      if (!add(middle + step * i)) break;
    }
  }
  return cut;
}

double MedianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

StrokeKind KindOf(const InkMap& map, const std::vector<PathPixel>& path) {
  std::vector<double> widths;
  int soft = 0, edges = 0;
  // A few hundred places say it.
  const std::size_t step = std::max<std::size_t>(path.size() / 600, 1);
  for (std::size_t i = 0; i < path.size(); i += step) {
    const Cut upright = CutAt(map, path[i], false, kLongest);
    const Cut level = CutAt(map, path[i], true, kLongest);
    const Cut& shorter = upright.Ink < level.Ink ? upright : level;
    if (upright.Ink <= 0 || level.Ink <= 0 || shorter.MeetsHidden || shorter.IsLong) continue;
    // The chords across a straight band of width w at an angle: w / cos and w / sin.
    widths.push_back(1 / std::sqrt(1 / (upright.Ink * upright.Ink) + 1 / (level.Ink * level.Ink)));
    for (int dy = -2; dy <= 2; ++dy) {
      const double share = map.Share(path[i].X, path[i].Y + dy);
      if (share <= 0) continue;
      ++edges;
      soft += share < 0.85 ? 1 : 0;
    }
  }
  if (widths.empty()) return {};
  return {MedianOf(std::move(widths)), 25 * soft < edges};
}

std::vector<StrokeSample> SamplesOf(const InkMap& map, const std::vector<PathPixel>& path,
                                    const StrokeKind& kind) {
  const int count = static_cast<int>(path.size());
  const int reach = std::max(6, static_cast<int>(std::lround(2 * kind.Width)));
  const auto pixel = [&](int i) {
    return path[static_cast<std::size_t>(std::clamp(i, 0, count - 1))];
  };
  // Columns up to a little over 45 degrees, rows down to 45: none is left out, and a course of
  // about that slope does not go to and fro.
  const auto isSteep = [&](int i, bool now) {
    return (now ? 13 : 10) * std::abs(pixel(i + reach).Y - pixel(i - reach).Y) >
           13 * std::abs(pixel(i + reach).X - pixel(i - reach).X);
  };
  // Stretches of one way of cutting.
  std::vector<StrokeSample> samples;
  bool steep = false;
  for (int first = 0; first < count;) {
    steep = isSteep(first, steep);
    int end = first + 1;
    while (end < count && isSteep(end, steep) == steep) ++end;
    for (int i = first; i < end;) {
      const int at = steep ? pixel(i).Y : pixel(i).X;
      int last = i;
      while (last + 1 < end && (steep ? pixel(last + 1).Y : pixel(last + 1).X) == at) ++last;
      const PathPixel middle = pixel((i + last) / 2);
      const PathPixel a = pixel(i - reach), b = pixel(last + reach);
      const double across = steep ? b.X - a.X : b.Y - a.Y, along = steep ? b.Y - a.Y : b.X - a.X;
      StrokeSample sample{.AlongRow = steep, .At = at, .Pixel = (i + last) / 2};
      sample.Slope = along == 0 ? 0 : std::clamp(across / along, -1.5, 1.5);
      const double chord = kind.Width * std::sqrt(1 + sample.Slope * sample.Slope);
      const Cut cut = CutAt(map, middle, steep, static_cast<int>(std::ceil(1.6 * chord)) + 3);
      const int from = steep ? middle.X : middle.Y;
      sample.Middle = from;
      const double blur = kind.IsHard ? 0.6 : 0.9, whole = kind.IsHard ? 0.5 : 0.75;
      if (!cut.MeetsHidden && cut.Ink < 0.3 * chord) {
        sample.IsGap = true;
      } else if (cut.IsLong || cut.Ink > 1.3 * chord + blur) {
        sample.IsCrowded = true;
      } else if (!cut.MeetsHidden && cut.Ink > whole * chord) {
        sample.IsSeen = true;
        sample.IsPart = cut.Ink < 0.93 * chord;
        sample.Middle = from + cut.Middle();
        if (!kind.IsHard && std::fabs(sample.Slope) < kLevel) sample.Middle += cut.EdgeShift();
      }
      samples.push_back(sample);
      i = last + 1;
    }
    first = end;
  }
  return samples;
}

void TrimEnds(std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  const auto overhang = [&](auto first, auto last) {
    int part = 0;
    while (first != last && part <= kind.Width && (!first->IsSeen || first->IsPart))
      ++first, ++part;
    // A round end narrows little at first.
    return part > 2 ? part * 8 / 5 : part;
  };
  const int count = static_cast<int>(samples.size());
  const int first = overhang(samples.begin(), samples.end());
  const int last = count - overhang(samples.rbegin(), samples.rend());
  if (first >= last) return;
  samples = {samples.begin() + first, samples.begin() + last};
}

}  // namespace graphize
