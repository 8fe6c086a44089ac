#include "reading/stroke_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>

#include "base/polynomial.h"
#include "reading/stroke_tolerance.h"

namespace graphize {

namespace {

class Course {
 public:
  Course(const std::vector<StrokeSample>& samples, const StrokeKind& kind,
         const PictureOperation& operation)
      : samples_(samples),
        tolerance_(ToleranceOf(samples, kind)),
        kind_(kind),
        operation_(operation) {}

  std::vector<CurvePoint> Points() {
    const int count = static_cast<int>(samples_.size());
    std::vector<CurvePoint> points(samples_.size());
    for (int i = 0; i < count && !operation_.Stopped; ++i)
      if (samples_[i].IsSeen) points[i] = Smoothed(i);
    int first = 0, last = count - 1;
    while (first <= last && !samples_[first].IsSeen) ++first;
    while (last >= first && !samples_[last].IsSeen) --last;
    for (int i = first; i <= last; ++i) {
      if (operation_.Stopped) return {};
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
        if (samples_[j].IsSeen && !samples_[j].IsLoose) nodes.push_back(node);
      }
    };
    collect(-1);
    std::reverse(nodes.begin(), nodes.end());
    if (samples_[i].IsSeen && !samples_[i].IsLoose) nodes.push_back(NodeOf(i, i));
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

  /// How far the middle of a cut lies beside the curve, where the edges of a wide stroke are those
  /// of a larger and a smaller circle.
  double BendShift(const Polynomial& fit) const {
    const double half = 0.5 * kind_.Width, slope = fit.C[1];
    return std::clamp(half * half * slope * slope / (1 + slope * slope) * fit.C[2], -0.5, 0.5);
  }

  /// Where no fit is tolerated, within the pixel that the sample lies in.
  CurvePoint LoosePoint(int i, double middle) const {
    const double raw = samples_[static_cast<std::size_t>(i)].Middle;
    CurvePoint point = PointAt(i, std::clamp(middle, raw - 0.5, raw + 0.5));
    point.Sigma = 0.2;
    return point;
  }

  /// What the tolerance says of a fit about sample `i`; the middle residuals count on their own, so
  /// that a long window does not wash over a short turn.
  bool IsTolerated(const Polynomial& fit, std::span<const PolynomialNode> nodes) const {
    const double cosine = 1 / std::sqrt(1 + fit.C[1] * fit.C[1]);
    double rms = tolerance_.Rms, largest = tolerance_.Largest;
    if (kind_.IsHard) {
      // Edges step between two cuts, anywhere.
      const double slope = std::hypot(fit.C[1], 1.15 * fit.C[2] * nodes.back().T);
      rms = 0.04 + 0.12 * slope;
      largest = 0.15 + 0.6 * slope;
    }
    if (fit.Rms * cosine > rms || fit.Largest * cosine > largest) return false;
    double sum = 0;
    int count = 0;
    for (const PolynomialNode& node : nodes) {
      if (std::fabs(node.T) > 3.5) continue;
      sum += node.F - fit.At(node.T);
      ++count;
    }
    return count == 0 || std::fabs(sum) / count * cosine < (kind_.IsHard ? 0.4 : 1.2) * rms;
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
    std::optional<double> loose;
    for (const int half : kHalves) {
      const std::span<const PolynomialNode> nodes = Within(all, half);
      if (static_cast<int>(nodes.size()) < std::max(5, kind_.IsHard ? half * 2 / 3 : half))
        continue;
      const auto fit = FitPolynomial(nodes, 2);
      if (!fit) continue;
      // A loose sample has no say in its fit, which may lead past it.
      const bool leadsPast = samples_[i].IsLoose && std::fabs(fit->C[0] - samples_[i].Middle) > 1;
      if (leadsPast || !IsTolerated(*fit, nodes)) {
        if (samples_[i].IsLoose) loose = fit->C[0];
        continue;
      }
      point = PointAt(i, fit->C[0] - BendShift(*fit));
      // Residuals of a few samples say little: the tolerance counts, too.
      const double cosine = 1 / std::sqrt(1 + fit->C[1] * fit->C[1]);
      const double residual = std::max(fit->Rms * cosine, 0.5 * tolerance_.Rms);
      point.Sigma = std::hypot(2.5 * residual * std::sqrt(std::max(fit->Leverage, 0.0)), 0.03);
      return point;
    }
    if (loose) return LoosePoint(i, *loose);
    return point;
  }

  /// The samples from `first` to before `end`, which are not seen while those beside them are.
  /// A noisy record turns in a corner, and so does a stroke that is hidden by its own two sides.
  /// Else it is a polynomial through what is seen on both sides, across the line from end to end;
  /// where none fits, half-way to where both ways meet, and straight where they do not.
  void Bridge(std::vector<CurvePoint>& points, int first, int end) const {
    const CurvePoint from = points[first - 1], to = points[end];
    const double gap = Distance(from, to);
    const double cx = gap > 0 ? (to.X - from.X) / gap : 1, cy = gap > 0 ? (to.Y - from.Y) / gap : 0;
    const auto tip = CornerBetween(points, first - 1, end);
    if (tip && tolerance_.IsData) return BridgeCorner(points, first, end, *tip, 0.25);
    const auto fit = FitOver(points, first - 1, end);
    // How far across the way turns; at a right angle or more, a polynomial cuts the corner.
    const double height = tip ? (tip->Y - from.Y) * cx - (tip->X - from.X) * cy : 0;
    const bool isSharp = 2 * std::fabs(height) > gap;
    if (tip && (!fit || isSharp) &&
        std::any_of(samples_.begin() + first, samples_.begin() + end,
                    [](const StrokeSample& sample) { return sample.IsCrowded; }))
      return BridgeCorner(points, first, end, *tip,
                          std::hypot(0.25, 0.06 * gap + 0.5 * std::fabs(height)));
    const auto at = [&](double t) {
      const double part = gap > 0 ? t / gap : 0;
      const double n = fit ? fit->At(t) : 2 * height * part * (1 - part);
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
      points[i].Sigma =
          std::hypot(std::max(from.Sigma, to.Sigma), fit ? fit->Rms : 0.2,
                     ((fit ? 0.012 : 0.06) * gap + (fit ? 0 : 0.5) * std::fabs(height)) * 4 * part *
                         (1 - part));
    }
  }

  static bool IsWild(const Polynomial& fit, double gap) {
    const double most = 0.4 * gap + 3;
    for (const double part : {0.1, 0.3, 0.5, 0.7, 0.9})
      if (std::fabs(fit.At(part * gap)) > most) return true;
    return false;
  }

  /// The polynomial over the unseen samples between `a` and `b`, along and across the line from one
  /// to the other; of the longest seen stretches that one fits.
  std::optional<Polynomial> FitOver(const std::vector<CurvePoint>& points, int a, int b) const {
    const CurvePoint &from = points[a], &to = points[b];
    const double gap = Distance(from, to);
    if (gap <= 0) return std::nullopt;
    const double cx = (to.X - from.X) / gap, cy = (to.Y - from.Y) / gap;
    const int count = static_cast<int>(samples_.size());
    constexpr int kLeast = 4;  // nodes on each side
    const double mostRms = 2 * tolerance_.Rms + 0.05;
    std::optional<Polynomial> fit;
    for (double reach = std::clamp(1.5 * gap, 8.0, 28.0); reach > 4; reach *= 0.6) {
      std::vector<PolynomialNode> nodes;
      const auto collect = [&](int start, int step) {
        double last = step < 0 ? 1e9 : -1e9;
        int met = 0;
        for (int j = start; j >= 0 && j < count; j += step) {
          if (!samples_[j].IsSeen || samples_[j].IsPart) continue;
          const double x = points[j].X - from.X, y = points[j].Y - from.Y;
          const double t = x * cx + y * cy;
          if ((t - last) * step <= 0 || t < -reach || t > gap + reach) break;
          nodes.push_back({t, y * cx - x * cy});
          last = t;
          ++met;
        }
        return met;
      };
      if (std::min(collect(a, -1), collect(b, 1)) < kLeast) break;
      // A high degree swings where it is not held.
      for (const int degree : {3, 5}) {
        if (degree == 5 && (gap > reach || nodes.size() < 16)) continue;
        fit = FitPolynomial(nodes, degree);
        if (fit && IsWild(*fit, gap)) fit.reset();
        if (fit && fit->Rms <= mostRms) return fit;
      }
    }
    return fit && fit->Rms <= mostRms + 0.2 ? fit : std::nullopt;
  }

  /// Where the straight ways before `a` and behind `b` meet, when that lies between them.
  std::optional<CurvePoint> CornerBetween(const std::vector<CurvePoint>& points, int a,
                                          int b) const {
    constexpr int kArm = 3;
    constexpr double kFarthest = 8;  // beyond either end, pixels
    const int count = static_cast<int>(samples_.size());
    const CurvePoint &p = points[a], &q = points[b];
    // The farthest sample of an arm that is seen all along.
    const auto armOf = [&](int from, int step) {
      int last = from;
      for (int k = 1; k <= kArm; ++k) {
        const int i = from + step * k;
        if (i < 0 || i >= count || !samples_[i].IsSeen) break;
        last = i;
      }
      return points[last];
    };
    const CurvePoint before = armOf(a, -1), behind = armOf(b, 1);
    const double px = p.X - before.X, py = p.Y - before.Y;
    const double qx = q.X - behind.X, qy = q.Y - behind.Y;
    if (std::hypot(px, py) < 0.5 || std::hypot(qx, qy) < 0.5) return std::nullopt;
    const double cross = px * qy - py * qx;
    if (std::fabs(cross) < 0.1 * std::hypot(px, py) * std::hypot(qx, qy)) return std::nullopt;
    const double s = ((q.X - p.X) * qy - (q.Y - p.Y) * qx) / cross;
    const double t = ((q.X - p.X) * py - (q.Y - p.Y) * px) / cross;
    if (s < 0 || t < 0 || s * std::hypot(px, py) > kFarthest || t * std::hypot(qx, qy) > kFarthest)
      return std::nullopt;
    return CurvePoint{p.X + s * px, p.Y + s * py};
  }

  /// From `first` straight to the tip and straight on to before `end`.
  void BridgeCorner(std::vector<CurvePoint>& points, int first, int end, const CurvePoint& tip,
                    double sigma) const {
    const std::array<CurvePoint, 3> way = {points[first - 1], tip, points[end]};
    std::size_t leg = 0;
    for (int i = first; i < end; ++i) {
      const bool alongRow = samples_[i].AlongRow;
      const auto partOf = [&](std::size_t j) {
        const double from = alongRow ? way[j].Y : way[j].X,
                     to = alongRow ? way[j + 1].Y : way[j + 1].X;
        return from == to ? -1 : (samples_[i].At - from) / (to - from);
      };
      double part = partOf(leg);
      if (leg == 0 && (part < 0 || part > 1) && partOf(1) >= 0 && partOf(1) <= 1)
        part = partOf(leg = 1);
      part = std::clamp(part, 0.0, 1.0);
      const CurvePoint &from = way[leg], &to = way[leg + 1];
      points[i] = {from.X + part * (to.X - from.X), from.Y + part * (to.Y - from.Y)};
      points[i].IsBridged = true;
      points[i].Sigma = sigma;
    }
  }

  const std::vector<StrokeSample>& samples_;
  Tolerance tolerance_;
  StrokeKind kind_;
  const PictureOperation& operation_;
};

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

std::vector<CurvePoint> FitCourse(const std::vector<StrokeSample>& samples, const StrokeKind& kind,
                                  const PictureOperation& operation) {
  if (samples.empty()) return {};
  std::vector<CurvePoint> points = Course(samples, kind, operation).Points();
  SetAcross(points);
  return points;
}

}  // namespace graphize
