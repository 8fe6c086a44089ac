#include "measure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace graphize::accuracy {

namespace {

double ToSegment(PixelPosition p, PixelPosition a, PixelPosition b) {
  const double dx = b.X - a.X, dy = b.Y - a.Y;
  const double squared = dx * dx + dy * dy;
  const double t =
      squared == 0 ? 0 : std::clamp(((p.X - a.X) * dx + (p.Y - a.Y) * dy) / squared, 0.0, 1.0);
  return std::hypot(p.X - a.X - t * dx, p.Y - a.Y - t * dy);
}

/// The value below which `part` of the values lie; infinite without values.
double Percentile(std::vector<double> values, double part) {
  if (values.empty()) return std::numeric_limits<double>::infinity();
  const auto index = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + index, values.end());
  return values[static_cast<std::size_t>(index)];
}

double Part(std::size_t count, std::size_t total) {
  return total == 0 ? 0 : static_cast<double>(count) / static_cast<double>(total);
}

Accuracy OfDistances(const std::vector<double>& distances, double near) {
  Accuracy accuracy;
  accuracy.Points = static_cast<int>(distances.size());
  accuracy.Median = Percentile(distances, 0.5);
  accuracy.Percentile95 = Percentile(distances, 0.95);
  const auto isFalse = [near](double distance) { return distance > near; };
  accuracy.FalsePart =
      Part(static_cast<std::size_t>(std::count_if(distances.begin(), distances.end(), isFalse)),
           distances.size());
  return accuracy;
}

bool IsBlackColumn(const Raster& picture, int x) {
  for (int y = 0; y < picture.Height(); ++y)
    if (IsBlackPixel(picture.Row(y)[x])) return true;
  return false;
}

}  // namespace

double DistanceTo(PixelPosition p, const std::vector<PixelPosition>& course) {
  double nearest = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < course.size(); ++i)
    nearest = std::min(nearest, ToSegment(p, course[i - 1], course[i]));
  return nearest;
}

Accuracy MeasureCurve(const std::vector<PixelPosition>& points,
                      const std::vector<PixelPosition>& course, const Raster& curveAlone) {
  std::vector<double> distances;
  std::vector<bool> isCovered(static_cast<std::size_t>(curveAlone.Width()));
  for (const PixelPosition& point : points) {
    distances.push_back(DistanceTo(point, course));
    const auto column = static_cast<std::size_t>(std::lround(point.X));
    if (distances.back() <= kNear && column < isCovered.size()) isCovered[column] = true;
  }
  Accuracy accuracy = OfDistances(distances, kNear);
  std::size_t columns = 0, covered = 0;
  for (int x = 0; x < curveAlone.Width(); ++x) {
    if (!IsBlackColumn(curveAlone, x)) continue;
    ++columns;
    if (isCovered[static_cast<std::size_t>(x)]) ++covered;
  }
  accuracy.Coverage = Part(covered, columns);
  return accuracy;
}

Accuracy MeasureSymbols(const std::vector<PixelPosition>& points,
                        const std::vector<PixelPosition>& centres, double diameter) {
  const double near = 0.5 * diameter + kNear;
  std::vector<double> distances;
  std::vector<bool> isCovered(centres.size());
  for (const PixelPosition& point : points) {
    distances.push_back(std::numeric_limits<double>::infinity());
    for (std::size_t i = 0; i < centres.size(); ++i) {
      const double distance = std::hypot(point.X - centres[i].X, point.Y - centres[i].Y);
      distances.back() = std::min(distances.back(), distance);
      if (distance <= near) isCovered[i] = true;
    }
  }
  Accuracy accuracy = OfDistances(distances, near);
  accuracy.Coverage =
      Part(static_cast<std::size_t>(std::count(isCovered.begin(), isCovered.end(), true)),
           centres.size());
  return accuracy;
}

}  // namespace graphize::accuracy
