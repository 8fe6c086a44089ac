#include "data/resampling.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "data/list_edit.h"

namespace graphize {

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

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
    // The search passes all segments whose end is below x, but not one whose end is no number. The
    // highest end so far rises along the curve even where X does not, so that it can be bisected.
    float highest = -std::numeric_limits<float>::infinity();
    for (std::size_t i = 1; i + 1 < xs_.size(); ++i) {
      highest =
          std::isnan(xs_[i]) ? std::numeric_limits<float>::infinity() : std::max(highest, xs_[i]);
      highestEnds_.push_back(highest);
    }
  }

  /// Not finite where there is no value.
  double At(double x) const {
    if (xs_.size() < 2) return kNone;
    const auto j = static_cast<std::size_t>(
        std::lower_bound(highestEnds_.begin(), highestEnds_.end(), x) - highestEnds_.begin());
    const double x1 = xs_[j], y1 = ys_[j];
    const double slope = (ys_[j + 1] - y1) / (xs_[j + 1] - x1);
    return y1 + (x - x1) * slope;
  }

 private:
  std::vector<float> xs_, ys_;
  std::vector<float> highestEnds_;  // of segments 0..j; the last segment needs none
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
    const auto Y = static_cast<float>(Unscaled(curve.At(x), plan.YLog));
    if (!std::isfinite(X) || !std::isfinite(Y)) {
      end = SampleEnd::BadPoint;
      break;
    }
    ++store.ListCount;
    store.ListX[store.ListCount] = X;
    store.ListY[store.ListCount] = Y;
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
