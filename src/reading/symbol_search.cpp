#include "reading/symbol_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "base/bit_map.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr double kLeastNewInk = 0.22;  // part of a shape that no other match explains

struct Offset {
  int X = 0, Y = 0;
};

/// Pixels with ink, or where some may be hidden, and those beside them.
BitMap PossibleInk(const InkMap& map, PictureOperation& operation) {
  BitMap ink(map.Width, map.Height);
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint8_t* values = map.Values.data() + static_cast<std::size_t>(y) * map.Width;
      std::uint64_t* row = ink.Row(y);
      for (int x = 0; x < map.Width; ++x)
        row[x >> 6] |= static_cast<std::uint64_t>(values[x] >= InkMap::kClear) << (x & 63);
    }
  });
  BitMap wide(map.Width, map.Height);
  const int words = ink.WordsPerRow();
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y)
      for (int v = std::max(y - 1, 0); v <= std::min(y + 1, map.Height - 1); ++v) {
        const std::uint64_t* row = ink.Row(v);
        for (int i = 0; i < words; ++i) {
          const std::uint64_t before = i > 0 ? row[i - 1] >> 63 : 0;
          const std::uint64_t behind = i + 1 < words ? row[i + 1] << 63 : 0;
          wide.Row(y)[i] |= row[i] | row[i] << 1 | row[i] >> 1 | before | behind;
        }
      }
  });
  return wide;
}

/// Some pixels of the shape where there is ink, far from each other first.
std::vector<Offset> ProbesOf(const SymbolShape& shape) {
  constexpr std::size_t kMost = 48;
  std::vector<Offset> ink;
  for (const float least : {0.8f, 0.5f, 0.3f}) {
    ink.clear();
    for (int y = -shape.Radius; y <= shape.Radius; ++y)
      for (int x = -shape.Radius; x <= shape.Radius; ++x)
        if (shape.At(x, y) >= least && shape.IsKnown[shape.IndexOf(x, y)]) ink.push_back({x, y});
    if (ink.size() >= 6) break;
  }
  std::vector<Offset> probes;
  std::vector<int> nearest(ink.size(), 1 << 20);
  for (std::size_t next = 0; !ink.empty() && probes.size() < std::min(kMost, ink.size());) {
    probes.push_back(ink[next]);
    for (std::size_t i = 0; i < ink.size(); ++i) {
      const int dx = ink[i].X - ink[next].X, dy = ink[i].Y - ink[next].Y;
      nearest[i] = std::min(nearest[i], dx * dx + dy * dy);
    }
    next = static_cast<std::size_t>(std::max_element(nearest.begin(), nearest.end()) -
                                    nearest.begin());
  }
  return probes;
}

struct Candidate {
  int X = 0, Y = 0;
  float Score = 0;
};

/// 64 bits of a row from column `x` on; none outside.
std::uint64_t BitsFrom(const BitMap& map, int x, int y) {
  if (y < 0 || y >= map.Height()) return 0;
  const std::uint64_t* row = map.Row(y);
  const int word = x >> 6, shift = x & 63;
  const auto at = [&](int i) { return i < 0 || i >= map.WordsPerRow() ? 0 : row[i]; };
  return shift == 0 ? at(word) : at(word) >> shift | at(word + 1) << (64 - shift);
}

/// Pixels on which the shape may have its middle, with the best around each of them.
std::vector<Candidate> CandidatesOf(const InkMap& map, const SymbolShape& shape,
                                    const SymbolMatcher& matcher, PictureOperation& operation) {
  const std::vector<Offset> probes = ProbesOf(shape);
  if (probes.empty()) return {};
  const BitMap ink = PossibleInk(map, operation);
  if (operation.Stopped) return {};
  const auto allowed = static_cast<int>(probes.size() / 4);
  std::vector<std::vector<Candidate>> rows(static_cast<std::size_t>(map.Height));
  // Every probe but the allowed ones must be on ink: so one of the first ones is, which is asked of
  // 64 columns at once.
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y)
      for (int left = 0; left < map.Width; left += 64) {
        std::uint64_t possible = 0;
        for (int i = 0; i <= allowed && possible != ~std::uint64_t{0}; ++i)
          possible |= BitsFrom(ink, left + probes[static_cast<std::size_t>(i)].X,
                               y + probes[static_cast<std::size_t>(i)].Y);
        for (; possible != 0; possible &= possible - 1) {
          const int x = left + std::countr_zero(possible);
          if (x >= map.Width) break;
          int missed = 0;
          for (const Offset& probe : probes)
            if (!ink.Get(x + probe.X, y + probe.Y) && ++missed > allowed) break;
          if (missed > allowed) continue;
          if (const auto score = matcher.ScoreAt(x, y))
            rows[static_cast<std::size_t>(y)].push_back({x, y, *score});
        }
      }
  });
  std::vector<Candidate> best;
  for (int y = 0; y < map.Height && !operation.Stopped; ++y)
    for (const Candidate& here : rows[static_cast<std::size_t>(y)]) {
      bool isBest = true;
      for (int v = std::max(y - 1, 0); v <= std::min(y + 1, map.Height - 1) && isBest; ++v) {
        const auto& row = rows[static_cast<std::size_t>(v)];
        auto at = std::lower_bound(row.begin(), row.end(), here.X - 1,
                                   [](const Candidate& a, int x) { return a.X < x; });
        for (; at != row.end() && at->X <= here.X + 1 && isBest; ++at)
          isBest = at->Score < here.Score ||
                   (at->Score == here.Score && std::pair(at->Y, at->X) >= std::pair(y, here.X));
      }
      if (isBest) best.push_back(here);
    }
  return best;
}

}  // namespace

std::vector<SymbolMatch> SearchSymbol(const InkMap& map, const SymbolShape& shape, double worst,
                                      PictureOperation& operation) {
  const SymbolMatcher matcher(map, shape);
  std::vector<SymbolMatch> open;
  for (const Candidate& candidate : CandidatesOf(map, shape, matcher, operation)) {
    SymbolMatch match{.X = static_cast<double>(candidate.X), .Y = static_cast<double>(candidate.Y)};
    matcher.Register(match, {});
    matcher.Judge(match, {});
    if (match.Missing <= worst && match.Visible >= kLeastVisible) open.push_back(match);
    if (operation.Stopped) return {};
  }
  // The best first; each explains ink that the others need not any more.
  const auto worse = [](const SymbolMatch& match) {
    return match.Missing + 0.1 * std::min(match.Excess, 1.0) + 0.1 * (1 - match.Visible);
  };
  std::vector<SymbolMatch> found;
  std::sort(open.begin(), open.end(),
            [&](const SymbolMatch& a, const SymbolMatch& b) { return worse(a) < worse(b); });
  const auto near = [&](const SymbolMatch& match, std::ptrdiff_t without) {
    std::vector<SymbolMatch> others;
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(found.size()); ++i)
      if (i != without && matcher.AreNear(found[static_cast<std::size_t>(i)], match))
        others.push_back(found[static_cast<std::size_t>(i)]);
    return others;
  };
  for (SymbolMatch& match : open) {
    if (operation.Stopped) return {};
    const std::vector<SymbolMatch> others = near(match, -1);
    if (!others.empty()) {
      matcher.Judge(match, others);
      if (match.Overlapped > 1 - kLeastNewInk) continue;
      matcher.Register(match, others);
      matcher.Judge(match, others);
      if (match.Overlapped > 1 - kLeastNewInk || match.Missing > worst) continue;
    }
    found.push_back(match);
  }
  // All of them once more, with what the others explain.
  for (int round = 0; round < 2; ++round)
    for (std::size_t i = 0; i < found.size() && !operation.Stopped; ++i) {
      const std::vector<SymbolMatch> others = near(found[i], static_cast<std::ptrdiff_t>(i));
      if (others.empty()) continue;
      matcher.Register(found[i], others);
      matcher.Judge(found[i], others);
    }
  if (operation.Stopped) return {};
  std::erase_if(found, [&](const SymbolMatch& match) { return match.Mismatch() > worst; });
  // Two that have come to one place are one.
  std::vector<SymbolMatch> apart;
  for (const SymbolMatch& match : found)
    if (std::none_of(apart.begin(), apart.end(), [&](const SymbolMatch& other) {
          return std::hypot(match.X - other.X, match.Y - other.Y) < 0.25 * shape.Size();
        }))
      apart.push_back(match);
  found = std::move(apart);
  std::sort(found.begin(), found.end(),
            [](const SymbolMatch& a, const SymbolMatch& b) { return a.Mismatch() < b.Mismatch(); });
  return found;
}

SymbolShape Averaged(const InkMap& map, const SymbolShape& shape,
                     const std::vector<SymbolMatch>& matches) {
  constexpr std::size_t kMost = 40;
  std::vector<const SymbolMatch*> best;
  for (const SymbolMatch& match : matches)
    if (best.size() < kMost && match.Visible > 0.6 && match.Overlapped < 0.1)
      best.push_back(&match);
  if (best.size() < 3) return shape;
  SymbolShape average = shape;
  std::vector<float> seen;
  for (int y = -shape.Radius; y <= shape.Radius; ++y)
    for (int x = -shape.Radius; x <= shape.Radius; ++x) {
      seen.clear();
      for (const SymbolMatch* match : best) {
        const double px = match->X + x, py = match->Y + y;
        const int column = static_cast<int>(std::floor(px)), row = static_cast<int>(std::floor(py));
        const double s = px - column, t = py - row;
        double sum = 0;
        bool isSeen = true;
        for (int j = 0; j < 2; ++j)
          for (int i = 0; i < 2; ++i) {
            const std::uint8_t value = map.At(column + i, row + j);
            isSeen = isSeen && value <= InkMap::kFull;
            sum += (i == 0 ? 1 - s : s) * (j == 0 ? 1 - t : t) * value / InkMap::kFull;
          }
        if (isSeen) seen.push_back(static_cast<float>(sum));
      }
      const std::size_t at = shape.IndexOf(x, y);
      // Beyond the symbol's surroundings nothing is learnt.
      const bool isFar =
          !shape.IsKnown[at] && shape.Ink[at] <= 0 && std::hypot(x, y) > 0.5 * shape.Size() + 3;
      average.IsKnown[at] = !isFar && seen.size() >= std::max<std::size_t>(2, best.size() / 4);
      if (!average.IsKnown[at]) continue;
      std::sort(seen.begin(), seen.end());
      // The mean of the middle half.
      const std::size_t first = seen.size() / 4, end = seen.size() - first;
      float sum = 0;
      for (std::size_t i = first; i < end; ++i) sum += seen[i];
      const float mean = sum / static_cast<float>(end - first);
      average.Ink[at] = mean < 0.06f ? 0 : mean;
    }
  Measure(average);
  return average;
}

}  // namespace graphize
