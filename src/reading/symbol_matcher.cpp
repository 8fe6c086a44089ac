#include "reading/symbol_matcher.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace graphize {

namespace {
constexpr float kBesideInk = 0.1f;  // of a shape: less is beside it
constexpr int kPadding = 4;         // pixels that a shape between the pixels asks for around it
}  // namespace

SymbolMatcher::SymbolMatcher(const InkMap& map, const SymbolShape& shape)
    : map_(map), shape_(shape) {
  for (int y = -shape.Radius; y <= shape.Radius; ++y)
    for (int x = -shape.Radius; x <= shape.Radius; ++x)
      if (shape.IsKnown[shape.IndexOf(x, y)]) known_.push_back({x, y, shape.At(x, y)});
  std::stable_sort(known_.begin(), known_.end(),
                   [](const Offset& a, const Offset& b) { return a.Ink > b.Ink; });
  const auto side = static_cast<std::size_t>(shape.Side()), wide = side + 2 * kPadding;
  padded_.resize(wide * wide);
  for (std::size_t row = 0; row < side; ++row)
    std::copy_n(shape.Ink.begin() + static_cast<std::ptrdiff_t>(row * side), side,
                padded_.begin() + static_cast<std::ptrdiff_t>((row + kPadding) * wide + kPadding));
  reach_ = static_cast<int>(std::ceil(0.75 * shape.Size())) + 3;
}

std::optional<float> SymbolMatcher::ScoreAt(int x, int y) const {
  const int r = shape_.Radius;
  const bool isInside = x >= r && y >= r && x + r < map_.Width && y + r < map_.Height;
  const std::uint8_t* here =
      isInside ? map_.Values.data() + static_cast<std::size_t>(y) * map_.Width + x : nullptr;
  float hit = 0, seen = 0, beside = 0, missed = 0;
  const auto area = static_cast<float>(shape_.Area);
  for (const Offset& at : known_) {
    // The fullest pixels come first; where they do not hold, the others need not be asked.
    if (at.Ink < kBesideInk &&
        (seen < static_cast<float>(kLeastVisible) * area || hit < 0.5f * seen))
      return std::nullopt;
    const std::uint8_t value = here ? here[at.Y * map_.Width + at.X] : map_.At(x + at.X, y + at.Y);
    if (value > InkMap::kFull) continue;
    const float share = static_cast<float>(value) / InkMap::kFull;
    if (at.Ink < kBesideInk) {
      beside += share;
      continue;
    }
    seen += at.Ink;
    hit += std::min(share, at.Ink);
    missed += std::max(at.Ink - share, 0.0f);
    if (missed > 0.5f * area) return std::nullopt;
  }
  if (seen <= 0 || hit < 0.5f * seen) return std::nullopt;
  return hit / seen - 0.3f * beside / area;
}

namespace {

/// The kernel of cubic convolution (Keys 1981).
float Keys(double away) {
  const double d = std::fabs(away);
  if (d >= 2) return 0;
  return static_cast<float>(d < 1 ? (1.5 * d - 2.5) * d * d + 1
                                  : ((-0.5 * d + 2.5) * d - 4) * d + 2);
}

/// Weights of the pixels from two before a place to three behind it, for the value there and for
/// how much it grows over the pixel about it.
constexpr int kFirstTap = -2, kTaps = 6;
struct Weights {
  std::array<float, kTaps> Value, Slope;

  explicit Weights(double fraction) {
    for (int i = 0; i < kTaps; ++i) {
      const double away = fraction - (kFirstTap + i);
      Value[static_cast<std::size_t>(i)] = Keys(away);
      Slope[static_cast<std::size_t>(i)] = Keys(away + 0.5) - Keys(away - 0.5);
    }
  }
};

/// Weighted sums of `kTaps` values that lie `step` apart, for `count` places on from each other.
void Sum(const std::array<float, kTaps>& weights, const float* first, std::size_t step, float* sums,
         std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    float sum = 0;
    for (std::size_t tap = 0; tap < kTaps; ++tap) sum += weights[tap] * first[i + tap * step];
    sums[i] = sum;
  }
}

}  // namespace

SymbolMatcher::Laid SymbolMatcher::Lay(const SymbolMatch& match, bool withSlopes) const {
  // All pixels lie at the same fractions between the shape's: first along its rows, then down.
  Laid laid;
  const int r = shape_.Radius;
  laid.Side = 2 * r + 3;
  laid.Left = static_cast<int>(std::lround(match.X)) - r - 1;
  laid.Top = static_cast<int>(std::lround(match.Y)) - r - 1;
  const double x0 = laid.Left - match.X, y0 = laid.Top - match.Y;
  const int column0 = static_cast<int>(std::floor(x0)), row0 = static_cast<int>(std::floor(y0));
  const Weights across(x0 - column0), down(y0 - row0);
  const auto side = static_cast<std::size_t>(laid.Side);
  const std::size_t reached = side + kTaps - 1,
                    wide = static_cast<std::size_t>(shape_.Side() + 2 * kPadding);
  std::vector<float> rows(reached * side), slopes(withSlopes ? rows.size() : 0);
  const float* line = padded_.data() +
                      static_cast<std::size_t>(row0 + kFirstTap + r + kPadding) * wide +
                      static_cast<std::size_t>(column0 + kFirstTap + r + kPadding);
  for (std::size_t j = 0; j < reached; ++j, line += wide) {
    Sum(across.Value, line, 1, &rows[j * side], side);
    if (withSlopes) Sum(across.Slope, line, 1, &slopes[j * side], side);
  }
  laid.Ink.resize(side * side);
  Sum(down.Value, rows.data(), side, laid.Ink.data(), side * side);
  for (float& ink : laid.Ink) ink = std::clamp(ink, 0.0f, 1.0f);
  if (withSlopes) {
    laid.SlopeX.resize(side * side);
    laid.SlopeY.resize(side * side);
    Sum(down.Value, slopes.data(), side, laid.SlopeX.data(), side * side);
    Sum(down.Slope, rows.data(), side, laid.SlopeY.data(), side * side);
  }
  return laid;
}

SymbolMatcher::Laid SymbolMatcher::Explained(const SymbolMatch& match,
                                             const std::vector<SymbolMatch>& others) const {
  Laid all;
  if (others.empty()) return all;
  const int reach = std::max(reach_, shape_.Radius + 3) + 2;
  all.Side = 2 * reach + 1;
  all.Left = static_cast<int>(std::lround(match.X)) - reach;
  all.Top = static_cast<int>(std::lround(match.Y)) - reach;
  all.Ink.resize(static_cast<std::size_t>(all.Side) * static_cast<std::size_t>(all.Side));
  const double apart = reach + shape_.Radius + 2;
  for (const SymbolMatch& other : others) {
    if (std::fabs(other.X - match.X) > apart || std::fabs(other.Y - match.Y) > apart) continue;
    const Laid laid = Lay(other, false);
    for (int y = std::max(all.Top, laid.Top);
         y < std::min(all.Top + all.Side, laid.Top + laid.Side); ++y)
      for (int x = std::max(all.Left, laid.Left);
           x < std::min(all.Left + all.Side, laid.Left + laid.Side); ++x) {
        float& here = all.Ink[all.IndexOf(x, y)];
        here = std::max(here, laid.Ink[laid.IndexOf(x, y)]);
      }
  }
  return all;
}

bool SymbolMatcher::Register(SymbolMatch& match, const Laid& explained, double worst) const {
  // What a move of half a pixel may still bring, and what a converged one may.
  constexpr double kAtFirst = 0.3, kAtLast = 0.03;
  const double fromX = match.X, fromY = match.Y;
  double error = 0, xx = 0, xy = 0, yy = 0;
  for (int round = 0; round < 8; ++round) {
    double bx = 0, by = 0, squares = 0, ink = 0, missing = 0;
    xx = xy = yy = 0;
    int count = 0;
    const Laid laid = Lay(match, true);
    const KnownOnPicture known(shape_, match);
    for (int py = laid.Top; py < laid.Top + laid.Side; ++py)
      for (int px = laid.Left; px < laid.Left + laid.Side; ++px) {
        const std::uint8_t value = map_.At(px, py);
        if (value > InkMap::kFull || !known.At(px, py)) continue;
        const std::size_t at = laid.IndexOf(px, py);
        const double difference = static_cast<double>(value) / InkMap::kFull - laid.Ink[at];
        ink += laid.Ink[at];
        missing += std::max(0.0, -difference - Slack());
        if (difference > (shape_.IsHard ? 0.9 : 0.5) || explained.At(px, py) > 0.15f) continue;
        const double gx = laid.SlopeX[at], gy = laid.SlopeY[at];
        // The model moves with the match: its derivative is the negative of the shape's.
        xx += gx * gx;
        xy += gx * gy;
        yy += gy * gy;
        bx -= gx * difference;
        by -= gy * difference;
        squares += difference * difference;
        ++count;
      }
    // A little stiffness: where one direction is not seen, the match stays.
    const double stiff = 0.02 * (xx + yy) + 1e-6;
    const double a = xx + stiff, d = yy + stiff, determinant = a * d - xy * xy;
    const double dx = std::clamp((d * bx - xy * by) / determinant, -0.6, 0.6);
    const double dy = std::clamp((a * by - xy * bx) / determinant, -0.6, 0.6);
    match.X = std::clamp(match.X + dx, fromX - 1.7, fromX + 1.7);
    match.Y = std::clamp(match.Y + dy, fromY - 1.7, fromY + 1.7);
    error = squares / std::max(count - 2, 1);
    const bool isThere = std::hypot(dx, dy) < 0.004;
    if (missing > (worst + (isThere ? kAtLast : kAtFirst)) * ink && round > 0) return false;
    if (isThere) break;
  }
  const double determinant = std::max(xx * yy - xy * xy, 1e-9);
  match.Sigma = std::sqrt(error * std::max(xx, yy) / determinant);
  return true;
}

void SymbolMatcher::JudgeOverlap(SymbolMatch& match, const Laid& explained) const {
  double ink = 0, shared = 0;
  const Laid laid = Lay(match, false);
  for (int py = laid.Top; py < laid.Top + laid.Side; ++py)
    for (int px = laid.Left; px < laid.Left + laid.Side; ++px) {
      const double here = laid.Ink[laid.IndexOf(px, py)];
      ink += here;
      shared += here * explained.At(px, py);
    }
  match.Overlapped = ink > 0 ? shared / ink : 1;
}

void SymbolMatcher::Judge(SymbolMatch& match, const Laid& explained) const {
  double ink = 0, seen = 0, missing = 0, shared = 0;
  const Laid laid = Lay(match, false);
  const KnownOnPicture known(shape_, match);
  for (int py = laid.Top; py < laid.Top + laid.Side; ++py)
    for (int px = laid.Left; px < laid.Left + laid.Side; ++px) {
      const double here = laid.Ink[laid.IndexOf(px, py)];
      ink += here;
      shared += here * explained.At(px, py);
      const std::uint8_t value = map_.At(px, py);
      if (value > InkMap::kFull || !known.At(px, py)) continue;
      seen += here;
      const double share = static_cast<double>(value) / InkMap::kFull;
      missing += std::max(0.0, here - share - Slack());
    }
  match.Visible = ink > 0 ? seen / ink : 0;
  match.Missing = seen > 0 ? missing / seen : 1;
  match.Overlapped = ink > 0 ? shared / ink : 1;
  match.Excess = ExcessAt(match, laid, explained) / shape_.Area;
}

/// Ink that touches the shape and ends nearby: of another shape. What goes on, or to the next
/// match, is a line.
double SymbolMatcher::ExcessAt(const SymbolMatch& match, const Laid& own,
                               const Laid& explained) const {
  const int side = 2 * reach_ + 1;
  const auto index = [&](int x, int y) {
    return static_cast<std::size_t>(y + reach_) * static_cast<std::size_t>(side) +
           static_cast<std::size_t>(x + reach_);
  };
  const KnownOnPicture known(shape_, match);
  std::vector<float> left(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  std::vector<bool> touches(left.size()), leads(left.size());
  const int cx = static_cast<int>(std::lround(match.X)),
            cy = static_cast<int>(std::lround(match.Y));
  for (int py = cy - reach_; py <= cy + reach_; ++py)
    for (int px = cx - reach_; px <= cx + reach_; ++px) {
      const double share = map_.Share(px, py), here = own.At(px, py), theirs = explained.At(px, py),
                   x = px - match.X, y = py - match.Y;
      const std::size_t at = index(px - cx, py - cy);
      touches[at] = here > 0.3;
      leads[at] = theirs > 0.3 && here < 0.1;
      if (share < 0.35) continue;
      const double more = share - std::max(here, theirs);
      // Unknown parts of the shape may hold ink.
      const bool isOpen = std::fabs(x) <= shape_.Radius && std::fabs(y) <= shape_.Radius &&
                          here > 0 && !known.At(px, py);
      if (more > (shape_.IsHard ? 0.6 : 0.35) && !isOpen) left[at] = static_cast<float>(more);
    }
  double excess = 0;
  struct Spot {
    int X = 0, Y = 0;
  };
  std::vector<Spot> rim;
  for (int y = -reach_; y <= reach_; ++y)
    for (int x = -reach_; x <= reach_; ++x) {
      if (left[index(x, y)] <= 0) continue;
      double sum = 0;
      bool goesOn = false, isBeside = false;
      rim.assign(1, {x, y});
      sum += std::exchange(left[index(x, y)], 0.0f);
      while (!rim.empty()) {
        const Spot at = rim.back();
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

}  // namespace graphize
