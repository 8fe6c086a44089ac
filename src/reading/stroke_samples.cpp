#include "reading/stroke_samples.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "base/median.h"
#include "reading/stroke_cut.h"
#include "reading/stroke_dots.h"

namespace graphize {

namespace {

constexpr double kLevel = 0.4;  // slope up to which an edge lies within one pixel of a cut
constexpr int kLongest = 80;    // pixels of a cut through a stroke

StrokeCut CutAt(const InkMap& map, PathPixel at, bool alongRow, int most) {
  return CutAlong(CutLine(map, at, alongRow, nullptr), most);
}

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
void EvenOut(std::vector<StrokeSample>& samples, const std::vector<InkRun>& runs,
             const StrokeKind& kind, const Beyond& beyond) {
  for (std::size_t first = 0; first < samples.size();) {
    std::size_t end = first + 1;
    const auto goesOn = [&](std::size_t i) {
      return samples[i].AlongRow == samples[first].AlongRow && samples[i].IsSeen &&
             samples[i - 1].IsSeen &&
             samples[i].At - samples[i - 1].At == samples[first + 1].At - samples[first].At;
    };
    while (end < samples.size() && goesOn(end)) ++end;
    std::vector<InkRun> edges = beyond(samples[first], -1);
    std::reverse(edges.begin(), edges.end());
    const std::size_t before = edges.size();
    edges.insert(edges.end(), runs.begin() + static_cast<std::ptrdiff_t>(first),
                 runs.begin() + static_cast<std::ptrdiff_t>(end));
    const std::vector<InkRun> behind = beyond(samples[end - 1], 1);
    edges.insert(edges.end(), behind.begin(), behind.end());
    std::vector<int> low, high;
    for (const InkRun& edge : edges) {
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
    const StrokeCut upright = CutAt(map, path[i], false, kLongest);
    const StrokeCut level = CutAt(map, path[i], true, kLongest);
    const StrokeCut& shorter = upright.Ink < level.Ink ? upright : level;
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

SampledPath::SampledPath(const InkMap& map, std::vector<PathPixel> path, const StrokeKind& kind,
                         const InkBlends* blends)
    : map_(map),
      kind_(kind),
      blends_(blends),
      reach_(std::max(6, static_cast<int>(std::lround(2 * kind.Width)))),
      path_(std::move(path)) {
  while (NextPixel() < Count()) cuts_.push_back(NextCut());
  Finish();
}

void SampledPath::Exchange(std::size_t first, std::size_t end, std::span<const PathPixel> pixels) {
  const auto at = [&](std::size_t i) { return path_.begin() + static_cast<std::ptrdiff_t>(i); };
  std::vector<PathPixel> path(path_.begin(), at(first));
  path.insert(path.end(), pixels.begin(), pixels.end());
  path.insert(path.end(), at(end), path_.end());
  path_ = std::move(path);

  const int changed = static_cast<int>(first), settled = changed + static_cast<int>(pixels.size());
  const int shift = settled - static_cast<int>(end);
  std::vector<Cut> before = std::move(cuts_);
  const auto isReached = [&](const Cut& cut) { return cut.Last + 1 + reach_ >= changed; };
  const auto kept = std::ranges::find_if(before, isReached);
  cuts_.assign(before.begin(), kept);
  auto same = kept;  // the cut that may be the next one as it is
  while (NextPixel() < Count()) {
    const int next = NextPixel();
    while (same != before.end() && same->First + shift < next) ++same;
    const bool isSame = next - reach_ >= settled && same != before.end() &&
                        same != before.begin() && same->First + shift == next &&
                        (same - 1)->Sample.AlongRow == cuts_.back().Sample.AlongRow;
    if (isSame) break;
    cuts_.push_back(NextCut());
  }
  if (NextPixel() < Count())
    for (; same != before.end(); ++same) {
      cuts_.push_back(*same);
      cuts_.back().First += shift;
      cuts_.back().Last += shift;
      cuts_.back().Sample.Pixel += shift;
    }
  Finish();
}

bool SampledPath::IsSteep(int i, bool before) const {
  // Columns up to a little over 45 degrees, rows down to 45: none is left out, and a course of
  // about that slope does not go to and fro.
  const PathPixel a = Pixel(i - reach_), b = Pixel(i + reach_);
  return (before ? 13 : 10) * std::abs(b.Y - a.Y) > 13 * std::abs(b.X - a.X);
}

SampledPath::Cut SampledPath::NextCut() const {
  const int first = NextPixel();
  const bool steep = IsSteep(first, !cuts_.empty() && cuts_.back().Sample.AlongRow);
  const auto along = [&](int i) { return steep ? Pixel(i).Y : Pixel(i).X; };
  int last = first;
  while (last + 1 < Count() && along(last + 1) == along(first) && IsSteep(last + 1, steep) == steep)
    ++last;
  const PathPixel middle = Pixel((first + last) / 2);
  const PathPixel a = Pixel(first - reach_), b = Pixel(last + reach_);
  const double up = steep ? b.X - a.X : b.Y - a.Y, on = steep ? b.Y - a.Y : b.X - a.X;
  StrokeSample sample{.AlongRow = steep, .At = along(first), .Pixel = (first + last) / 2};
  sample.Slope = on == 0 ? 0 : std::clamp(up / on, -1.5, 1.5);
  const double chord = kind_.Width * std::sqrt(1 + sample.Slope * sample.Slope);
  const int most = static_cast<int>(std::ceil(1.6 * chord)) + 3;
  const CutLine line(map_, middle, steep, nullptr);
  StrokeCut cut = CutAlong(line, most);
  const int from = steep ? middle.X : middle.Y;
  sample.Middle = from;
  // A hard line of one pixel has two where it steps.
  const double blur = kind_.IsHard ? std::max(0.6, 2.35 - 1.3 * chord) : 0.9;
  const double whole = kind_.IsHard ? 0.5 : 0.75;
  bool isWhole = !cut.MeetsHidden;
  if (cut.MeetsHidden && blends_) {
    const StrokeCut blended = CutAlong(CutLine(map_, middle, steep, blends_), most);
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
    sample.IsPart = cut.Ink < 0.93 * chord - (kind_.IsHard ? 0.6 : 0);
    sample.Middle = from + cut.Middle();
    if (!kind_.IsHard && std::fabs(sample.Slope) < kLevel) sample.Middle += cut.EdgeShift();
  } else if (cut.MeetsHidden && !kind_.IsHard) {
    if (const auto there = MiddleOfBand(line, chord, sample.Slope)) {
      sample.IsSeen = true;
      sample.Middle = from + *there;
    }
  }
  return {sample, {from + cut.First, from + cut.Last}, first, last};
}

std::vector<InkRun> SampledPath::RunsBeyond(const StrokeSample& sample, int step) const {
  std::vector<InkRun> next;
  constexpr std::size_t kMost = 6;
  int last = sample.At, way = 0;
  for (int i = sample.Pixel; i >= 0 && i < Count() && next.size() < kMost; i += step) {
    const int at = sample.AlongRow ? Pixel(i).Y : Pixel(i).X, by = at - last;
    if (by == 0) continue;
    way = way == 0 ? by : way;
    if (by != way) break;
    last = at;
    const double chord = kind_.Width * 1.8;
    const StrokeCut cut = CutAt(map_, Pixel(i), sample.AlongRow, static_cast<int>(chord) + 3);
    if (cut.Ink <= 0 || cut.MeetsHidden || cut.IsLong) break;
    const int from = sample.AlongRow ? Pixel(i).X : Pixel(i).Y;
    next.push_back({from + cut.First, from + cut.Last});
  }
  return next;
}

void SampledPath::Finish() {
  samples_.clear();
  for (const Cut& cut : cuts_) samples_.push_back(cut.Sample);
  if (kind_.IsDotted) TakeCentres(samples_, DotsOn(map_, path_), kind_.Width);
  if (!kind_.IsHard || kind_.IsDotted) return;
  std::vector<InkRun> runs;
  for (const Cut& cut : cuts_) runs.push_back(cut.Ink);
  EvenOut(samples_, runs, kind_,
          [&](const StrokeSample& sample, int step) { return RunsBeyond(sample, step); });
}

std::vector<StrokeSample> SamplesOf(const InkMap& map, const std::vector<PathPixel>& path,
                                    const StrokeKind& kind, const InkBlends* blends) {
  return SampledPath(map, path, kind, blends).Samples();
}

}  // namespace graphize
