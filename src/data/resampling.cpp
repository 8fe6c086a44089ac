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
    // The points so far reach from lowest_ to highest_, which grow along the curve whichever way X
    // goes, so that they can be bisected. No search passes a point that is no number; only the
    // first one lies behind it already.
    float lowest = kInfinity, highest = -kInfinity;
    for (std::size_t i = 0; i < xs_.size(); ++i) {
      if (i == 0 && std::isnan(xs_[i])) {
        lowest = -kInfinity;
      } else {
        lowest = std::isnan(xs_[i]) ? -kInfinity : std::min(lowest, xs_[i]);
        highest = std::isnan(xs_[i]) ? kInfinity : std::max(highest, xs_[i]);
      }
      lowest_.push_back(lowest);
      highest_.push_back(highest);
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
  /// The first segment that x lies in; beyond them all the nearer one at the ends.
  std::size_t SegmentOf(double x) const {
    const auto above = std::lower_bound(highest_.begin(), highest_.end(), x) - highest_.begin();
    const auto below =
        std::lower_bound(lowest_.begin(), lowest_.end(), x, std::greater<>()) - lowest_.begin();
    const auto end = static_cast<std::size_t>(std::max(above, below));
    if (end < xs_.size()) return end > 0 ? end - 1 : 0;
    const bool first = std::fabs(x - xs_.front()) <= std::fabs(x - xs_.back());
    return first ? 0 : xs_.size() - 2;
  }

  std::vector<float> xs_, ys_;
  std::vector<float> lowest_, highest_;  // of points 0..i
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
