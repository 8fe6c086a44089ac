#include "reading/stroke_samples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "base/median.h"
#include "reading/stroke_dots.h"

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
  int First = 0, Last = 0;  // outermost pixels, from the path's

  double Middle() const { return Moment / Ink; }
  /// What the middle gains where each edge lies within one pixel, which counts in its centre while
  /// its ink lies on the inner side of it.
  double EdgeShift() const {
    constexpr double kWhole = 0.96;
    if (Pixels < 2 || (Pixels > 2 && std::min(Inner[0], Inner[1]) < kWhole)) return 0;
    return (End[0] * (1 - End[0]) - End[1] * (1 - End[1])) / (2 * Ink);
  }
};

/// The pixels of a map along a column or a row.
class Line {
 public:
  Line(const InkMap& map, PathPixel at, bool alongRow, const InkBlends* blends)
      : map_(map), at_(at), alongRow_(alongRow), blends_(blends) {}

  bool IsHidden(int i) const { return map_.IsHidden(X(i), Y(i)) && !Blend(i); }
  double Share(int i) const {
    return map_.IsHidden(X(i), Y(i)) ? Blend(i).value_or(0) : map_.Share(X(i), Y(i));
  }
  /// Absent on walls, too.
  std::optional<double> Seen(int i) const {
    if (map_.At(X(i), Y(i)) > InkMap::kFull) return std::nullopt;
    return map_.Share(X(i), Y(i));
  }

 private:
  int X(int i) const { return at_.X + (alongRow_ ? i : 0); }
  int Y(int i) const { return at_.Y + (alongRow_ ? 0 : i); }
  std::optional<double> Blend(int i) const {
    return blends_ ? blends_->ShareAt(map_, X(i), Y(i)) : std::nullopt;
  }

  const InkMap& map_;
  PathPixel at_;
  bool alongRow_;
  const InkBlends* blends_;
};

/// `most` pixels to each side, and no farther than the ink goes on.
Cut CutAlong(const Line& line, int most) {
  // The path may run beside a thin line's fuller pixel.
  int middle = 0;
  for (const int i : {-1, 1})
    if (line.Share(i) > line.Share(middle)) middle = i;
  Cut cut;
  const auto add = [&](int i) {
    if (line.IsHidden(i)) {
      cut.MeetsHidden = true;
      return false;
    }
    const double share = line.Share(i);
    cut.Ink += share;
    cut.Moment += share * i;
    if (share > 0) {
      ++cut.Pixels;
      cut.First = cut.Pixels == 1 ? i : std::min(cut.First, i);
      cut.Last = cut.Pixels == 1 ? i : std::max(cut.Last, i);
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
      const double share = line.Share(middle + step * i);
      // Beyond the edge it grows again: another stroke's.
      if (share > last + 0.25 && last < 0.5) break;
      last = share;
      if (!add(middle + step * i)) break;
    }
  }
  return cut;
}
Cut CutAt(const InkMap& map, PathPixel at, bool alongRow, int most) {
  return CutAlong(Line(map, at, alongRow, nullptr), most);
}

/// Where the middle of a band of that chord lies, from the path's pixel, that fits the seen pixels
/// of a cut; absent where they do not tell it.
std::optional<double> MiddleOfBand(const Line& line, double chord, double slope) {
  const double ramp = std::sqrt(1 + slope * slope);  // of an edge, along the cut
  const double reach = 0.5 * chord + 1.5;
  const int far = static_cast<int>(std::ceil(reach + 0.5 * (chord + ramp))) + 1;
  std::vector<std::pair<int, double>> seen;
  for (int i = -far; i <= far; ++i)
    if (const auto share = line.Seen(i)) seen.emplace_back(i, *share);
  const auto cover = [&](double away) {
    return std::clamp((0.5 * (chord + ramp) - std::fabs(away)) / ramp, 0.0, 1.0);
  };
  const auto error = [&](double middle) {
    double sum = 0;
    for (const auto& [i, share] : seen) {
      const double difference = share - cover(i - middle);
      sum += difference * difference;
    }
    return sum;
  };
  constexpr double kStep = 0.125, kMostError = 0.06, kAsGood = 0.02, kSame = 0.6;
  const int steps = static_cast<int>(reach / kStep);
  std::vector<double> errors;
  for (int k = -steps; k <= steps; ++k) errors.push_back(error(k * kStep));
  const auto best = std::min_element(errors.begin(), errors.end());
  if (*best > kMostError) return std::nullopt;
  const auto isGood = [&](double value) { return value <= *best + kAsGood; };
  const auto first = std::find_if(errors.begin(), errors.end(), isGood);
  const auto last = std::find_if(errors.rbegin(), errors.rend(), isGood).base();
  if (first == errors.begin() || last == errors.end() ||
      static_cast<double>(last - first) * kStep > kSame)
    return std::nullopt;
  double middle = (static_cast<double>(best - errors.begin()) - steps) * kStep;
  for (double step = 0.5 * kStep; step > 0.005; step *= 0.5)
    for (const double there : {middle - step, middle + step})
      if (error(there) < error(middle)) middle = there;
  return middle;
}

/// First and last pixel of a seen sample's cut.
struct Run {
  int First = 0, Last = 0;
};

/// Along cuts that are neighbours, where an edge lies that is drawn in full pixels: it steps midway
/// between two cuts, and goes evenly from step to step. Absent where it does not go on the same
/// way on both sides.
std::vector<std::optional<double>> EvenEdge(const std::vector<int>& edge) {
  std::vector<std::optional<double>> even(edge.size());
  for (std::size_t first = 0; first < edge.size();) {
    std::size_t end = first + 1;
    while (end < edge.size() && edge[end] == edge[first]) ++end;
    if (first > 0 && end < edge.size() &&
        (edge[first] - edge[first - 1]) * (edge[end] - edge[first]) > 0) {
      const double from = 0.5 * (edge[first - 1] + edge[first]);
      const double to = 0.5 * (edge[first] + edge[end]);
      for (std::size_t i = first; i < end; ++i)
        even[i] = from + (to - from) * (static_cast<double>(i - first) + 0.5) /
                             static_cast<double>(end - first);
    }
    first = end;
  }
  return even;
}

/// Gives strokes that are drawn in full pixels their fractions back. `beyond(sample, step)` are the
/// cuts of the same kind that the path has next to a sample, which need not be samples.
template <class Beyond>
void EvenOut(std::vector<StrokeSample>& samples, const std::vector<Run>& runs,
             const StrokeKind& kind, const Beyond& beyond) {
  for (std::size_t first = 0; first < samples.size();) {
    std::size_t end = first + 1;
    const auto goesOn = [&](std::size_t i) {
      return samples[i].AlongRow == samples[first].AlongRow && samples[i].IsSeen &&
             samples[i - 1].IsSeen &&
             samples[i].At - samples[i - 1].At == samples[first + 1].At - samples[first].At;
    };
    while (end < samples.size() && goesOn(end)) ++end;
    std::vector<Run> edges = beyond(samples[first], -1);
    std::reverse(edges.begin(), edges.end());
    const std::size_t before = edges.size();
    edges.insert(edges.end(), runs.begin() + static_cast<std::ptrdiff_t>(first),
                 runs.begin() + static_cast<std::ptrdiff_t>(end));
    const std::vector<Run> behind = beyond(samples[end - 1], 1);
    edges.insert(edges.end(), behind.begin(), behind.end());
    std::vector<int> low, high;
    for (const Run& edge : edges) {
      low.push_back(edge.First);
      high.push_back(edge.Last);
    }
    const auto evenLow = EvenEdge(low), evenHigh = EvenEdge(high);
    for (std::size_t i = first; i < end; ++i) {
      StrokeSample& sample = samples[i];
      if (!sample.IsSeen) continue;
      const auto &a = evenLow[before + i - first], &b = evenHigh[before + i - first];
      const double half = 0.5 * (kind.Width * std::sqrt(1 + sample.Slope * sample.Slope) - 1);
      if (a && b)
        sample.Middle = 0.5 * (*a + *b);
      else if (a)
        sample.Middle = *a + half;
      else if (b)
        sample.Middle = *b - half;
      else
        sample.IsLoose = true;
    }
    first = end;
  }
}

/// Pixels of a path but for both ends of each dash, which are narrower than the stroke; all of them
/// where it has few or no gaps.
std::vector<bool> WithoutEnds(const InkMap& map, const std::vector<PathPixel>& path) {
  constexpr int kFewest = 6;
  std::vector<bool> within(path.size());
  int dashes = 0;
  for (std::size_t first = 0; first < path.size(); ++first) {
    std::size_t end = first;
    while (end < path.size() && map.IsClear(path[end].X, path[end].Y)) ++end;
    if (end == first) continue;
    ++dashes;
    const std::size_t cap = (end - first) / 4;
    for (std::size_t i = first + cap; i < end - cap; ++i) within[i] = true;
    first = end;
  }
  return dashes < kFewest ? std::vector<bool>(path.size(), true) : within;
}

}  // namespace

StrokeKind KindOf(const InkMap& map, const std::vector<PathPixel>& path) {
  std::vector<double> widths;
  int soft = 0, edges = 0;
  // A few hundred places say it.
  const std::size_t step = std::max<std::size_t>(path.size() / 600, 1);
  const std::vector<bool> isWithin = WithoutEnds(map, path);
  for (std::size_t i = 0; i < path.size(); i += step) {
    if (!isWithin[i]) continue;
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
  const double width = Median(std::move(widths));
  const std::vector<StrokeDot> dots = DotsOn(map, path);
  if (dots.empty()) return {width, 25 * soft < edges};
  return {WidthOf(dots), 25 * soft < edges, true};
}

std::vector<StrokeSample> SamplesOf(const InkMap& map, const std::vector<PathPixel>& path,
                                    const StrokeKind& kind, const InkBlends* blends) {
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
  std::vector<Run> runs;
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
      const int most = static_cast<int>(std::ceil(1.6 * chord)) + 3;
      const Line line(map, middle, steep, nullptr);
      Cut cut = CutAlong(line, most);
      const int from = steep ? middle.X : middle.Y;
      sample.Middle = from;
      // A hard line of one pixel has two where it steps.
      const double blur = kind.IsHard ? std::max(0.6, 2.35 - 1.3 * chord) : 0.9;
      const double whole = kind.IsHard ? 0.5 : 0.75;
      bool isWhole = !cut.MeetsHidden;
      if (cut.MeetsHidden && blends) {
        const Cut blended = CutAlong(Line(map, middle, steep, blends), most);
        // Where the other ink covers it, there is less.
        if (!blended.MeetsHidden && blended.Ink > 0.93 * chord) {
          cut = blended;
          isWhole = true;
        }
      }
      if (isWhole && cut.Ink < 0.3 * chord) {
        sample.IsGap = true;
      } else if (cut.IsLong || cut.Ink > 1.3 * chord + blur) {
        sample.IsCrowded = true;
      } else if (isWhole && cut.Ink > whole * chord) {
        sample.IsSeen = true;
        sample.IsPart = cut.Ink < 0.93 * chord - (kind.IsHard ? 0.6 : 0);
        sample.Middle = from + cut.Middle();
        if (!kind.IsHard && std::fabs(sample.Slope) < kLevel) sample.Middle += cut.EdgeShift();
      } else if (cut.MeetsHidden && !kind.IsHard) {
        if (const auto there = MiddleOfBand(line, chord, sample.Slope)) {
          sample.IsSeen = true;
          sample.Middle = from + *there;
        }
      }
      samples.push_back(sample);
      runs.push_back({from + cut.First, from + cut.Last});
      i = last + 1;
    }
    first = end;
  }
  if (kind.IsDotted) TakeCentres(samples, DotsOn(map, path), kind.Width);
  if (!kind.IsHard || kind.IsDotted) return samples;
  const auto beyond = [&](const StrokeSample& sample, int step) {
    std::vector<Run> next;
    constexpr std::size_t kMost = 6;
    const auto along = [&](int i) { return sample.AlongRow ? pixel(i).Y : pixel(i).X; };
    int last = sample.At, way = 0;
    for (int i = sample.Pixel; i >= 0 && i < count && next.size() < kMost; i += step) {
      const int at = along(i), by = at - last;
      if (by == 0) continue;
      way = way == 0 ? by : way;
      if (by != way) break;
      last = at;
      const double chord = kind.Width * 1.8;
      const Cut cut = CutAt(map, pixel(i), sample.AlongRow, static_cast<int>(chord) + 3);
      if (cut.Ink <= 0 || cut.MeetsHidden || cut.IsLong) break;
      const int from = sample.AlongRow ? pixel(i).X : pixel(i).Y;
      next.push_back({from + cut.First, from + cut.Last});
    }
    return next;
  };
  EvenOut(samples, runs, kind, beyond);
  return samples;
}

}  // namespace graphize
