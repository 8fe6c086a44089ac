#include "reading/stroke_ends.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "base/polynomial.h"

namespace graphize {

namespace {

/// The course towards an end: a parabola across a straight line.
struct Axis {
  double X = 0, Y = 0;    // where the line begins
  double CX = 1, CY = 0;  // its direction
  Polynomial Across;

  double T(double x, double y) const { return (x - X) * CX + (y - Y) * CY; }
  double N(double x, double y) const { return (y - Y) * CX - (x - X) * CY; }
  double XAt(double t) const { return X + t * CX - Across.At(t) * CY; }
  double YAt(double t) const { return Y + t * CY + Across.At(t) * CX; }
  /// Where it meets the sample's column or row; absent where it runs along that.
  std::optional<double> Meets(const StrokeSample& sample) const {
    const double along = sample.AlongRow ? CY : CX, across = sample.AlongRow ? CX : -CY;
    if (std::fabs(along) < 0.3) return std::nullopt;
    const double from = sample.At - (sample.AlongRow ? Y : X);
    double t = from / along;
    for (int round = 0; round < 3; ++round) t = (from - Across.At(t) * across) / along;
    return t;
  }
};

/// The course before the last sample, as far from it as cuts meet the whole stroke, and as long as
/// it is a parabola.
std::optional<Axis> AxisTowardsEnd(const std::vector<StrokeSample>& samples,
                                   const StrokeKind& kind) {
  const StrokeSample& tip = samples.back();
  const double near = 1.2 * kind.Width + 2, far = near + 3 * kind.Width + 12;
  std::vector<const StrokeSample*> clear;
  for (auto sample = samples.rbegin(); sample != samples.rend(); ++sample) {
    const double away = std::hypot(sample->X() - tip.X(), sample->Y() - tip.Y());
    if (away > far) break;
    if (away > near && sample->IsSeen && !sample->IsPart && !sample->IsLoose)
      clear.push_back(&*sample);
  }
  constexpr std::size_t kLeast = 6, kForBend = 12;
  const double mostRms = kind.IsHard ? 0.12 : 0.06;
  for (; clear.size() >= kLeast; clear.resize(clear.size() * 2 / 3)) {
    const StrokeSample &from = *clear.back(), &to = *clear.front();
    const double length = std::hypot(to.X() - from.X(), to.Y() - from.Y());
    if (length < 4) return std::nullopt;
    Axis axis{to.X(), to.Y(), (to.X() - from.X()) / length, (to.Y() - from.Y()) / length, {}};
    std::vector<PolynomialNode> nodes;
    for (const StrokeSample* sample : clear)
      nodes.push_back({axis.T(sample->X(), sample->Y()), axis.N(sample->X(), sample->Y())});
    const auto fit = FitPolynomial(nodes, clear.size() >= kForBend ? 2 : 1);
    if (!fit || fit->Rms > mostRms) continue;
    axis.Across = *fit;
    return axis;
  }
  return std::nullopt;
}

/// How far along the axis the curve goes, by the ink that there is of it; absent where the ink goes
/// on, or something hides the end.
std::optional<double> EndAlong(const InkMap& map, const Axis& axis, double tip,
                               const StrokeKind& kind) {
  const double half = 0.5 * kind.Width, most = tip + kind.Width + 2;
  const int reach = static_cast<int>(std::ceil(most + kind.Width)) + 5;
  const int cx = static_cast<int>(std::lround(axis.X)), cy = static_cast<int>(std::lround(axis.Y));
  bool isOpen = true;
  const auto areaFrom = [&](double from) {
    double area = 0;
    for (int y = cy - reach; y <= cy + reach && isOpen; ++y)
      for (int x = cx - reach; x <= cx + reach && isOpen; ++x) {
        const double t = axis.T(x, y);
        if (t < from - 0.5 || t > most) continue;
        const double across = std::fabs(axis.N(x, y) - axis.Across.At(t));
        if (across > half + 1.5) continue;
        const std::uint8_t value = map.At(x, y);
        const double share = map.Share(x, y);
        isOpen = !(value > InkMap::kFull && across < half + 0.5) && !(share > 0.4 && t > most - 1);
        area += share * std::min(t - from + 0.5, 1.0);
      }
    return area;
  };
  // Its own width tells better than the whole stroke's how long the ink would be.
  const double before = kind.Width + 4, area = areaFrom(0);
  const double width = (areaFrom(-before) - area) / before;
  if (!isOpen || std::fabs(width - kind.Width) > 0.05 * kind.Width + 0.05) return std::nullopt;
  // As if it were round: a flat end is taken a little short, and nothing beyond it.
  return area / width - std::numbers::pi / 8 * width;
}

/// By the samples themselves, which a cap narrows, little at first.
void TrimNarrow(std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  std::size_t part = 0;
  while (part < samples.size() && static_cast<double>(part) <= kind.Width) {
    const StrokeSample& sample = samples[samples.size() - 1 - part];
    if (sample.IsSeen && !sample.IsPart) break;
    ++part;
  }
  if (part > 2) part = part * 8 / 5;
  samples.resize(samples.size() - std::min(part, samples.size() - 1));
}

/// Whether the curve comes out again behind a symbol of its ink, too short to be measured, where
/// the course before that leads: what the symbol hides is then between two places that are known.
bool KeepStub(std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  const double mostOff = 0.5 * kind.Width + 0.5;
  const auto behind = std::find_if(samples.rbegin(), samples.rend(), [](const StrokeSample& at) {
                        return at.IsSeen && !at.IsPart;
                      }).base();
  if (behind == samples.begin()) return false;
  StrokeSample& tip = samples.back();
  // Ends of the stroke itself are shorter.
  const StrokeSample& last = *std::prev(behind);
  if (std::hypot(tip.X() - last.X(), tip.Y() - last.Y()) < 2 * kind.Width + 4) return false;
  const auto axis = AxisTowardsEnd({samples.begin(), behind}, kind);
  if (!axis ||
      std::fabs(axis->N(tip.X(), tip.Y()) - axis->Across.At(axis->T(tip.X(), tip.Y()))) > mostOff)
    return false;
  tip.IsSeen = tip.IsLoose = true;
  tip.IsPart = tip.IsCrowded = false;
  return true;
}

/// At the samples' back.
void FinishEnd(const InkMap& map, std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  while (samples.size() > 1 && samples.back().IsGap) samples.pop_back();
  const auto axis = AxisTowardsEnd(samples, kind);
  const auto end = axis
                       ? EndAlong(map, *axis, axis->T(samples.back().X(), samples.back().Y()), kind)
                       : std::nullopt;
  if (!end) {
    if (KeepStub(samples, kind)) return;
    if (!kind.IsHard || kind.Width > 2.5) TrimNarrow(samples, kind);
    return;
  }
  while (samples.size() > 1) {
    const auto t = axis->Meets(samples.back());
    if (!t || *t <= *end + 0.1) break;
    samples.pop_back();
  }
  for (auto sample = samples.rbegin(); sample != samples.rend(); ++sample) {
    const auto t = axis->Meets(*sample);
    const double tangent = sample->AlongRow ? axis->CX / axis->CY : axis->CY / axis->CX;
    // As far as a cut may reach beyond the end.
    if (!t || *t < 0 || *t < *end - 0.5 * kind.Width * std::fabs(tangent) - 0.5) break;
    sample->IsSeen = sample->IsLoose = true;
    sample->IsPart = sample->IsCrowded = false;
    sample->Middle = sample->AlongRow ? axis->XAt(*t) : axis->YAt(*t);
  }
}

}  // namespace

void FinishEnds(const InkMap& map, std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  for (int side = 0; side < 2; ++side) {
    if (!samples.empty()) FinishEnd(map, samples, kind);
    std::reverse(samples.begin(), samples.end());
  }
}

}  // namespace graphize
