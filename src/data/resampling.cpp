#include "data/resampling.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "data/list_edit.h"

namespace graphize {

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// `value` on its axis' own scale; not a number where it has no place there.
float Scaled(float value, bool log) {
  if (!log) return std::isfinite(value) ? value : kNone;
  if (!(value > 0) || !std::isfinite(value)) return kNone;
  return static_cast<float>(std::log(static_cast<double>(value)) / std::log(10.0));
}

double Unscaled(double value, bool log) {
  return log ? std::pow(10.0, value) : value;
}

/// The captured points as a function of x, on the scales of the plan.
class Interpolation {
 public:
  Interpolation(const PointStore& store, const SamplePlan& plan) {
    for (int i = 1; i <= store.CaptureCount; ++i) {
      xs_.push_back(Scaled(store.CaptureX[i], plan.XLog));
      ys_.push_back(Scaled(store.CaptureY[i], plan.YLog));
    }
    // The reach of the points so far grows along the curve whichever way X goes, so that it can be
    // bisected. No search passes a point that is no number; only the first one lies behind it.
    float lowest = std::isnan(xs_.empty() ? 0 : xs_[0]) ? -kInfinity : kInfinity;
    float highest = -kInfinity;
    for (std::size_t i = 0; i < xs_.size(); ++i) {
      const bool bad = i > 0 && std::isnan(xs_[i]);
      lowest = bad ? -kInfinity : std::min(lowest, xs_[i]);
      lowest_.push_back(lowest);
      if (i == 0) continue;
      highest = bad ? kInfinity : std::max(highest, xs_[i]);
      highestEnd_.push_back(highest);
    }
  }

  /// Not finite where there is no value.
  double At(double x) const {
    if (xs_.size() < 2) return kNone;
    const std::size_t j = SegmentOf(x);
    const double x1 = xs_[j], y1 = ys_[j];
    const double slope = (ys_[j + 1] - y1) / (xs_[j + 1] - x1);
    return y1 + (x - x1) * slope;
  }

 private:
  bool LiesIn(std::size_t j, double x) const {
    return std::min(xs_[j], xs_[j + 1]) <= x && x <= std::max(xs_[j], xs_[j + 1]);
  }

  /// The first segment that ends at or behind x; where x does not lie in that, because X falls
  /// there, the first that it lies in; beyond them all the one at the nearer end.
  std::size_t SegmentOf(double x) const {
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

  std::vector<float> xs_, ys_;
  std::vector<float> lowest_;      // of points 0 to i
  std::vector<float> highestEnd_;  // of the ends of segments 0 to j
};

}  // namespace

double StepOf(const SamplePlan& plan) {
  const double first = Scaled(plan.MinX, plan.XLog), last = Scaled(plan.MaxX, plan.XLog);
  return (last - first) / (plan.Count - 1);
}

double CountOfStep(const SamplePlan& plan, double step) {
  const double first = Scaled(plan.MinX, plan.XLog), last = Scaled(plan.MaxX, plan.XLog);
  return (last - first) / step + 1;
}

SampleEnd ReSampleList(PointStore& store, const SamplePlan& plan, bool RefreshList,
                       const Desktop& desktop) {
  GrowList(store, plan.Count);
  desktop.ShowNow();
  ClearList(store);
  store.ListCount = 0;
  store.NPoints = 0;
  store.ListIsCaptured = false;
  store.ListRows = PointStore::Rows::Places;

  const Interpolation curve(store, plan);
  const double first = Scaled(plan.MinX, plan.XLog), step = StepOf(plan);
  SampleEnd end = SampleEnd::Done;
  // Counted, not added up, so that rounding loses no point.
  for (int k = 0; k < plan.Count; ++k) {
    const double x = first + k * step;
    const auto X = static_cast<float>(Unscaled(x, plan.XLog));
    const double y = curve.At(x);
    const auto Y = static_cast<float>(Unscaled(y, plan.YLog));
    // y as well: 10 to the power minus infinity would be a good 0.
    if (!std::isfinite(X) || !std::isfinite(y) || !std::isfinite(Y)) {
      end = SampleEnd::BadPoint;
      break;
    }
    ++store.ListCount;
    store.ListX[store.ListCount] = X;
    store.ListY[store.ListCount] = Y;
    store.ListId[store.ListCount] = 0;
    if (RefreshList) ShowNewest(store);
    desktop.Pump();
    if (desktop.EscapeHeld()) {
      end = SampleEnd::Stopped;
      break;
    }
  }
  ShowNewest(store);
  return end;
}

}  // namespace graphize
