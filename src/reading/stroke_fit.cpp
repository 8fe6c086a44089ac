#include "reading/stroke_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>

#include "reading/polynomial.h"

namespace graphize {

namespace {

/// What residuals the raster makes.
struct Tolerance {
  double Rms = 0, Largest = 0;  // pixels across the stroke
  bool IsData = false;          // it turns back again and again: nothing to smooth
};

double MedianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

bool AreNeighbours(const StrokeSample& a, const StrokeSample& b) {
  return a.AlongRow == b.AlongRow && a.IsSeen && b.IsSeen && std::abs(a.At - b.At) == 1;
}

Tolerance ToleranceOf(const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  std::vector<double> thirds;
  for (std::size_t i = 3; i < samples.size(); ++i) {
    bool whole = true;
    for (std::size_t k = i - 2; k <= i; ++k)
      whole = whole && AreNeighbours(samples[k - 1], samples[k]);
    if (!whole) continue;
    const double cosine = 1 / std::sqrt(1 + samples[i].Slope * samples[i].Slope);
    const auto f = [&](std::size_t back) { return samples[i - back].Middle; };
    thirds.push_back(std::fabs(f(0) - 3 * f(1) + 3 * f(2) - f(3)) * cosine);
  }
  if (thirds.empty()) return {0.1, 0.3, false};
  const double noise = std::max(MedianOf(thirds) / (0.6745 * std::sqrt(20.0)), 0.012);
  // Swings up and down of more than the raster's.
  constexpr double kSwing = 2.5;
  int turns = 0;
  double way = 0, extreme = samples.front().Y(), left = samples.front().X(), right = left;
  for (const StrokeSample& sample : samples) {
    left = std::min(left, sample.X());
    right = std::max(right, sample.X());
    const double step = sample.Y() - extreme;
    if (way == 0 ? std::fabs(step) >= kSwing : step * way <= -kSwing) {
      turns += way == 0 ? 0 : 1;
      way = step > 0 ? 1 : -1;
      extreme = sample.Y();
    } else if (step * way > 0) {
      extreme = sample.Y();
    }
  }
  const bool isData = turns > 8 && 1000 * turns > 45 * (right - left);
  if (kind.IsHard) return {0.31, 0.62, isData};
  return {1.35 * noise + 0.006, 3.8 * noise + 0.03, isData};
}

class Course {
 public:
  Course(const std::vector<StrokeSample>& samples, const StrokeKind& kind)
      : samples_(samples), tolerance_(ToleranceOf(samples, kind)), kind_(kind) {}

  std::vector<CurvePoint> Points() {
    const int count = static_cast<int>(samples_.size());
    std::vector<CurvePoint> points(samples_.size());
    for (int i = 0; i < count; ++i)
      if (samples_[i].IsSeen) points[i] = Smoothed(i);
    int first = 0, last = count - 1;
    while (first <= last && !samples_[first].IsSeen) ++first;
    while (last >= first && !samples_[last].IsSeen) --last;
    for (int i = first; i <= last; ++i) {
      if (samples_[i].IsSeen) continue;
      int end = i;
      while (!samples_[end].IsSeen) ++end;
      Bridge(points, i, end);
      i = end;
    }
    return Joined(points, first, last);
  }

 private:
  /// Where sample `j` lies about sample `i`, along and across the cut of `i`.
  PolynomialNode NodeOf(int i, int j) const {
    const StrokeSample &here = samples_[i], &other = samples_[j];
    return here.AlongRow ? PolynomialNode{other.Y() - here.Y(), other.X()}
                         : PolynomialNode{other.X() - here.X(), other.Y()};
  }
  /// The slope of sample `j` as sample `i` cuts.
  double SlopeAs(int i, int j) const {
    const StrokeSample& other = samples_[j];
    if (samples_[i].AlongRow == other.AlongRow) return other.Slope;
    return other.Slope == 0 ? 1e9 : 1 / other.Slope;
  }

  /// The seen samples within `half` of sample `i`, as far as the course goes on the same way.
  std::vector<PolynomialNode> Around(int i, int half) const {
    const int count = static_cast<int>(samples_.size());
    std::vector<PolynomialNode> nodes;
    const auto collect = [&](int step) {
      double last = 0, way = 0;
      for (int k = 1; k <= half; ++k) {
        const int j = i + step * k;
        if (j < 0 || j >= count || std::fabs(SlopeAs(i, j)) > 2.5) return;
        const PolynomialNode node = NodeOf(i, j);
        if (k == 1) way = node.T > 0 ? 1 : -1;
        if ((node.T - last) * way <= 0) return;
        last = node.T;
        if (samples_[j].IsSeen) nodes.push_back(node);
      }
    };
    collect(-1);
    std::reverse(nodes.begin(), nodes.end());
    if (samples_[i].IsSeen) nodes.push_back(NodeOf(i, i));
    collect(1);
    return nodes;
  }

  /// Those no farther than `half` from the middle.
  static std::span<const PolynomialNode> Within(const std::vector<PolynomialNode>& nodes,
                                                int half) {
    const auto isOut = [half](const PolynomialNode& node) {
      return std::fabs(node.T) > half + 0.5;
    };
    const auto first = std::find_if_not(nodes.begin(), nodes.end(), isOut);
    const auto last = std::find_if_not(nodes.rbegin(), nodes.rend(), isOut).base();
    return first < last ? std::span(first, last) : std::span<const PolynomialNode>();
  }

  CurvePoint PointAt(int i, double middle) const {
    const StrokeSample& sample = samples_[i];
    return sample.AlongRow ? CurvePoint{middle, static_cast<double>(sample.At)}
                           : CurvePoint{static_cast<double>(sample.At), middle};
  }

  /// What the tolerance says of a fit about sample `i`; the middle residuals count on their own, so
  /// that a long window does not wash over a short turn.
  bool IsTolerated(const Polynomial& fit, std::span<const PolynomialNode> nodes) const {
    const double cosine = 1 / std::sqrt(1 + fit.C[1] * fit.C[1]);
    if (fit.Rms * cosine > tolerance_.Rms || fit.Largest * cosine > tolerance_.Largest)
      return false;
    double sum = 0;
    int count = 0;
    for (const PolynomialNode& node : nodes) {
      if (std::fabs(node.T) > 3.5) continue;
      sum += node.F - fit.At(node.T);
      ++count;
    }
    return count == 0 ||
           std::fabs(sum) / count * cosine < (kind_.IsHard ? 1.6 : 1.2) * tolerance_.Rms;
  }

  /// Where columns give way to rows the cuts may overlap or leave a column out: without points that
  /// lie behind the one before, and with those that are missing.
  std::vector<CurvePoint> Joined(const std::vector<CurvePoint>& points, int first, int last) const {
    std::vector<CurvePoint> joined;
    for (int i = first; i <= last; ++i) {
      const CurvePoint& point = points[i];
      if (i > first && samples_[i].AlongRow != samples_[i - 1].AlongRow && !tolerance_.IsData) {
        const auto isBack = [&] {
          const CurvePoint &a = joined[joined.size() - 2], &b = joined.back();
          return (b.X - a.X) * (point.X - b.X) + (b.Y - a.Y) * (point.Y - b.Y) <= 0;
        };
        while (joined.size() > 2 && isBack()) joined.pop_back();
        const CurvePoint from = joined.back();
        const double way = std::max(std::fabs(point.X - from.X), std::fabs(point.Y - from.Y));
        const int steps = static_cast<int>(std::ceil(way - 0.2));
        for (int k = 1; k < std::min(steps, 6); ++k) {
          CurvePoint between = point;
          const double part = static_cast<double>(k) / steps;
          between.X = from.X + part * (point.X - from.X);
          between.Y = from.Y + part * (point.Y - from.Y);
          joined.push_back(between);
        }
      }
      joined.push_back(point);
    }
    return joined;
  }

  CurvePoint Smoothed(int i) const {
    static constexpr std::array kHalves = {64, 48, 36, 27, 20, 15, 11, 8, 6, 4, 3, 2};
    const double raw = kind_.IsHard ? 0.3 : std::max(0.05, tolerance_.Rms);
    CurvePoint point = PointAt(i, samples_[static_cast<std::size_t>(i)].Middle);
    point.Sigma = std::hypot(raw, 0.03);
    if (tolerance_.IsData) return point;
    const std::vector<PolynomialNode> all = Around(i, kHalves.front());
    for (const int half : kHalves) {
      const std::span<const PolynomialNode> nodes = Within(all, half);
      if (static_cast<int>(nodes.size()) < std::max(5, half)) continue;
      const auto fit = FitPolynomial(nodes, 2);
      if (!fit || !IsTolerated(*fit, nodes)) continue;
      point = PointAt(i, fit->C[0]);
      // Residuals of a few samples say little: the tolerance counts, too.
      const double cosine = 1 / std::sqrt(1 + fit->C[1] * fit->C[1]);
      const double residual = std::max(fit->Rms * cosine, 0.5 * tolerance_.Rms);
      point.Sigma = std::hypot(2.5 * residual * std::sqrt(std::max(fit->Leverage, 0.0)), 0.03);
      break;
    }
    return point;
  }

  /// The samples from `first` to before `end`, which are not seen while those beside them are: a
  /// cubic through the seen ones on both sides, across the line from end to end; straight where
  /// there is none.
  void Bridge(std::vector<CurvePoint>& points, int first, int end) const {
    const int a = first - 1, b = end, count = static_cast<int>(samples_.size());
    const CurvePoint from = points[a], to = points[b];
    const double gap = std::hypot(to.X - from.X, to.Y - from.Y);
    const double cx = gap > 0 ? (to.X - from.X) / gap : 1, cy = gap > 0 ? (to.Y - from.Y) / gap : 0;
    std::vector<PolynomialNode> nodes;
    const double reach = std::clamp(1.5 * gap, 8.0, 28.0);
    const auto collect = [&](int start, int step) {
      double last = step < 0 ? 1e9 : -1e9;
      for (int j = start; j >= 0 && j < count; j += step) {
        if (!samples_[j].IsSeen || samples_[j].IsPart) continue;
        const double x = points[j].X - from.X, y = points[j].Y - from.Y;
        const double t = x * cx + y * cy;
        if ((t - last) * step <= 0 || t < -reach || t > gap + reach) break;
        nodes.push_back({t, y * cx - x * cy});
        last = t;
      }
    };
    collect(a, -1);
    const std::size_t before = nodes.size();
    collect(b, 1);
    std::optional<Polynomial> fit;
    if (before >= 4 && nodes.size() - before >= 4) fit = FitPolynomial(nodes, 3);
    if (fit && fit->Rms > 3 * tolerance_.Rms + 0.25) fit.reset();
    const auto at = [&](double t) {
      const double n = fit ? fit->At(t) : 0;
      return CurvePoint{from.X + t * cx - n * cy, from.Y + t * cy + n * cx};
    };
    for (int i = first; i < end; ++i) {
      const StrokeSample& sample = samples_[i];
      // Where the course meets the sample's column or row.
      const auto beyond = [&](const CurvePoint& point) {
        return (sample.AlongRow ? point.Y : point.X) - sample.At;
      };
      double low = 0, high = gap;
      const bool rises = beyond(at(high)) > beyond(at(low));
      for (int round = 0; round < 40; ++round) {
        const double middle = 0.5 * (low + high);
        ((beyond(at(middle)) < 0) == rises ? low : high) = middle;
      }
      points[i] = at(low);
      points[i].IsBridged = true;
      const double part = gap > 0 ? low / gap : 0;
      points[i].Sigma = std::hypot(std::max(from.Sigma, to.Sigma), fit ? fit->Rms : 0.2,
                                   (fit ? 0.012 : 0.06) * gap * 4 * part * (1 - part));
    }
  }

  const std::vector<StrokeSample>& samples_;
  Tolerance tolerance_;
  StrokeKind kind_;
};

}  // namespace

namespace {

/// Across the way from shortly before each point to shortly behind it.
void SetAcross(std::vector<CurvePoint>& points) {
  constexpr std::ptrdiff_t kReach = 3;
  const auto count = static_cast<std::ptrdiff_t>(points.size());
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const CurvePoint& from = points[std::max(i - kReach, std::ptrdiff_t{0})];
    const CurvePoint& to = points[std::min(i + kReach, count - 1)];
    const double dx = to.X - from.X, dy = to.Y - from.Y, length = std::hypot(dx, dy);
    if (length <= 0) continue;
    points[i].AcrossX = -dy / length;
    points[i].AcrossY = dx / length;
  }
}

}  // namespace

bool IsRecord(const std::vector<StrokeSample>& samples, const StrokeKind& kind) {
  return ToleranceOf(samples, kind).IsData;
}

std::vector<CurvePoint> FitCourse(const std::vector<StrokeSample>& samples,
                                  const StrokeKind& kind) {
  if (samples.empty()) return {};
  std::vector<CurvePoint> points = Course(samples, kind).Points();
  SetAcross(points);
  return points;
}

}  // namespace graphize
