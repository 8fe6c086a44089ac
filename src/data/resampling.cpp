#include "data/resampling.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "data/interpolation.h"
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

/// The captured points, each once, on the scales of the plan.
Interpolation CapturedCurve(const PointStore& store, const SamplePlan& plan) {
  std::vector<double> xs, ys;
  for (int i = 1, count = CountWithoutRepeats(store); i <= count; ++i) {
    xs.push_back(Scaled(store.CaptureX[i], plan.XLog));
    ys.push_back(Scaled(store.CaptureY[i], plan.YLog));
  }
  return {std::move(xs), std::move(ys)};
}

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

  const Interpolation curve = CapturedCurve(store, plan);
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
