#include "reading/symbol_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "base/bit_map.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

constexpr float kInk = 0.5f;            // of a shape: here ink must be
constexpr double kLeastVisible = 0.35;  // part of a shape; less is a guess
constexpr double kLeastNewInk = 0.22;   // part of a shape that no other match explains

struct Offset {
  int X = 0, Y = 0;
};

/// Pixels with ink, or where some may be hidden, and those beside them.
BitMap PossibleInk(const InkMap& map, PictureOperation& operation) {
  BitMap ink(map.Width, map.Height);
  constexpr std::uint8_t kClear = InkMap::kFull * 2 / 5;
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint8_t* values = map.Values.data() + static_cast<std::size_t>(y) * map.Width;
      std::uint64_t* row = ink.Row(y);
      for (int x = 0; x < map.Width; ++x)
        row[x >> 6] |= static_cast<std::uint64_t>(values[x] >= kClear) << (x & 63);
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

/// What the places of a shape are judged by, on one map.
class Matcher {
 public:
  Matcher(const InkMap& map, const SymbolShape& shape) : map_(map), shape_(shape) {
    for (int y = -shape.Radius; y <= shape.Radius; ++y)
      for (int x = -shape.Radius; x <= shape.Radius; ++x)
        if (shape.IsKnown[shape.IndexOf(x, y)]) known_.push_back({x, y});
    reach_ = static_cast<int>(std::ceil(0.75 * shape.Size())) + 3;
  }

  /// How well the shape lies with its middle on a pixel, 1: just so; absent where it cannot be.
  std::optional<float> ScoreAt(int x, int y) const {
    float hit = 0, seen = 0, beside = 0;
    for (const Offset& at : known_) {
      const std::uint8_t value = map_.At(x + at.X, y + at.Y);
      if (value > InkMap::kFull) continue;
      const float share = static_cast<float>(value) / InkMap::kFull, ink = shape_.At(at.X, at.Y);
      seen += ink;
      hit += std::min(share, ink);
      if (ink < 0.1f) beside += share;
    }
    const auto area = static_cast<float>(shape_.Area);
    if (seen < static_cast<float>(kLeastVisible) * area || hit < 0.5f * seen) return std::nullopt;
    return hit / seen - 0.3f * beside / area;
  }

  /// Moves the match to where the squares of the differences are least (Gauss and Newton), leaving
  /// out what is hidden, what other matches explain, and ink that passes by.
  void Register(SymbolMatch& match, const std::vector<SymbolMatch>& others) const {
    const double fromX = match.X, fromY = match.Y;
    double error = 0, xx = 0, xy = 0, yy = 0;
    for (int round = 0; round < 8; ++round) {
      double bx = 0, by = 0, squares = 0;
      xx = xy = yy = 0;
      int count = 0;
      ForEachPixel(match, shape_.Radius, [&](int px, int py, double x, double y) {
        const std::uint8_t value = map_.At(px, py);
        if (value > InkMap::kFull || !IsKnownNear(x, y)) return;
        const double ink = shape_.Between(x, y);
        const double difference = static_cast<double>(value) / InkMap::kFull - ink;
        if (difference > (shape_.IsHard ? 0.9 : 0.5) || Explained(px, py, others) > 0.15) return;
        const double gx = shape_.Between(x + 0.5, y) - shape_.Between(x - 0.5, y);
        const double gy = shape_.Between(x, y + 0.5) - shape_.Between(x, y - 0.5);
        // The model moves with the match: its derivative is the negative of the shape's.
        xx += gx * gx;
        xy += gx * gy;
        yy += gy * gy;
        bx -= gx * difference;
        by -= gy * difference;
        squares += difference * difference;
        ++count;
      });
      // A little stiffness: where one direction is not seen, the match stays.
      const double stiff = 0.02 * (xx + yy) + 1e-6;
      const double a = xx + stiff, d = yy + stiff, determinant = a * d - xy * xy;
      const double dx = std::clamp((d * bx - xy * by) / determinant, -0.6, 0.6);
      const double dy = std::clamp((a * by - xy * bx) / determinant, -0.6, 0.6);
      match.X = std::clamp(match.X + dx, fromX - 1.7, fromX + 1.7);
      match.Y = std::clamp(match.Y + dy, fromY - 1.7, fromY + 1.7);
      error = squares / std::max(count - 2, 1);
      if (std::hypot(dx, dy) < 0.004) break;
    }
    const double determinant = std::max(xx * yy - xy * xy, 1e-9);
    match.Sigma = std::sqrt(error * std::max(xx, yy) / determinant);
  }

  /// Fills in how well it matches.
  void Judge(SymbolMatch& match, const std::vector<SymbolMatch>& others) const {
    double ink = 0, seen = 0, missing = 0, shared = 0;
    ForEachPixel(match, shape_.Radius, [&](int px, int py, double x, double y) {
      const double here = shape_.Between(x, y);
      ink += here;
      const double explained = Explained(px, py, others);
      shared += here * explained;
      const std::uint8_t value = map_.At(px, py);
      if (value > InkMap::kFull || !IsKnownNear(x, y)) return;
      seen += here;
      const double share = static_cast<double>(value) / InkMap::kFull;
      missing += std::max(0.0, here - share - (shape_.IsHard ? 0.45 : 0.12));
    });
    match.Visible = ink > 0 ? seen / ink : 0;
    match.Missing = seen > 0 ? missing / seen : 1;
    match.Overlapped = ink > 0 ? shared / ink : 1;
    match.Excess = ExcessAt(match, others) / shape_.Area;
  }

  bool AreNear(const SymbolMatch& a, const SymbolMatch& b) const {
    const double reach = 2 * reach_;
    return std::fabs(a.X - b.X) <= reach && std::fabs(a.Y - b.Y) <= reach;
  }

 private:
  template <class Visit>
  void ForEachPixel(const SymbolMatch& match, int radius, const Visit& visit) const {
    const int cx = static_cast<int>(std::lround(match.X)),
              cy = static_cast<int>(std::lround(match.Y));
    for (int y = cy - radius; y <= cy + radius; ++y)
      for (int x = cx - radius; x <= cx + radius; ++x) visit(x, y, x - match.X, y - match.Y);
  }
  bool IsKnownNear(double x, double y) const {
    const int column = static_cast<int>(std::lround(x)), row = static_cast<int>(std::lround(y));
    return std::abs(column) <= shape_.Radius && std::abs(row) <= shape_.Radius &&
           shape_.IsKnown[shape_.IndexOf(column, row)];
  }
  /// How much of the pixel's ink belongs to the other matches.
  double Explained(int x, int y, const std::vector<SymbolMatch>& others) const {
    double most = 0;
    for (const SymbolMatch& other : others)
      if (std::fabs(x - other.X) <= shape_.Radius && std::fabs(y - other.Y) <= shape_.Radius)
        most = std::max(most, static_cast<double>(shape_.Between(x - other.X, y - other.Y)));
    return most;
  }

  /// Ink that touches the shape and ends nearby: of another shape. What goes on, or to the next
  /// match, is a line.
  double ExcessAt(const SymbolMatch& match, const std::vector<SymbolMatch>& others) const {
    const int side = 2 * reach_ + 1;
    const auto index = [&](int x, int y) {
      return static_cast<std::size_t>(y + reach_) * static_cast<std::size_t>(side) +
             static_cast<std::size_t>(x + reach_);
    };
    std::vector<float> left(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    std::vector<bool> touches(left.size()), leads(left.size());
    const int cx = static_cast<int>(std::lround(match.X)),
              cy = static_cast<int>(std::lround(match.Y));
    ForEachPixel(match, reach_, [&](int px, int py, double x, double y) {
      const double share = map_.Share(px, py);
      const std::size_t at = index(px - cx, py - cy);
      const double own = shape_.Between(x, y), theirs = Explained(px, py, others);
      touches[at] = own > 0.3;
      leads[at] = theirs > 0.3 && own < 0.1;
      if (share < 0.35) return;
      const double more = share - std::max(own, theirs);
      // Unknown parts of the shape may hold ink.
      const bool isOpen = std::fabs(x) <= shape_.Radius && std::fabs(y) <= shape_.Radius &&
                          own > 0 && !IsKnownNear(x, y);
      if (more > (shape_.IsHard ? 0.6 : 0.35) && !isOpen) left[at] = static_cast<float>(more);
    });
    double excess = 0;
    std::vector<Offset> rim;
    for (int y = -reach_; y <= reach_; ++y)
      for (int x = -reach_; x <= reach_; ++x) {
        if (left[index(x, y)] <= 0) continue;
        double sum = 0;
        bool goesOn = false, isBeside = false;
        rim.assign(1, {x, y});
        sum += std::exchange(left[index(x, y)], 0.0f);
        while (!rim.empty()) {
          const Offset at = rim.back();
          rim.pop_back();
          goesOn = goesOn || std::abs(at.X) == reach_ || std::abs(at.Y) == reach_;
          for (int v = std::max(at.Y - 1, -reach_); v <= std::min(at.Y + 1, reach_); ++v)
            for (int u = std::max(at.X - 1, -reach_); u <= std::min(at.X + 1, reach_); ++u) {
              isBeside = isBeside || touches[index(u, v)];
              goesOn = goesOn || leads[index(u, v)];
              float& next = left[index(u, v)];
              if (next <= 0) continue;
              sum += std::exchange(next, 0.0f);
              rim.push_back({u, v});
            }
        }
        // Single pixels are grain and edges.
        if (isBeside && !goesOn && sum > 1) excess += sum;
      }
    return excess;
  }

  const InkMap& map_;
  const SymbolShape& shape_;
  std::vector<Offset> known_;
  int reach_ = 0;
};

/// Pixels on which the shape may have its middle, with the best around each of them.
std::vector<Candidate> CandidatesOf(const InkMap& map, const SymbolShape& shape,
                                    const Matcher& matcher, PictureOperation& operation) {
  const std::vector<Offset> probes = ProbesOf(shape);
  if (probes.empty()) return {};
  const BitMap ink = PossibleInk(map, operation);
  if (operation.Stopped) return {};
  const auto allowed = static_cast<int>(probes.size() / 4);
  std::vector<std::vector<Candidate>> rows(static_cast<std::size_t>(map.Height));
  // Every probe but the allowed ones must be on ink: so one of the first ones is.
  ParallelRows(map.Width, map.Height, operation, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      for (int x = 0; x < map.Width; ++x) {
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
  const Matcher matcher(map, shape);
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
