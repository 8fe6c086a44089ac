#include "base/polynomial.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graphize {

std::optional<Polynomial> FitPolynomial(std::span<const PolynomialNode> nodes, int degree) {
  const int n = degree + 1;
  if (static_cast<int>(nodes.size()) < n) return std::nullopt;
  double scale = 1;
  for (const PolynomialNode& node : nodes) scale = std::max(scale, std::fabs(node.T));
  // Columns: the matrix, the right side, the first unit vector.
  constexpr int kRight = kHighestDegree + 1, kUnit = kRight + 1;
  std::array<std::array<double, kUnit + 1>, kHighestDegree + 1> m{};
  for (const PolynomialNode& node : nodes) {
    std::array<double, kHighestDegree + 1> power{1};
    for (int i = 1; i < n; ++i) power[i] = power[i - 1] * node.T / scale;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) m[i][j] += power[i] * power[j];
      m[i][kRight] += power[i] * node.F;
    }
  }
  m[0][kUnit] = 1;
  // Gauss' elimination with pivots.
  for (int k = 0; k < n; ++k) {
    int pivot = k;
    for (int i = k + 1; i < n; ++i)
      if (std::fabs(m[i][k]) > std::fabs(m[pivot][k])) pivot = i;
    if (std::fabs(m[pivot][k]) < 1e-9) return std::nullopt;
    std::swap(m[k], m[pivot]);
    for (int i = 0; i < n; ++i) {
      if (i == k) continue;
      const double part = m[i][k] / m[k][k];
      for (int j = 0; j <= kUnit; ++j) m[i][j] -= part * m[k][j];
    }
  }
  Polynomial fit;
  double unit = 1;  // of what t was scaled by
  for (int i = 0; i < n; ++i, unit *= scale) fit.C[i] = m[i][kRight] / m[i][i] / unit;
  fit.Leverage = m[0][kUnit] / m[0][0];
  double sum = 0;
  for (const PolynomialNode& node : nodes) {
    const double r = std::fabs(node.F - fit.At(node.T));
    sum += r * r;
    fit.Largest = std::max(fit.Largest, r);
  }
  fit.Rms = std::sqrt(sum / static_cast<double>(std::max(static_cast<int>(nodes.size()) - n, 1)));
  return fit;
}

}  // namespace graphize
