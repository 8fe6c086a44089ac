#include "reading/stroke_cut.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace graphize {

StrokeCut CutAlong(const CutLine& line, int most) {
  // The path may run beside a thin line's fuller pixel.
  int middle = 0;
  for (const int i : {-1, 1})
    if (line.Share(i) > line.Share(middle)) middle = i;
  StrokeCut cut;
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

std::optional<double> MiddleOfBand(const CutLine& line, double chord, double slope) {
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

}  // namespace graphize
