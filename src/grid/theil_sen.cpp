#include "grid/theil_sen.h"

#include <cstddef>

#include "base/median.h"

namespace graphize {

FitLine FitTheilSenLine(const std::vector<FitPoint>& points) {
  constexpr std::size_t kShort = 12;
  const std::size_t count = points.size();
  std::vector<double> values;
  const auto addSlope = [&](const FitPoint& a, const FitPoint& b) {
    if (b.X != a.X) values.push_back((b.Y - a.Y) / (b.X - a.X));
  };
  if (count <= kShort) {
    for (std::size_t i = 0; i < count; ++i)
      for (std::size_t j = i + 1; j < count; ++j) addSlope(points[i], points[j]);
  } else {
    for (std::size_t i = 0; i + count / 2 < count; ++i) addSlope(points[i], points[i + count / 2]);
  }
  FitLine line;
  if (!values.empty()) line.Slope = Median(values);
  values.clear();
  for (const FitPoint& point : points) values.push_back(point.Y - line.Slope * point.X);
  line.Offset = Median(values);
  return line;
}

}  // namespace graphize
