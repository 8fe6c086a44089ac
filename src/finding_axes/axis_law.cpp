#include "finding_axes/axis_law.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/translation.h"

namespace graphize {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

double OnScale(bool log, double value) {
  if (!log) return value;
  return value > 0 ? std::log10(value) : kNone;
}

/// Which labels the law explains.
LawFit Explained(std::span<const PlacedLabel> labels, const AxisLaw& law, double tolerance) {
  LawFit fit{law, {}, 0};
  for (std::size_t i = 0; i < labels.size(); ++i) {
    double nearest = tolerance;
    int best = -1;
    for (std::size_t m = 0; m < labels[i].Meanings.size(); ++m) {
      const double off = std::fabs(law.PositionOf(labels[i].Meanings[m]) - labels[i].Position);
      if (off <= nearest) {
        nearest = off;
        best = static_cast<int>(m);
      }
    }
    if (best < 0) continue;
    fit.Labels.push_back({static_cast<int>(i), best});
    fit.Residuals += nearest * nearest;
  }
  if (!fit.Labels.empty())
    fit.Residuals = std::sqrt(fit.Residuals / static_cast<double>(fit.Labels.size()));
  return fit;
}

/// Whether both give the labels of one of them the same values.
bool IsSame(const AxisLaw& a, const LawFit& b, std::span<const PlacedLabel> labels,
            double tolerance) {
  return !b.Labels.empty() && std::ranges::all_of(b.Labels, [&](const ExplainedLabel& label) {
    const double value = labels[label.Label].Meanings[label.Meaning];
    return std::fabs(a.PositionOf(value) - b.Law.PositionOf(value)) <= 2 * tolerance;
  });
}

/// A logarithmic law over less than that is too like a linear one.
constexpr double kFewestDecades = 0.7;

bool SpansDecades(std::span<const PlacedLabel> labels, const LawFit& fit) {
  double least = std::numeric_limits<double>::infinity(), most = 0;
  for (const ExplainedLabel& label : fit.Labels) {
    const double value = labels[label.Label].Meanings[label.Meaning];
    least = std::min(least, value);
    most = std::max(most, value);
  }
  return std::log10(most / least) >= kFewestDecades;
}

bool IsBetter(const LawFit& a, const LawFit& b) {
  if (a.Labels.size() != b.Labels.size()) return a.Labels.size() > b.Labels.size();
  return a.Residuals < b.Residuals;
}

}  // namespace

double AxisLaw::PositionOf(double value) const {
  return Start + Step * OnScale(Log, value);
}

LawFit FindLaw(std::span<const PlacedLabel> labels, double tolerance,
               const PictureOperation& operation, const LawFit* besides) {
  LawFit best;
  for (const bool log : {false, true})
    for (std::size_t i = 0; i < labels.size(); ++i)
      for (std::size_t j = i + 1; j < labels.size() && !operation.Stopped; ++j)
        for (const double a : labels[i].Meanings)
          for (const double b : labels[j].Meanings) {
            const double from = OnScale(log, a), to = OnScale(log, b);
            const double length = labels[j].Position - labels[i].Position;
            if (!std::isfinite(from) || !std::isfinite(to) || from == to ||
                std::fabs(length) < 4 * tolerance)
              continue;
            AxisLaw law{log, 0, length / (to - from)};
            law.Start = labels[i].Position - law.Step * from;
            if (besides != nullptr && IsSame(law, *besides, labels, tolerance)) continue;
            const LawFit fit = Explained(labels, law, tolerance);
            if (IsBetter(fit, best) && (!log || SpansDecades(labels, fit))) best = fit;
          }
  return best;
}

AxisLaw FitLaw(bool log, std::span<const double> positions, std::span<const double> values) {
  double n = 0, st = 0, sp = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    ++n;
    st += OnScale(log, values[i]);
    sp += positions[i];
  }
  double tt = 0, tp = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const double t = OnScale(log, values[i]) - st / n;
    tt += t * t;
    tp += t * (positions[i] - sp / n);
  }
  AxisLaw law{log, 0, tp / tt};
  law.Start = sp / n - law.Step * st / n;
  return law;
}

double SigmaAt(const AxisLaw& law, std::span<const double> positions,
               std::span<const double> values, double value, double least) {
  const auto count = static_cast<double>(positions.size());
  double squares = 0, mean = 0, spread = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    squares += std::pow(positions[i] - law.PositionOf(values[i]), 2);
    mean += OnScale(law.Log, values[i]) / count;
  }
  for (const double other : values) spread += std::pow(OnScale(law.Log, other) - mean, 2);
  const double one = std::max(std::sqrt(squares / std::max(count - 2, 1.0)), least);
  return one * std::sqrt(1 / count + std::pow(OnScale(law.Log, value) - mean, 2) / spread);
}

const char* ScaleDoubt(bool log, std::vector<double> values) {
  std::sort(values.begin(), values.end());
  if (log) return nullptr;
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < values.size(); ++i)
    if (values[i] > values[i - 1]) least = std::min(least, values[i] - values[i - 1]);
  for (std::size_t i = 1; i < values.size(); ++i) {
    // Labels that were left out make multiples; three to two is a step of which one was skipped.
    const double steps = 2 * (values[i] - values[i - 1]) / least;
    if (std::fabs(steps - std::round(steps)) > 0.02)
      return Marked("the steps between the values are uneven");
  }
  return nullptr;
}

}  // namespace graphize
