#include "data/interpolation.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace graphize {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

Interpolation::Interpolation(std::vector<double> xs, std::vector<double> ys)
    : xs_(std::move(xs)), ys_(std::move(ys)) {
  // The reach of the points so far grows along the curve whichever way X goes, so that it can be
  // bisected. No search passes a point that is no number; only the first one lies behind it.
  double lowest = std::isnan(xs_.empty() ? 0 : xs_[0]) ? -kInfinity : kInfinity;
  double highest = -kInfinity;
  for (std::size_t i = 0; i < xs_.size(); ++i) {
    const bool bad = i > 0 && std::isnan(xs_[i]);
    lowest = bad ? -kInfinity : std::min(lowest, xs_[i]);
    lowest_.push_back(lowest);
    if (i == 0) continue;
    highest = bad ? kInfinity : std::max(highest, xs_[i]);
    highestEnd_.push_back(highest);
  }
}

double Interpolation::At(double x) const {
  if (xs_.size() < 2) return std::numeric_limits<double>::quiet_NaN();
  const std::size_t j = SegmentOf(x);
  const double slope = (ys_[j + 1] - ys_[j]) / (xs_[j + 1] - xs_[j]);
  return ys_[j] + (x - xs_[j]) * slope;
}

bool Interpolation::LiesIn(std::size_t j, double x) const {
  return std::min(xs_[j], xs_[j + 1]) <= x && x <= std::max(xs_[j], xs_[j + 1]);
}

std::size_t Interpolation::SegmentOf(double x) const {
  const auto behind = static_cast<std::size_t>(
      std::lower_bound(highestEnd_.begin(), highestEnd_.end(), x) - highestEnd_.begin());
  if (behind + 1 < xs_.size() && LiesIn(behind, x)) return behind;
  const auto below = static_cast<std::size_t>(
      std::lower_bound(lowest_.begin(), lowest_.end(), x, std::greater<>()) - lowest_.begin());
  const std::size_t end = std::max(x <= xs_[0] ? 0 : behind + 1, below);
  if (end < xs_.size()) return end > 0 ? end - 1 : 0;
  const bool first = std::fabs(x - xs_.front()) <= std::fabs(x - xs_.back());
  return first ? 0 : xs_.size() - 2;
}

}  // namespace graphize
