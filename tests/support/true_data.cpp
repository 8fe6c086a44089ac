#include "support/true_data.h"

#include <algorithm>
#include <fstream>
#include <string>

#include "base/numbers.h"

namespace graphize::test {

std::vector<TruePoint> ReadPoints(const std::filesystem::path& path, char delimiter,
                                  int headLines) {
  std::ifstream file(path);
  std::string line;
  std::vector<TruePoint> points;
  while (std::getline(file, line)) {
    if (headLines-- > 0) continue;
    const std::size_t y = line.rfind(delimiter);
    const std::size_t x = line.rfind(delimiter, y - 1);
    const std::size_t start = x == std::string::npos ? 0 : x + 1;
    points.push_back(
        {LeadingNumber(line.substr(start, y - start)), LeadingNumber(line.substr(y + 1))});
  }
  return points;
}

double TrueY(const std::vector<TruePoint>& curve, double x) {
  for (std::size_t i = 1; i < curve.size(); ++i)
    if (curve[i].X >= x)
      return curve[i - 1].Y +
             (x - curve[i - 1].X) / (curve[i].X - curve[i - 1].X) * (curve[i].Y - curve[i - 1].Y);
  return curve.back().Y;
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values.at(values.size() / 2);
}

}  // namespace graphize::test
