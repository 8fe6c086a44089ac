#include "reading/symbol_search.h"

#include <algorithm>
#include <array>
#include <atomic>
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

/// Of 64 columns from `left` on, those about which no more than `allowed` probes, fewer than 32,
/// are not on ink: a counter for each column, bit by bit, which overflows with one more.
std::uint64_t WhereFewMiss(const BitMap& ink, const std::vector<Offset>& probes, int allowed,
                           int left, int y) {
  std::array<std::uint64_t, 5> missed{};
  for (std::size_t bit = 0; bit < missed.size(); ++bit)
    missed[bit] = ((31 - allowed) >> bit & 1) != 0 ? ~std::uint64_t{0} : 0;
  std::uint64_t few = ~std::uint64_t{0};
  for (const Offset& probe : probes) {
    std::uint64_t carry = ~BitsFrom(ink, left + probe.X, y + probe.Y);
    for (std::uint64_t& bit : missed) {
      const std::uint64_t both = bit & carry;
      bit ^= carry;
      carry = both;
    }
    few &= ~carry;
    if (few == 0) break;
  }
  return few;
}

/// Pixels on which the shape may have its middle, with the best around each of them. None where
/// there are more than a plot has: grain, or a pattern.
std::vector<Candidate> CandidatesOf(const InkMap& map, const BitMap& ink, const SymbolShape& shape,
                                    const SymbolMatcher& matcher, PictureOperation& operation) {
  const std::vector<Offset> probes = ProbesOf(shape);
  if (probes.empty()) return {};
  const auto allowed = static_cast<int>(probes.size() / 4);
  const std::size_t most = std::max<std::size_t>(map.Values.size() / 200, 500);
  // About a symbol, its shape lies half on its ink in as many places as a quarter of it has pixels.
  const auto mostHits =
      static_cast<std::size_t>(static_cast<double>(most) * (4 + 0.25 * shape.Width * shape.Height));
  std::atomic<std::size_t> hits = 0;
  std::vector<std::vector<Candidate>> rows(static_cast<std::size_t>(map.Height));
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end && hits <= mostHits; hits += rows[y++].size())
      for (int left = 0; left < map.Width && !operation.Stopped; left += 64) {
        std::uint64_t possible = WhereFewMiss(ink, probes, allowed, left, y);
        for (; possible != 0; possible &= possible - 1) {
          const int x = left + std::countr_zero(possible);
          if (x >= map.Width) break;
          if (const auto score = matcher.ScoreAt(x, y))
            rows[static_cast<std::size_t>(y)].push_back({x, y, *score});
        }
      }
  });
  if (hits > mostHits) return {};
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
      if (best.size() > most) return {};
    }
  return best;
}

/// The matches found so far, by where they are.
class FoundMatches {
 public:
  FoundMatches(const InkMap& map, int reach)
      : cell_(reach + 8),  // a match may still move a little
        across_(map.Width / cell_ + 1),
        cells_(static_cast<std::size_t>(across_) *
               static_cast<std::size_t>(map.Height / cell_ + 1)) {}

  void Add(const SymbolMatch& match) {
    const auto column = std::clamp(static_cast<int>(match.X) / cell_, 0, across_ - 1),
               row = std::clamp(static_cast<int>(match.Y) / cell_, 0, Down() - 1);
    At(column, row).push_back(All.size());
    All.push_back(match);
  }
  /// Those within `reach`, no more than the constructor's, in columns and rows, but for one.
  std::vector<SymbolMatch> Near(const SymbolMatch& match, double reach,
                                std::optional<std::size_t> without = {}) const {
    const int column = static_cast<int>(match.X) / cell_, row = static_cast<int>(match.Y) / cell_;
    std::vector<SymbolMatch> others;
    for (int y = std::max(row - 1, 0); y <= std::min(row + 1, Down() - 1); ++y)
      for (int x = std::max(column - 1, 0); x <= std::min(column + 1, across_ - 1); ++x)
        for (const std::size_t i : cells_[static_cast<std::size_t>(y * across_ + x)])
          if (i != without && std::fabs(All[i].X - match.X) <= reach &&
              std::fabs(All[i].Y - match.Y) <= reach)
            others.push_back(All[i]);
    return others;
  }

  std::vector<SymbolMatch> All;

 private:
  int Down() const { return static_cast<int>(cells_.size()) / across_; }
  std::vector<std::size_t>& At(int column, int row) {
    return cells_[static_cast<std::size_t>(row * across_ + column)];
  }

  int cell_, across_;
  std::vector<std::vector<std::size_t>> cells_;
};

}  // namespace

BitMap PossibleInk(const InkMap& map, PictureOperation& operation) {
  BitMap wide(map.Width, map.Height);
  const auto words = static_cast<std::size_t>(wide.WordsPerRow());
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    std::vector<std::uint64_t> ink(words);
    for (int v = std::max(first - 1, 0); v < std::min(end + 1, map.Height); ++v) {
      std::fill(ink.begin(), ink.end(), 0);
      const std::uint8_t* values = map.Values.data() + static_cast<std::size_t>(v) * map.Width;
      for (int x = 0; x < map.Width; ++x)
        ink[static_cast<std::size_t>(x >> 6)] |=
            static_cast<std::uint64_t>(values[x] >= InkMap::kClear) << (x & 63);
      for (int y = std::max(v - 1, first); y <= std::min(v + 1, end - 1); ++y)
        for (std::size_t i = 0; i < words; ++i) {
          const std::uint64_t before = i > 0 ? ink[i - 1] >> 63 : 0;
          const std::uint64_t behind = i + 1 < words ? ink[i + 1] << 63 : 0;
          wide.Row(y)[i] |= ink[i] | ink[i] << 1 | ink[i] >> 1 | before | behind;
        }
    }
  });
  return wide;
}

std::vector<SymbolMatch> SearchSymbol(const InkMap& map, const BitMap& ink,
                                      const SymbolShape& shape, double worst,
                                      PictureOperation& operation) {
  const SymbolMatcher matcher(map, shape);
  std::vector<SymbolMatch> open;
  for (const Candidate& candidate : CandidatesOf(map, ink, shape, matcher, operation)) {
    if (operation.Stopped) return {};
    SymbolMatch match{.X = static_cast<double>(candidate.X), .Y = static_cast<double>(candidate.Y)};
    if (!matcher.Register(match, {}, worst)) continue;
    matcher.Judge(match, {});
    if (match.Missing <= worst && match.Visible >= kLeastVisible) open.push_back(match);
  }
  // The best first; each explains ink that the others need not any more.
  const auto worse = [](const SymbolMatch& match) {
    return match.Missing + 0.1 * std::min(match.Excess, 1.0) + 0.1 * (1 - match.Visible);
  };
  FoundMatches found(map, matcher.NearReach());
  std::sort(open.begin(), open.end(),
            [&](const SymbolMatch& a, const SymbolMatch& b) { return worse(a) < worse(b); });
  for (SymbolMatch& match : open) {
    if (operation.Stopped) return {};
    const std::vector<SymbolMatch> others = found.Near(match, matcher.NearReach());
    if (!others.empty()) {
      const auto explained = matcher.Explained(match, others);
      matcher.JudgeOverlap(match, explained);
      if (match.Overlapped > 1 - kLeastNewInk) continue;
      if (!matcher.Register(match, explained, worst)) continue;
      matcher.Judge(match, explained);
      if (match.Overlapped > 1 - kLeastNewInk || match.Missing > worst) continue;
    }
    found.Add(match);
  }
  // All of them once more, with what the others explain.
  for (int round = 0; round < 2; ++round)
    for (std::size_t i = 0; i < found.All.size() && !operation.Stopped; ++i) {
      SymbolMatch& match = found.All[i];
      const std::vector<SymbolMatch> others = found.Near(match, matcher.NearReach(), i);
      if (others.empty()) continue;
      const auto explained = matcher.Explained(match, others);
      matcher.Register(match, explained, 1);
      matcher.Judge(match, explained);
    }
  if (operation.Stopped) return {};
  // Two that have come to one place are one.
  FoundMatches apart(map, matcher.NearReach());
  for (const SymbolMatch& match : found.All) {
    const double least = 0.25 * shape.Size();
    const std::vector<SymbolMatch> others = apart.Near(match, least);
    if (match.Mismatch() <= worst &&
        std::none_of(others.begin(), others.end(), [&](const SymbolMatch& other) {
          return std::hypot(match.X - other.X, match.Y - other.Y) < least;
        }))
      apart.Add(match);
  }
  std::sort(apart.All.begin(), apart.All.end(),
            [](const SymbolMatch& a, const SymbolMatch& b) { return a.Mismatch() < b.Mismatch(); });
  return std::move(apart.All);
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
