#include "reading/density.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "calibration/transform.h"

namespace graphize {

namespace {

std::vector<CurvePoint> EverySo(const std::vector<CurvePoint>& points, double pixels) {
  constexpr double kNearest = 0.5;  // points lie about a pixel from each other
  std::vector<CurvePoint> kept;
  double along = 0, next = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i > 0) along += std::hypot(points[i].X - points[i - 1].X, points[i].Y - points[i - 1].Y);
    if (along < next - kNearest && i + 1 < points.size()) continue;
    kept.push_back(points[i]);
    while (next <= along + kNearest) next += pixels;
  }
  return kept;
}

double FromLine(const CurvePoint& point, const CurvePoint& a, const CurvePoint& b) {
  const double dx = b.X - a.X, dy = b.Y - a.Y, length = std::hypot(dx, dy);
  if (length == 0) return std::hypot(point.X - a.X, point.Y - a.Y);
  return std::fabs((point.X - a.X) * dy - (point.Y - a.Y) * dx) / length;
}

std::vector<CurvePoint> WhereItBends(const std::vector<CurvePoint>& points) {
  constexpr double kStraight = 0.25;
  if (points.size() < 3) return points;
  std::vector<bool> isKept(points.size());
  isKept.front() = isKept.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> open = {{0, points.size() - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    double most = kStraight;
    std::size_t farthest = first;
    for (std::size_t i = first + 1; i < last; ++i) {
      const double distance = FromLine(points[i], points[first], points[last]);
      if (distance <= most) continue;
      most = distance;
      farthest = i;
    }
    if (farthest == first) continue;
    isKept[farthest] = true;
    open.emplace_back(first, farthest);
    open.emplace_back(farthest, last);
  }
  std::vector<CurvePoint> kept;
  for (std::size_t i = 0; i < points.size(); ++i)
    if (isKept[i]) kept.push_back(points[i]);
  return kept;
}

std::vector<CurvePoint> AtValues(const std::vector<CurvePoint>& points,
                                 const std::vector<float>& xs, const AxisCalibration& calibration,
                                 int pictureHeight, std::vector<float>* without) {
  // On the axis' own scale, where positions are even.
  const auto scaled = [&](double x) { return calibration.XLog ? std::log10(x) : x; };
  std::vector<double> values;
  for (const CurvePoint& point : points)
    values.push_back(scaled(RealPointAt(calibration, point.X, pictureHeight - point.Y).X));
  std::vector<CurvePoint> found;
  for (const float x : xs) {
    const double wanted = scaled(DecimalValue(x));
    const std::size_t before = found.size();
    for (std::size_t i = 1; i < points.size(); ++i) {
      const double a = values[i - 1] - wanted, b = values[i] - wanted;
      // A point that has the value counts once.
      if (!(a * b < 0) && b != 0 && !(a == 0 && i == 1)) continue;
      const double part = a == b ? 0 : a / (a - b);
      const CurvePoint &from = points[i - 1], &to = points[i];
      found.push_back({.X = from.X + part * (to.X - from.X),
                       .Y = from.Y + part * (to.Y - from.Y),
                       .Sigma = std::max(from.Sigma, to.Sigma),
                       .AcrossX = from.AcrossX,
                       .AcrossY = from.AcrossY,
                       .IsBridged = from.IsBridged || to.IsBridged});
    }
    if (without != nullptr && found.size() == before) without->push_back(x);
  }
  return found;
}

}  // namespace

std::vector<CurvePoint> Thinned(std::vector<CurvePoint> points, const ReadingDensity& density,
                                const AxisCalibration& calibration, int pictureHeight,
                                std::vector<float>* without) {
  switch (density.Is) {
    case ReadingDensity::Kind::Each:
      break;
    case ReadingDensity::Kind::Every:
      return EverySo(points, density.Pixels);
    case ReadingDensity::Kind::Bends:
      return WhereItBends(points);
    case ReadingDensity::Kind::AtX:
      return AtValues(points, density.Xs, calibration, pictureHeight, without);
  }
  return points;
}

}  // namespace graphize
