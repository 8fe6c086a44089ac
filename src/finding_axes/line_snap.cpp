#include "finding_axes/line_snap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace graphize {

namespace {

constexpr int kReach = 7;                  // of the middle from the click, pixels
constexpr int kEdge = 3;                   // of the profile beyond that
constexpr int kNear = 3;                   // where a piece begins
constexpr std::array kFar = {14, 9, 6};    // and ends: a tick is short
constexpr int kHalf = kReach + kEdge;      // of the profile
constexpr int kAround = kReach + kFar[0];  // of what is looked at
constexpr int kWidest = 6;                 // of a line
constexpr double kFaintest = 0.1;          // of a line's ink
constexpr double kEven = 0.6;              // of its best ink, a line has at least
constexpr double kPlain = 0.35;            // most ink beside it, of its own

/// How much each pixel differs from the paper around a click, 0 to 1.
class Neighbourhood {
 public:
  Neighbourhood(const Raster& picture, int x, int y) : picture_(picture) {
    std::array<std::array<int, 256>, 3> counts{};
    int all = 0;
    for (int row = std::max(y - kAround, 0); row <= std::min(y + kAround, picture.Height() - 1);
         ++row)
      for (int column = std::max(x - kAround, 0);
           column <= std::min(x + kAround, picture.Width() - 1); ++column) {
        const std::uint32_t pixel = picture.Row(row)[column];
        for (int channel = 0; channel < 3; ++channel)
          ++counts[static_cast<std::size_t>(channel)][pixel >> 8 * channel & 0xffu];
        ++all;
      }
    for (std::size_t channel = 0; channel < 3; ++channel) {
      int below = 0, level = 0;
      while (level < 255 && 2 * (below += counts[channel][static_cast<std::size_t>(level)]) < all)
        ++level;
      paper_[channel] = level;
    }
  }

  double Ink(int x, int y) const {
    if (x < 0 || y < 0 || x >= picture_.Width() || y >= picture_.Height()) return 0;
    const std::uint32_t pixel = picture_.Row(y)[x];
    int most = 0;
    for (std::size_t channel = 0; channel < 3; ++channel)
      most = std::max(most,
                      std::abs(static_cast<int>(pixel >> 8 * channel & 0xffu) - paper_[channel]));
    return most / 255.0;
  }

 private:
  const Raster& picture_;
  std::array<int, 3> paper_{};
};

/// Ink across a piece of a line: what most of the piece has, and what the best of it has.
using Profile = std::array<double, 2 * kHalf + 1>;

/// The middle of the one line that a profile shows nearest to its own, in steps from there.
std::optional<double> MiddleOf(const Profile& profile, const Profile& best) {
  const double most = *std::max_element(profile.begin(), profile.end());
  if (most < kFaintest) return std::nullopt;
  std::optional<double> nearest;
  for (int i = 0; i <= 2 * kHalf; ++i) {
    const auto at = [&](int step) { return profile[static_cast<std::size_t>(step)]; };
    if (at(i) < 0.5 * most || (i > 0 && at(i - 1) > kPlain * most)) continue;
    int end = i;
    while (end < 2 * kHalf && at(end + 1) > kPlain * most) ++end;
    // Its soft edges count, too.
    double sum = 0, moment = 0;
    for (int step = std::max(i - 1, 0); step <= std::min(end + 1, 2 * kHalf); ++step) {
      sum += at(step);
      moment += at(step) * (step - kHalf);
    }
    const double middle = moment / sum;
    // A slope crosses the profile somewhere, with all of its ink in few places only.
    const auto top = std::max_element(profile.begin() + i, profile.begin() + end + 1);
    const bool isEven = *top >= kEven * best[static_cast<std::size_t>(top - profile.begin())];
    if (isEven && end - i + 1 <= kWidest && i > 0 && end < 2 * kHalf &&
        std::fabs(middle) <= kReach && (!nearest || std::fabs(middle) < std::fabs(*nearest)))
      nearest = middle;
    i = end;
  }
  return nearest;
}

/// The upright line near a place, or the level one.
std::optional<double> LineNear(const Neighbourhood& near, bool upright, int across, int along) {
  std::optional<double> found;
  for (const int far : kFar) {
    std::optional<double> sides[2];
    for (const int side : {0, 1}) {
      Profile profile{}, best{};
      for (int step = -kHalf; step <= kHalf; ++step) {
        std::array<double, kFar[0] - kNear + 1> ink{};
        const auto count = static_cast<std::ptrdiff_t>(far - kNear + 1);
        for (int k = kNear; k <= far; ++k) {
          const int a = across + step, b = along + (side == 0 ? -k : k);
          ink[static_cast<std::size_t>(k - kNear)] = upright ? near.Ink(a, b) : near.Ink(b, a);
        }
        std::sort(ink.begin(), ink.begin() + count);
        const auto at = static_cast<std::size_t>(step + kHalf);
        profile[at] = ink[static_cast<std::size_t>(count / 3)];
        best[at] = ink[static_cast<std::size_t>(count - 1)];
      }
      sides[side] = MiddleOf(profile, best);
    }
    if (!sides[0] && !sides[1]) continue;
    constexpr double kSame = 1;
    if (!sides[0] || !sides[1])
      found = across + (sides[0] ? *sides[0] : *sides[1]);
    else if (std::fabs(*sides[0] - *sides[1]) <= kSame)
      found = across + 0.5 * (*sides[0] + *sides[1]);
    else
      found = across + (std::fabs(*sides[0]) < std::fabs(*sides[1]) ? *sides[0] : *sides[1]);
    return found;
  }
  return found;
}

}  // namespace

LineSnap SnapToLines(const Raster& picture, int x, int y) {
  LineSnap snap{static_cast<double>(x), static_cast<double>(y)};
  if (x < 0 || y < 0 || x >= picture.Width() || y >= picture.Height()) return snap;
  const Neighbourhood near(picture, x, y);
  std::optional<double> column, row;
  for (int round = 0; round < 3; ++round) {
    const auto whole = [](const std::optional<double>& found, int clicked) {
      return found ? static_cast<int>(std::lround(*found)) : clicked;
    };
    column = LineNear(near, true, whole(column, x), whole(row, y));
    row = LineNear(near, false, whole(row, y), whole(column, x));
  }
  snap.OnUpright = column && std::fabs(*column - x) <= kReach;
  snap.OnLevel = row && std::fabs(*row - y) <= kReach;
  if (snap.OnUpright) snap.Column = *column;
  if (snap.OnLevel) snap.Row = *row;
  return snap;
}

}  // namespace graphize
